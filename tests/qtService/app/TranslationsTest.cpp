#include "qtService/app/Translations.h"
#include "tests/support/testregistry.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtTest>

class TranslationsTest : public QObject
{
    Q_OBJECT

private slots:
    void choosesTheLanguage_data();
    void choosesTheLanguage();
    void countsFollowTheLanguage();
    void textsGoWithTheObject();
    void germanIsCompleteAndKeepsPlaceholders();
};

namespace {

QString menuEntry()
{
    return QCoreApplication::translate("KrvFontManagerWindow", "Show in Windows Explorer");
}

// What a translation must not lose, in any order: %1, %n, "(*.pdf)", mnemonics, line ends, the dots of a wait text.
QStringList fixedParts(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("%[0-9n]|\\(\\*\\.\\w+\\)|&(?=\\w)|\\n|<[^>]*>|\\.\\.\\.$"));
    QStringList parts;
    auto match = pattern.globalMatch(text);
    while (match.hasNext())
        parts.append(match.next().captured());
    parts.sort();
    return parts;
}

} // namespace

void TranslationsTest::choosesTheLanguage_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("entry");

    const QString english = QStringLiteral("Show in File Manager");
    const QString german = QStringLiteral("Im Dateimanager anzeigen");
    QTest::newRow("German") << QStringList{QStringLiteral("de")} << QStringLiteral("de") << german;
    QTest::newRow("German of a country") << QStringList{QStringLiteral("de-AT")} << QStringLiteral("de") << german;
    QTest::newRow("German in its script")
        << QStringList{QStringLiteral("de-Latn-DE")} << QStringLiteral("de") << german;
    QTest::newRow("English") << QStringList{QStringLiteral("en-GB")} << QStringLiteral("en") << english;
    QTest::newRow("English before German")
        << QStringList{QStringLiteral("en-US"), QStringLiteral("de")} << QStringLiteral("en") << english;
    QTest::newRow("German before English")
        << QStringList{QStringLiteral("de"), QStringLiteral("en")} << QStringLiteral("de") << german;
    QTest::newRow("no file, then German")
        << QStringList{QStringLiteral("rm-CH"), QStringLiteral("de-CH")} << QStringLiteral("de") << german;
    QTest::newRow("no file") << QStringList{QStringLiteral("xx")} << QStringLiteral("en") << english;
    QTest::newRow("no language") << QStringList() << QStringLiteral("en") << english;
}

void TranslationsTest::choosesTheLanguage()
{
    QFETCH(QStringList, languages);
    QFETCH(QString, language);
    const Translations translations(languages);
    QCOMPARE(translations.language(), language);
    QTEST(menuEntry(), "entry");
}

void TranslationsTest::countsFollowTheLanguage()
{
    const Translations translations({QStringLiteral("de")});
    const auto activating = [](int count) {
        return QCoreApplication::translate("FontActivationDialog", "Activating %n font(s)", nullptr, count);
    };
    QCOMPARE(activating(1), QStringLiteral("1 Schrift wird aktiviert"));
    QCOMPARE(activating(2), QStringLiteral("2 Schriften werden aktiviert"));
    // The framework's own texts come along.
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Abbrechen"));
}

void TranslationsTest::textsGoWithTheObject()
{
    {
        const Translations translations({QStringLiteral("de")});
    }
    QCOMPARE(menuEntry(), QStringLiteral("Show in Windows Explorer"));
}

void TranslationsTest::germanIsCompleteAndKeepsPlaceholders()
{
    QFile file(QStringLiteral(KERVAL_SOURCE_DIR "/translations/kerval_de.ts"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    QStringList faults;
    QString source;
    bool isPlural = false;
    int texts = 0;
    const auto check = [&](const QString& translation) {
        ++texts;
        if (translation.isEmpty() || fixedParts(translation) != fixedParts(source))
            faults.append(source + QStringLiteral(" -> ") + translation);
    };
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("source")) {
            source = reader.readElementText();
        } else if (reader.name() == QLatin1String("message")) {
            isPlural = reader.attributes().value(QLatin1String("numerus")) == QLatin1String("yes");
        } else if (reader.name() == QLatin1String("translation")) {
            if (reader.attributes().hasAttribute(QLatin1String("type")))
                faults.append(source + QStringLiteral(" is unfinished"));
            if (!isPlural)
                check(reader.readElementText());
        } else if (reader.name() == QLatin1String("numerusform")) {
            check(reader.readElementText());
        }
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QVERIFY(texts > 300);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

KERVAL_TEST(TranslationsTest)

#include "TranslationsTest.moc"
