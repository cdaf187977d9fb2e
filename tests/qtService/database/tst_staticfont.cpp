#include "qtService/database/FontClassificationStringMapper.h"
#include "qtService/database/FontField.h"
#include "qtService/database/StaticFont.h"
#include "tests/support/testregistry.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QSignalSpy>
#include <QtConcurrent>
#include <QtTest>

using fms::StaticFont;

class TestStaticFont : public QObject
{
    Q_OBJECT

private slots:
    void newRecordHasDefaults()
    {
        const StaticFont font;
        QCOMPARE(font.id(), -2);
        QVERIFY(font.fileExists());
        QCOMPARE(font.duplicateCount(), 0);
        QVERIFY(font.supportedSubsets().isEmpty());
        QVERIFY(!font.dateActivated().isValid());
        QVERIFY(!font.isHidden());
        QVERIFY(font.familyName().isEmpty());
    }

    void propertiesStandInTheirOrder()
    {
        const QMetaObject& meta = StaticFont::staticMetaObject;
        const int first = meta.propertyOffset();
        QCOMPARE(meta.propertyCount() - first, 66);
        QCOMPARE(meta.property(first).name(), "id");
        QCOMPARE(meta.property(first + 38).name(), "supportedSubsets");
        QCOMPARE(meta.property(first + 65).name(), "userDefinedFamilyName");
        for (const char* name : {"fontHash", "isSerif", "isSymbol", "isMonospacedClass", "opticalSize"})
            QVERIFY2(!meta.property(meta.indexOfProperty(name)).isWritable(), name);
    }

