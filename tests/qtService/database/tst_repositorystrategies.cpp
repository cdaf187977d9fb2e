#include "qtService/database/AdderDataFontFactory.h"
#include "qtService/database/CachedFontRepositoryStrategy.h"
#include "qtService/database/DatabaseTableGateway.h"
#include "qtService/database/FontTableReader.h"
#include "qtService/database/RecordListFontFactory.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "tests/support/testregistry.h"

#include <QMetaProperty>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <atomic>

using M = MatchingCriteria;

namespace {

// What the adder would report of a face, every key with a value of its own.
QHash<QString, QString> report(int number)
{
    const QByteArray texts =
        "file_name face_name style menu_family_name menu_style_name full_name ps_name sfnt_ps_name "
        "filehash version vendor vendor_url designer designer_url description trademark other_info "
        "format foundry license license_url other_info2 latin_metrics_correction "
        "full_metrics_correction online_source";
    const QByteArray numbers = "hwi hhe hwe italic_angle specific_width specific_height sc_all sc_body sc_head "
                               "face_index online_id added used downloaded activated deactivated last_seen";
    QHash<QString, QString> info;
    for (const QByteArray& key : texts.split(' '))
        info.insert(QString::fromLatin1(key), QStringLiteral("%1-%2").arg(QLatin1String(key)).arg(number));
    int value = 1000 * number;
    for (const QByteArray& key : numbers.split(' '))
        info.insert(QString::fromLatin1(key), QString::number(++value));
    info.insert(QStringLiteral("original_file_name"), info.value(QStringLiteral("file_name")));
    for (const char* flag : {"bold", "deleted", "mono", "ligature", "is_purchased"})
        info.insert(QLatin1String(flag), QStringLiteral("1"));
    info.insert(QStringLiteral("style_field"), QStringLiteral("200"));
    info.insert(QStringLiteral("serif_style"), QStringLiteral("7"));
    info.insert(QStringLiteral("supported_subsets"), QStringLiteral("0,5,33"));
    return info;
}

StaticFontPtr reportedFont(int number)
{
    return AdderDataFontFactory::instance()->createFont(report(number));
}

QString difference(const fms::StaticFont& a, const fms::StaticFont& b, const QStringList& except)
{
    const QMetaObject& meta = fms::StaticFont::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        if (except.contains(QLatin1String(property.name())))
            continue;
        const QVariant left = property.read(&a);
        const QVariant right = property.read(&b);
        const bool same =
            left.canConvert<QSet<int>>() ? left.value<QSet<int>>() == right.value<QSet<int>>() : left == right;
        if (!same)
            return QStringLiteral("%1: %2 / %3").arg(QLatin1String(property.name()), left.toString(), right.toString());
    }
    return QString();
}

// What a row does not keep of a record.
const QStringList notStored{QStringLiteral("activityType"), QStringLiteral("isMonospaced"),
                            QStringLiteral("isLigature"), QStringLiteral("isSmallCaps")};

QList<int> idsOf(const QList<StaticFontPtr>& fonts)
{
    QList<int> ids;
    for (const StaticFontPtr& font : fonts)
        ids.append(font->id());
    return ids;
}

} // namespace

