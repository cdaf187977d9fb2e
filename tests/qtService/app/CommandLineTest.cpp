#include "qtService/app/CommandLineOptions.h"
#include "qtService/app/OptionParser.h"
#include "tests/support/testregistry.h"

#include <QtTest>

namespace {

QStringList words(std::initializer_list<const char*> list)
{
    QStringList result;
    for (const char* word : list)
        result.append(QLatin1String(word));
    return result;
}

// Holds the words so that argv-like pointers to them stay valid.
class Arguments
{
public:
    explicit Arguments(const QStringList& words)
    {
        m_bytes.append("/opt/bin/kerval");
        for (const QString& word : words)
            m_bytes.append(word.toUtf8());
        for (const QByteArray& bytes : m_bytes)
            m_pointers.append(bytes.constData());
    }
    int count() const { return m_pointers.size(); }
    const char* const* values() const { return m_pointers.constData(); }

private:
    QList<QByteArray> m_bytes;
    QVector<const char*> m_pointers;
};

} // namespace

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void modesFollowFromTheOptions_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<bool>("usable");
        QTest::addColumn<bool>("launcher");
        QTest::addColumn<bool>("opensWindow");
        QTest::addColumn<QString>("outfile");
        const QStringList none;
        QTest::newRow("bare: launcher with window") << none << true << true << true << QString();
        QTest::newRow("async: launcher without") << words({"--async"}) << true << true << false << QString();
        QTest::newRow("no window wanted") << words({"--dontStartNativeFM"}) << true << true << false << QString();
        QTest::newRow("outfile=") << words({"--outfile=/tmp/x.port"}) << true << false << true << "/tmp/x.port";
        QTest::newRow("outfile word") << words({"--outfile", "/tmp/x.port", "--printStdErr"}) << true << false << true
                                      << "/tmp/x.port";
        QTest::newRow("outfile last: empty, so launcher") << words({"--outfile"}) << true << true << true << "";
        QTest::newRow("outfile before a switch") << words({"--outfile", "--async"}) << true << true << false << "";
        QTest::newRow("process serial number") << words({"-psn_0_123"}) << true << true << true << QString();
        QTest::newRow("plain words are ignored") << words({"a", "-", "b"}) << true << true << true << QString();
        QTest::newRow("unknown name") << words({"--verbose"}) << false << true << true << QString();
        QTest::newRow("unknown letter") << words({"-x"}) << false << true << true << QString();
        QTest::newRow("async with outfile") << words({"--async", "--outfile", "f"}) << false << true << false << "f";
    }

    void modesFollowFromTheOptions()
    {
        QFETCH(QStringList, words);
        QFETCH(bool, usable);
        QFETCH(bool, launcher);
        QFETCH(bool, opensWindow);
        QFETCH(QString, outfile);
        const Arguments arguments(words);
        CommandLineOptions options;
        QCOMPARE(parseCommandLine(options, arguments.count(), arguments.values()), usable);
        QCOMPARE(options.async, launcher);
        QCOMPARE(!options.dontStartNativeFM, opensWindow);
        QCOMPARE(options.outfile, outfile);
    }

    void unknownOptionsAreNamed()
    {
        CommandLineOptions options;
        const Arguments arguments({QStringLiteral("--verbose=3")});
        QTest::ignoreMessage(QtWarningMsg, "Unknown option --verbose");
        QVERIFY(!parseCommandLine(options, arguments.count(), arguments.values()));
    }

    void everyKindOfOptionTakesItsValues()
    {
        const Arguments arguments({QStringLiteral("--one"), QStringLiteral("1"), QStringLiteral("-rX"),
                                   QStringLiteral("--rep"), QStringLiteral("Y"), QStringLiteral("--all"),
                                   QStringLiteral("a"), QStringLiteral("--odd"), QStringLiteral("b")});
        QString one;
        QStringList repeated;
        QStringList all;
        OptionParser parser(arguments.count(), arguments.values());
        parser.addOption({OptionParser::SingleArgument, 0, QStringLiteral("one"), &one, QString()});
        parser.addOption({OptionParser::Repeatable, 'r', QStringLiteral("rep"), &repeated, QString()});
        parser.addOption({OptionParser::VariableLength, 0, QStringLiteral("all"), &all, QString()});
        QVERIFY(parser.parse(false));
        QCOMPARE(one, QStringLiteral("1"));
        QCOMPARE(repeated, (QStringList{QStringLiteral("X"), QStringLiteral("Y")}));
        QCOMPARE(all, (QStringList{QStringLiteral("a"), QStringLiteral("odd"), QStringLiteral("b")}));
        QVERIFY(parser.wasSeen(QStringLiteral("r")));
        QCOMPARE(parser.programName(), QStringLiteral("kerval"));
    }

    void missingValuesAreRefused()
    {
        const Arguments arguments({QStringLiteral("--one"), QStringLiteral("--flag")});
        QString one;
        bool flag = false;
        OptionParser parser(arguments.count(), arguments.values());
        parser.addOption({OptionParser::SingleArgument, 0, QStringLiteral("one"), &one, QString()});
        parser.addSwitch(QStringLiteral("flag"), &flag);
        QTest::ignoreMessage(QtWarningMsg, "Expected an argument after 'one' option");
        QVERIFY(!parser.parse(false));
    }

    void positionalSlotsFillOnce()
    {
        QString slot;
        const Arguments two({QStringLiteral("a"), QStringLiteral("b")});
        OptionParser tooMany(two.count(), two.values());
        tooMany.setRequiredArgument(&slot);
        QTest::ignoreMessage(QtWarningMsg, "Too many arguments");
        QVERIFY(!tooMany.parse(false));
        QCOMPARE(slot, QStringLiteral("a"));

        QString missing;
        const Arguments none({});
        OptionParser lacking(none.count(), none.values());
        lacking.setRequiredArgument(&missing);
        QTest::ignoreMessage(QtWarningMsg, "Lacking required argument");
        QVERIFY(!lacking.parse(false));
    }
};

KERVAL_TEST(CommandLineTest)
#include "CommandLineTest.moc"