    // Each property is written through the meta-object, read back, and read through the typed field of the same name,
    // so a getter, setter or field that reaches for its neighbour's data shows.
    void everyPropertyKeepsItsOwnValue()
    {
        const QMetaObject& meta = StaticFont::staticMetaObject;
        StaticFont font;
        QHash<QString, QVariant> written;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QMetaProperty property = meta.property(i);
            if (!property.isWritable())
                continue;
            QVariant value;
            switch (property.userType()) {
            case QMetaType::Int:
            case QMetaType::UChar:
                value = i;
                break;
            case QMetaType::Bool:
                value = !property.read(&font).toBool();
                break;
            case QMetaType::QString:
                value = QStringLiteral("text %1").arg(i);
                break;
            case QMetaType::QUrl:
                value = QUrl(QStringLiteral("http://example.org/%1").arg(i));
                break;
            case QMetaType::QDateTime:
                value = QDateTime::fromSecsSinceEpoch(1000000 + i);
                break;
            default:
                value = QVariant::fromValue(QSet<int>{i, 200 + i, -i});
            }
            QVERIFY2(property.write(&font, value), property.name());
            written.insert(QLatin1String(property.name()), value);
        }
        for (auto it = written.cbegin(); it != written.cend(); ++it) {
            const QVariant read = font.property(it.key().toUtf8().constData());
            const auto* const field = fms::FontField::find(it.key());
            QVERIFY2(field, qPrintable(it.key()));
            const QVariant typed =
                fms::StaticFontAccess::read(font, [&](const auto& data) { return field->value(data); });
            if (it.value().userType() == qMetaTypeId<QSet<int>>()) {
                QCOMPARE(read.value<QSet<int>>(), it.value().value<QSet<int>>());
                QCOMPARE(typed.value<QSet<int>>(), it.value().value<QSet<int>>());
            } else {
                QVERIFY2(read == it.value(), qPrintable(it.key()));
                QVERIFY2(typed == it.value(), qPrintable(it.key()));
                QCOMPARE(typed.userType(), read.userType());
            }
        }
        for (const char* name : {"isSerif", "isSymbol", "isMonospacedClass", "opticalSize"})
            QVERIFY2(fms::FontField::find(QLatin1String(name)), name);
        QVERIFY(!fms::FontField::find(QStringLiteral("onlinseSource")));
    }

    void storedDatesAreDecimalSeconds()
    {
        StaticFont font;
        font.setDateAdded(QDateTime::fromSecsSinceEpoch(1234567890));
        QCOMPARE(font.stringField(StaticFont::DateAdded), QStringLiteral("1234567890"));

        font.setDateAdded(QDateTime());
        QCOMPARE(font.stringField(StaticFont::DateAdded), QStringLiteral("4294967295"));
        QCOMPARE(font.dateAdded().toSecsSinceEpoch(), 0);
        font.setDateAdded(QDateTime(QDate(1969, 12, 30), QTime(0, 0), Qt::UTC));
        QCOMPARE(font.stringField(StaticFont::DateAdded), QStringLiteral("4294967295"));

        font.setStringField(StaticFont::DateAdded, QStringLiteral("007"));
        QCOMPARE(font.stringField(StaticFont::DateAdded), QStringLiteral("007"));
        QCOMPARE(font.dateAdded().toSecsSinceEpoch(), 7);
    }

    void textFields()
    {
        StaticFont font;
        font.setStringField(StaticFont::SupportedSubsets, QStringLiteral("3,7,,x"));
        QCOMPARE(font.supportedSubsets(), (QSet<int>{3, 7, 0}));
        QCOMPARE(font.stringField(StaticFont::SupportedSubsets), QStringLiteral("0,3,7"));

        font.setStringField(StaticFont::Unused, QStringLiteral("lost"));
        QCOMPARE(font.stringField(StaticFont::Unused), QString());
        font.setStringField(StaticFont::StringField(77), QStringLiteral("lost"));
        QCOMPARE(font.stringField(StaticFont::StringField(77)), QString());
        QCOMPARE(font.stringField(StaticFont::StringField(-1)), QString());
        font.setStringField(StaticFont::SpareTextB, QStringLiteral("kept"));
        QCOMPARE(font.stringField(StaticFont::SpareTextB), QStringLiteral("kept"));

        const QDateTime moment(QDate(2020, 2, 29), QTime(12, 30));
        font.setStringField(StaticFont::DateActivated, moment.toString(Qt::TextDate));
        QCOMPARE(font.dateActivated(), moment);
        QCOMPARE(font.fieldText(126), moment.toString(Qt::TextDate));

        // Every text field but the dates, the set and the gap holds a text of its own.
        for (int i = 0; i < 36; ++i) {
            if (i < 17 || (i > 19 && i != 21 && i != 25 && i < 29) || i > 31)
                font.setStringField(StaticFont::StringField(i), QStringLiteral("t%1").arg(i));
        }
        QCOMPARE(font.familyName(), QStringLiteral("t0"));
        QCOMPARE(font.licenseUrl(), QUrl(QStringLiteral("t14")));
        QCOMPARE(font.onlineSource(), QStringLiteral("t35"));
        QCOMPARE(font.stringField(StaticFont::SpareTextA), QStringLiteral("t22"));
        QCOMPARE(font.fieldText(33), QStringLiteral("t33"));
    }

    void numberedFields_data()
    {
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("numeric");
        QTest::newRow("id") << 100 << "42" << true;
        QTest::newRow("bold") << 101 << "1" << true;
        QTest::newRow("private flag") << 104 << "0" << true;
        QTest::newRow("gap") << 110 << "" << true;
        QTest::newRow("family and style") << 122 << "Alpha Bold" << false;
        QTest::newRow("duplicates, no number") << 125 << "3" << false;
        QTest::newRow("face index") << 121 << "7" << true;
        QTest::newRow("text field") << 25 << "" << false;
        QTest::newRow("none") << 36 << "" << true;
        QTest::newRow("far") << 4711 << "" << true;
    }

    void numberedFields()
    {
        QFETCH(int, field);
        QFETCH(QString, text);
        QFETCH(bool, numeric);
        StaticFont font;
        font.setId(42);
        font.setIsBold(true);
        font.setFamilyName(QStringLiteral("Alpha"));
        font.setStyleName(QStringLiteral("Bold"));
        font.setDuplicateCount(3);
        font.setFaceIndex(7);
        bool isNumeric = !numeric;
        QCOMPARE(font.fieldText(field, &isNumeric), text);
        QCOMPARE(isNumeric, numeric);
        QCOMPARE(font.fieldText(field), text);
    }

    void fontHashIsTheFirstIdentity()
    {
        const auto sha1 = [](const QByteArray& bytes) {
            return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
        };
        StaticFont empty;
        QCOMPARE(empty.fontHash(), sha1("") + QStringLiteral("00"));
        empty.setFaceIndex(5);
        QCOMPARE(empty.fontHash(), sha1("") + QStringLiteral("00"));

        StaticFont font;
        font.setFileHash(QStringLiteral("ab12"));
        font.setFileName(QStringLiteral("/Fonts/A.TTF"));
        font.setFaceIndex(10);
        QCOMPARE(font.fontHash(), sha1("ab12/fonts/a.ttf") + QStringLiteral("0a"));
        font.setFileName(QStringLiteral("/elsewhere"));
        QCOMPARE(font.fontHash(), sha1("ab12/fonts/a.ttf") + QStringLiteral("0a"));
        QCOMPARE(font.fieldText(124), sha1("ab12/elsewhere") + QStringLiteral("0a"));
    }

    void classesAreFoundAnywhereInTheKeywords()
    {
        StaticFont font;
        QVERIFY(!font.isSerif());
        font.setOtherInfo2(QStringLiteral("sans serif"));
        QVERIFY(font.isSerif());
        QVERIFY(!font.isSymbol());
        font.setOtherInfo2(QStringLiteral("Modern,SYMBOL,monospaced"));
        QVERIFY(font.isSymbol());
        QVERIFY(font.isMonospacedClass());
        QVERIFY(!font.isSerif());
    }

    void opticalSizeIsTruncated()
    {
        StaticFont font;
        font.setSpecificWidth(1999);
        font.setSpecificHeight(1);
        QCOMPARE(font.opticalSize(), 1);
        font.setSpecificHeight(-1);
        QCOMPARE(font.opticalSize(), -1);
    }

    void onlyActivityAnnounces()
    {
        StaticFont font;
        QSignalSpy spy(&font, &StaticFont::activityTypeChanged);
        font.setFamilyName(QStringLiteral("x"));
        font.setActivityType(0);
        QCOMPARE(spy.count(), 0);
        font.setActivityType(2);
        font.setActivityType(2);
        QCOMPARE(spy.count(), 1);
    }

    void exportedPropertiesNameTheirOnlineSourceWrongly()
    {
        const QStringList& names = StaticFont::exportedProperties();
        QCOMPARE(names.size(), 26);
        QCOMPARE(names.first(), QStringLiteral("familyName"));
        QCOMPARE(names.last(), QStringLiteral("supportedSubsets"));
        for (const QString& name : names) {
            const bool exists = StaticFont::staticMetaObject.indexOfProperty(name.toUtf8().constData()) >= 0;
            QCOMPARE(exists, name != QLatin1String("onlinseSource"));
        }
    }

    void setsTravelInStreams()
    {
        const StaticFont registersTypes;
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << QVariant::fromValue(QSet<int>{4, 9}) << QVariant::fromValue(QList<int>{3, 1});
        QDataStream in(bytes);
        QVariant set;
        QVariant list;
        in >> set >> list;
        QCOMPARE(set.value<QSet<int>>(), (QSet<int>{4, 9}));
        QCOMPARE(list.value<QList<int>>(), (QList<int>{3, 1}));
    }

    void mapperKnowsExactKeywords()
    {
        auto* const mapper = FontClassificationStringMapper::instance();
        QCOMPARE(mapper->toString(StaticFont::UncompleteLower), QStringLiteral("UncompleteLower"));
        QCOMPARE(mapper->toString(StaticFont::Classification(16)), QString());
        QCOMPARE(mapper->fromString(QStringLiteral("Serif")), StaticFont::Serif);
        QCOMPARE(mapper->fromString(QStringLiteral("serif")), StaticFont::NoClassification);
        QVERIFY(mapper->contains(QStringLiteral("HatedFonts")));
        QVERIFY(!mapper->contains(QStringLiteral("hatedfonts")));
        QVERIFY(mapper->contains(StaticFont::NoClassification));
        QVERIFY(!mapper->contains(StaticFont::Classification(16)));
        QCOMPARE(FontClassificationStringMapper::instance(), mapper);
    }

    void threadsShareRecordsAndTexts()
    {
        const auto font = StaticFontPtr::create();
        const QStringList texts{QStringLiteral("one vendor"), QStringLiteral("another vendor"), QString()};
        QVector<int> runs(8);
        QtConcurrent::blockingMap(runs, [&](int&) {
            for (int i = 0; i < 2000; ++i) {
                font->setVendor(texts.at(i % 3));
                if (!texts.contains(font->vendor()))
                    qFatal("a text nobody set");
                StaticFont own;
                own.setVendor(texts.at(i % 2));
                if (own.vendor() != texts.at(i % 2) || font->fontHash().size() != 42)
                    qFatal("a text was lost");
            }
        });
    }
};

KERVAL_TEST(TestStaticFont)

#include "tst_staticfont.moc"