class TestRepositoryStrategies : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        m_database = QSharedPointer<FontDatabase>::create(m_folder->filePath(QStringLiteral("fms.db")));
        m_relational = QSharedPointer<RelationalFontRepositoryStrategy>::create(m_database);
    }

    void adderReportBecomesARecord()
    {
        const StaticFontPtr font = reportedFont(1);
        QCOMPARE(font->id(), fms::StaticFont::NewId);
        QCOMPARE(font->postScriptName(), QStringLiteral("ps_name-1"));
        QVERIFY(font->isMonospaced());
        QVERIFY(!font->isItalic());
        QCOMPARE(int(font->styleField()), 200);
        QCOMPARE(font->supportedSubsets(), (QSet<int>{0, 5, 33}));
        QCOMPARE(font->dateAdded().toSecsSinceEpoch(), report(1).value(QStringLiteral("added")).toInt());

        const StaticFontPtr empty = AdderDataFontFactory::instance()->createFont({});
        QVERIFY(empty->familyName().isEmpty());
        QCOMPARE(empty->supportedSubsets(), QSet<int>{0});
        QCOMPARE(empty->dateActivated().toSecsSinceEpoch(), 0);
    }

    // Through SQLite's own interface and through the gateway, a record comes back as it was stored.
    void recordsComeBackAlike()
    {
        const QList<StaticFontPtr> fonts{reportedFont(1), reportedFont(2), StaticFontPtr::create()};
        QVERIFY(m_relational->addFonts(fonts));
        QCOMPARE(idsOf(fonts), (QList<int>{1, 2, 3}));

        QVERIFY(FontTableReader(*m_database).isUsable());
        const QList<StaticFontPtr> read = m_relational->fonts();
        const auto rows = m_database->fontGateway()->select();
        const QList<StaticFontPtr> listed = RecordListFontFactory::instance()->createFonts(*rows);
        QCOMPARE(read.size(), 3);
        QCOMPARE(listed.size(), 3);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(difference(*read.at(i), *fonts.at(i), notStored), QString());
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(difference(*read.at(i), *listed.at(i), {}), QString());
            QCOMPARE(difference(*m_relational->font(fonts.at(i)->id()), *listed.at(i), {}), QString());
            QCOMPARE(read.at(i)->activityType(), -1);
            QVERIFY(read.at(i)->fileExists());
        }
    }

    void rowsHoldWhatOtherToolsExpect()
    {
        const StaticFontPtr font = reportedFont(1);
        font->setActivityType(2);
        font->setDateLastUsed(QDateTime::fromSecsSinceEpoch(0));
        QVERIFY(m_relational->addFont(font));
        QSqlQuery query(m_database->connectionFactory()->database());
        QVERIFY(query.exec(QStringLiteral("SELECT active, typeof(bold), bold, mono, serif, used, typeof(vendor), "
                                          "style_field, supported_subsets, tags, face_name FROM font")));
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toInt(), 0);
        QCOMPARE(query.value(1).toString(), QStringLiteral("integer"));
        QCOMPARE(query.value(2).toInt(), 1);
        QVERIFY(query.isNull(3));
        QVERIFY(query.isNull(4));
        QVERIFY(query.isNull(5));
        QCOMPARE(query.value(6).toString(), QStringLiteral("text"));
        QCOMPARE(query.value(7).toString(), QStringLiteral("200"));
        QCOMPARE(query.value(8).toString(), QStringLiteral("0,5,33"));
        QVERIFY(query.isNull(9));
        QCOMPARE(query.value(10).toString(), QStringLiteral("face_name-1"));
    }

    void textsOfAnyKindAreStored()
    {
        const StaticFontPtr font = reportedFont(1);
        font->setFamilyName(QStringLiteral("O'Brien \"%1\" ; DROP TABLE font -- \n Ω") +
                            QString::fromUcs4(U"\U0001F600"));
        font->setFileName(QStringLiteral("/päth/with 100%/_x_"));
        QVERIFY(m_relational->addFont(font));
        QCOMPARE(m_relational->fonts().first()->familyName(), font->familyName());
        QCOMPARE(m_relational->fontIdsForFile(font->fileName()), QList<int>{font->id()});
        QCOMPARE(m_relational->findMatchingFontIds(M::leaf(M::Equal, QStringLiteral("familyName"), font->familyName())),
                 QList<int>{font->id()});
    }

    void relationalAnswers()
    {
        const QList<StaticFontPtr> fonts{reportedFont(1), reportedFont(2), reportedFont(3)};
        fonts.at(2)->setFileName(fonts.at(1)->fileName());
        fonts.at(2)->setFoundry(fonts.at(1)->foundry());
        QVERIFY(m_relational->addFonts(fonts));
        QCOMPARE(m_relational->fontCount(), 3);
        QVERIFY(m_relational->containsFont(2));
        QVERIFY(!m_relational->containsFont(9));
        QVERIFY(!m_relational->font(9));
        QCOMPARE(m_relational->fontIdList(), (QList<int>{1, 2, 3}));
        QCOMPARE(m_relational->foundries(), (QStringList{QStringLiteral("foundry-1"), QStringLiteral("foundry-2")}));
        QCOMPARE(m_relational->fileFaces().value(fonts.at(1)->fileName()),
                 (QList<int>{fonts.at(1)->faceIndex(), fonts.at(2)->faceIndex()}));

        fonts.at(0)->setVendor(QStringLiteral("changed"));
        QVERIFY(m_relational->updateFont(fonts.at(0)));
        QCOMPARE(m_relational->font(1)->vendor(), QStringLiteral("changed"));
        QCOMPARE(m_relational->font(2)->vendor(), QStringLiteral("vendor-2"));
        QVERIFY(m_relational->removeFont(fonts.at(0)));
        QCOMPARE(m_relational->fontIdList(), (QList<int>{2, 3}));
        QVERIFY(m_relational->removeAll());
        QCOMPARE(m_relational->fontCount(), 0);
        // Ids are not given again.
        const StaticFontPtr next = reportedFont(4);
        QVERIFY(m_relational->addFont(next));
        QCOMPARE(next->id(), 4);
    }

    void cacheLoadsAndFollows()
    {
        QVERIFY(m_relational->addFonts({reportedFont(1), reportedFont(2)}));
        CachedFontRepositoryStrategy cache(m_relational);
        QCOMPARE(cache.fontIdList(), (QList<int>{1, 2}));
        QCOMPARE(cache.fonts().first(), cache.font(1));

        const StaticFontPtr third = reportedFont(3);
        third->setFoundry(QStringLiteral("A foundry"));
        QVERIFY(cache.addFont(third));
        QCOMPARE(cache.font(3), third);
        QCOMPARE(cache.foundries().first(), QStringLiteral("A foundry"));
        QCOMPARE(cache.fileFaces().size(), 3);
        QCOMPARE(cache.fontsForHash(third->fontHash()), QList<StaticFontPtr>{third});
        QVERIFY(cache.fontsForHash(QStringLiteral("none")).isEmpty());

        const StaticFontPtr fourth = reportedFont(4);
        QVERIFY(cache.addFont(fourth));
        QCOMPARE(cache.fileFaces(), m_relational->fileFaces());
        QCOMPARE(cache.fontsForHash(fourth->fontHash()), QList<StaticFontPtr>{fourth});
        QCOMPARE(cache.fontIdsForFile(fourth->fileName()), QList<int>{4});

        QVERIFY(cache.removeFonts({third, fourth}));
        QCOMPARE(cache.fontCount(), 2);
        QVERIFY(!cache.containsFont(3));
        QVERIFY(cache.fontsForHash(third->fontHash()).isEmpty());
        QCOMPARE(cache.foundries(), m_relational->foundries());
        QCOMPARE(cache.fileFaces(), m_relational->fileFaces());
        // A late update of a removed font does not bring it back.
        QVERIFY(cache.updateFont(third));
        QVERIFY(!cache.font(3));
        QCOMPARE(cache.findMatchingFontIds(MatchingCriteriaPtr()), (QList<int>{1, 2}));

        const StaticFontPtr replacement = m_relational->font(2);
        QVERIFY(cache.updateFont(replacement));
        QCOMPARE(cache.font(2), replacement);
        QCOMPARE(cache.fonts().last(), replacement);

        QVERIFY(cache.removeAll());
        QVERIFY(cache.fonts().isEmpty());
        QVERIFY(cache.fileFaces().isEmpty());
        QCOMPARE(m_relational->fontCount(), 0);
    }

    void cacheAnswersCriteria()
    {
        CachedFontRepositoryStrategy cache(m_relational);
        QList<StaticFontPtr> fonts;
        for (int i = 0; i < 50; ++i)
            fonts.append(reportedFont(i));
        QVERIFY(cache.addFonts(fonts));
        QCOMPARE(cache.findMatchingFontIds(M::allOf({M::idIn({30, 4, 4, 99, 7})})), (QList<int>{4, 7, 30}));
        QCOMPARE(cache.findMatchingFontIds(M::allOf({M::idIn({30, 4}), M::leaf(M::Greater, QStringLiteral("id"), 5)})),
                 QList<int>{30});
        QCOMPARE(cache.findMatchingFontIds(M::allOf({M::idIn({})})), QList<int>());
        QCOMPARE(
            cache.findMatchingFonts(M::leaf(M::EndsWith, QStringLiteral("familyName"), QStringLiteral("-7"))).size(),
            1);
        QCOMPARE(cache.findMatchingFontIds(M::allOf()).size(), 50);
    }

    // Copies of one file in /f/A.ttf and /f/a.ttf have one hash, because hashes ignore case.
    void fontsMayShareAHash()
    {
        CachedFontRepositoryStrategy cache(m_relational);
        const QList<StaticFontPtr> twins{reportedFont(1), reportedFont(1)};
        twins.last()->setFileName(twins.first()->fileName().toUpper());
        QVERIFY(cache.addFonts(twins));
        const QString hash = twins.first()->fontHash();
        QCOMPARE(twins.last()->fontHash(), hash);
        const auto hashed = M::allOf({M::leaf(M::InList, QStringLiteral("fontHash"), QStringList{hash})});
        QCOMPARE(cache.findMatchingFontIds(hashed), idsOf(twins));
        QVERIFY(cache.removeFont(twins.first()));
        QCOMPARE(cache.findMatchingFontIds(hashed), QList<int>{twins.last()->id()});
    }

    // SQLite takes the transaction back in the midst of the batch; what came after must not stay behind.
    void aFullFileTakesNothingOfABatch()
    {
        QList<StaticFontPtr> fonts;
        for (int i = 0; i < 300; ++i)
            fonts.append(reportedFont(i));
        fonts[200]->setDescription(QString(1 << 20, QLatin1Char('x')));
        CachedFontRepositoryStrategy cache(m_relational);
        QSqlQuery query(m_database->connectionFactory()->database());
        QVERIFY(query.exec(QStringLiteral("PRAGMA max_page_count = 200")));
        QVERIFY(!cache.addFonts(fonts));
        QCOMPARE(idsOf(fonts), QVector<int>(300, fms::StaticFont::NewId).toList());
        QCOMPARE(m_relational->fontCount(), 0);
        QCOMPARE(cache.fontCount(), 0);
        QVERIFY(query.exec(QStringLiteral("PRAGMA max_page_count = 100000")));
        QVERIFY(cache.addFonts(fonts));
        QCOMPARE(m_relational->fontCount(), 300);
    }

    void companionsAreStoredWithTheFontsOrNotAtAll()
    {
        CachedFontRepositoryStrategy cache(m_relational);
        const QList<StaticFontPtr> fonts{reportedFont(1), reportedFont(2)};
        QList<int> ids;
        const auto refuse = [&] {
            ids = idsOf(fonts);
            return false;
        };
        QVERIFY(!cache.addFonts(fonts, refuse));
        QVERIFY(ids.first() > 0 && ids.last() > ids.first());
        QCOMPARE(cache.fontCount(), 0);
        QCOMPARE(m_relational->fontCount(), 0);
        QVERIFY(cache.addFonts(fonts, [] { return true; }));
        QCOMPARE(m_relational->fontCount(), 2);
    }

    void refusedWritesLeaveTheCache()
    {
        CachedFontRepositoryStrategy cache(m_relational);
        const StaticFontPtr font = reportedFont(1);
        QVERIFY(cache.addFont(font));
        QSqlQuery query(m_database->connectionFactory()->database());
        QVERIFY(query.exec(QStringLiteral("PRAGMA query_only = 1")));
        QVERIFY(!cache.addFont(reportedFont(2)));
        QVERIFY(!cache.removeFont(font));
        QVERIFY(!cache.removeAll());
        QCOMPARE(cache.fontIdList(), QList<int>{1});
        QVERIFY(query.exec(QStringLiteral("PRAGMA query_only = 0")));
        QVERIFY(cache.removeFont(font));
    }

    // Readers see every record whole and with its id while writers come and go.
    void readersAndWritersMeet()
    {
        CachedFontRepositoryStrategy cache(m_relational);
        std::atomic<bool> stop{false};
        QVector<QThread*> readers;
        for (int i = 0; i < 2; ++i) {
            readers.append(QThread::create([&cache, &stop] {
                while (!stop) {
                    for (const StaticFontPtr& font : cache.fonts()) {
                        if (font->id() <= 0)
                            qFatal("a record without an id");
                    }
                    cache.findMatchingFontIds(
                        M::leaf(M::Contains, QStringLiteral("license"), QStringLiteral("7"), Qt::CaseInsensitive));
                    cache.foundries();
                    cache.fileFaces();
                }
            }));
            readers.last()->start();
        }
        for (int round = 0; round < 30; ++round) {
            const QList<StaticFontPtr> fonts{reportedFont(round), reportedFont(round + 1000)};
            QVERIFY(cache.addFonts(fonts));
            fonts.first()->setLicense(QStringLiteral("licence"));
            QVERIFY(cache.updateFonts(fonts));
            QVERIFY(cache.removeFont(fonts.last()));
        }
        stop = true;
        for (QThread* reader : qAsConst(readers))
            reader->wait();
        qDeleteAll(readers);
        QCOMPARE(cache.fontCount(), 30);
        QCOMPARE(idsOf(cache.fonts()), idsOf(m_relational->fonts()));
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QSharedPointer<FontDatabase> m_database;
    QSharedPointer<RelationalFontRepositoryStrategy> m_relational;
};

KERVAL_TEST(TestRepositoryStrategies)

#include "tst_repositorystrategies.moc"
