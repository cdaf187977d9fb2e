#include "qtService/database/EncryptedTransformationStrategy.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/FontSerializedTransformationStrategy.h"
#include "tests/support/testregistry.h"

#include <QtTest>

namespace {

using Db = FontDatabase;

ScramblerTables realTables()
{
    ScramblerTables tables;
    tables.delimiters = " ,.()=?;\n*";
    tables.keywords = "|select||from||where||insert||into||values||create||table||integer||primary||key||text|";
    tables.statementPlain = "abcdefghijklmnopqrstuvwxyz_";
    tables.statementCipher = "_zyxwvutsrqponmlkjihgfedcba";
    tables.valuePlain = "abcdefghijklmnopqrstuvwxyz0123456789 ";
    tables.valueCipher = "q7wertyuiop asdfghjkl1zxcvbnm02345689";
    return tables;
}

} // namespace

class TestTransformations : public QObject
{
    Q_OBJECT

private slots:
    void emptyTablesChangeNothing()
    {
        const StatementScrambler statements({});
        const ValueScrambler values({});
        const QString text = QStringLiteral("SELECT id FROM font");
        QCOMPARE(statements.encode(text), text);
        QCOMPARE(statements.decode(text), text);
        QCOMPARE(values.encode(text), text);
    }

    void statementsKeepKeywordsAndPlaceholders()
    {
        const StatementScrambler scrambler(realTables());
        const QString text = QStringLiteral("SELECT ps_name,Id FROM font WHERE id = ?");
        const QString scrambled = scrambler.encode(text);
        QVERIFY(scrambled.startsWith(QLatin1String("SELECT ")));
        QVERIFY(scrambled.contains(QLatin1String(" FROM ")));
        QVERIFY(scrambled.endsWith(QLatin1String(" = ?")));
        QVERIFY(!scrambled.contains(QLatin1String("font")));
        QCOMPARE(scrambler.decode(scrambled), text);
        // Position by position: "aa" becomes cipher[0] and cipher[1].
        QCOMPARE(scrambler.encode(QStringLiteral("aa")), QStringLiteral("_z"));
        QCOMPARE(scrambler.encode(QString(300, QLatin1Char('a'))), QString(300, QLatin1Char('a')));
    }

    void valuesComeBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << "";
        QTest::newRow("word") << "helvetica";
        QTest::newRow("outside the alphabet") << "Größe – «Ω» ABC\n";
        QTest::newRow("long") << QStringLiteral("the quick brown fox 0123456789 ").repeated(40);
    }

    void valuesComeBack()
    {
        QFETCH(QString, text);
        const ValueScrambler scrambler(realTables());
        const QString scrambled = scrambler.encode(text);
        QCOMPARE(scrambler.decode(scrambled), text);
        if (text.contains(QLatin1String("helvetica")))
            QVERIFY(scrambled != text);
    }

    void valueShiftStartsAtTheLength()
    {
        ScramblerTables tables;
        tables.valuePlain = "abcd";
        tables.valueCipher = "wxyz";
        const ValueScrambler scrambler(tables);
        // Two bytes: the shift begins at 2, and grows with each replaced byte only.
        QCOMPARE(scrambler.encode(QStringLiteral("aa")), QStringLiteral("yz"));
        QCOMPARE(scrambler.encode(QStringLiteral("a-a")), QStringLiteral("z-w"));
    }

    void plainColumnsStayReadable()
    {
        const auto inner = QSharedPointer<FontSerializedTransformationStrategy>::create();
        const EncryptedTransformationStrategy<Db::FontTableColumn> chain({Db::hwe}, inner, realTables());
        QCOMPARE(chain.toDatabase(Db::hwe, 170), QVariant(170));
        const QVariant stored = chain.toDatabase(Db::vendor, QStringLiteral("some vendor"));
        QVERIFY(stored.toString() != QLatin1String("some vendor"));
        QCOMPARE(chain.fromDatabase(Db::vendor, stored).toString(), QStringLiteral("some vendor"));
        const QDateTime moment = QDateTime::fromSecsSinceEpoch(1600000000);
        const QVariant storedMoment = chain.toDatabase(Db::added, moment);
        QVERIFY(storedMoment.toString() != QLatin1String("1600000000"));
        QCOMPARE(chain.fromDatabase(Db::added, storedMoment).toDateTime(), moment);
    }

    void recordValuesAreSerialized()
    {
        const FontSerializedTransformationStrategy serialized;
        QCOMPARE(serialized.toDatabase(Db::active, 2), QVariant(0));
        QCOMPARE(serialized.toDatabase(Db::bold, true), QVariant(1));
        QCOMPARE(serialized.toDatabase(Db::style_field, 200), QVariant(QStringLiteral("200")));
        QVERIFY(serialized.toDatabase(Db::added, QDateTime::fromSecsSinceEpoch(0)).isNull());
        QCOMPARE(serialized.toDatabase(Db::added, QDateTime()), QVariant(4294967295U));
        QCOMPARE(serialized.toDatabase(Db::supported_subsets, QVariant::fromValue(QSet<int>{7, 3})),
                 QVariant(QStringLiteral("3,7")));

        QCOMPARE(serialized.fromDatabase(Db::added, QVariant()).toDateTime().toSecsSinceEpoch(), 0);
        QCOMPARE(serialized.fromDatabase(Db::supported_subsets, QStringLiteral("")).value<QSet<int>>(), QSet<int>{0});
        QCOMPARE(serialized.fromDatabase(Db::serif_style, QStringLiteral("258")), QVariant(2));
        QCOMPARE(serialized.fromDatabase(Db::is_purchased, QStringLiteral("1")), QVariant(true));
    }

    void absentAndEmptyAreToldApart()
    {
        const EncryptedTransformationStrategy<Db::FontTableColumn> chain(
            {}, QSharedPointer<FontSerializedTransformationStrategy>::create());
        QVERIFY(!chain.toDatabase(Db::vendor, QString()).isNull());
        QVERIFY(!chain.toDatabase(Db::vendor_url, QUrl()).isNull());
        QVERIFY(chain.toDatabase(Db::added, QDateTime::fromSecsSinceEpoch(0)).isNull());
    }
};

KERVAL_TEST(TestTransformations)

#include "tst_transformations.moc"
