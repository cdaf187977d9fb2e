#include "tests/support/testregistry.h"

#include "helpers/common/Base64.h"
#include "helpers/common/ByteScrambling.h"
#include "helpers/common/FaceReport.h"
#include "helpers/common/FeatureFolderLayout.h"
#include "helpers/common/HexPath.h"

#include <QtTest>

using namespace kerval::helpers;

// What travels between the service and its helper programs, byte by byte.
class ProtocolTest : public QObject
{
    Q_OBJECT

private slots:
    void base64AgreesWithTheFramework();
    void scramblingFollowsItsFormula();
    void pathsAreHexadecimal();
    void reportsComeBack();
    void valuesCannotBreakOut_data();
    void valuesCannotBreakOut();
    void malformedOutputIsRefused_data();
    void malformedOutputIsRefused();
    void malformedFeaturesAreRefused_data();
    void malformedFeaturesAreRefused();
    void blobsAreWalkedToTheirLastWholeItem();
    void featureFilesCoverTheAlphabet();
};

void ProtocolTest::base64AgreesWithTheFramework()
{
    std::string bytes;
    for (int length = 0; length < 300; ++length) {
        const QByteArray reference = QByteArray::fromStdString(bytes).toBase64();
        QCOMPARE(QByteArray::fromStdString(toBase64(bytes)), reference);
        QCOMPARE(fromBase64(reference.toStdString()).value_or("?"), bytes);
        bytes += static_cast<char>(length * 89);
    }
    QCOMPARE(fromBase64("QUJD\nRA==\n").value_or("?"), std::string("ABCD"));
    for (const char* text : {"Q", "QU=", "QUJD=", "Q*JD", "QU==JD==", "QUJD===="})
        QVERIFY2(!fromBase64(text), text);
}

void ProtocolTest::scramblingFollowsItsFormula()
{
    std::string bytes(200000, 'k');
    unscramble(bytes);
    for (qint32 i = 0; i < 200000; i += i < 1000 ? 1 : 997) {
        const qint32 p = (i % 14 - 12) * (i % 2 - 2);
        const int expected = ('k' + 15 - (p * i) % 30) & 0xff;
        QCOMPARE(static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]), static_cast<unsigned char>(expected));
    }
    scramble(bytes);
    QCOMPARE(bytes, std::string(200000, 'k'));
    QCOMPARE(unseal(seal("7:0.5\n8:0.75\n")).value_or("?"), std::string("7:0.5\n8:0.75\n"));
}

void ProtocolTest::pathsAreHexadecimal()
{
    QCOMPARE(encodePath("c:/f/a.ttf"), std::string("0x633a2f662f612e747466"));
    QCOMPARE(decodePath("0x633A2f662f612e747466").value_or("?"), std::string("c:/f/a.ttf"));
    QCOMPARE(decodePath(encodePath("a b\xff\n")).value_or("?"), std::string("a b\xff\n"));
    QCOMPARE(decodePath("/plain path.ttf").value_or("?"), std::string("/plain path.ttf"));
    QVERIFY(!decodePath("0x633"));
    QVERIFY(!decodePath("0x6g"));
}

void ProtocolTest::reportsComeBack()
{
    FaceReport report;
    report.information = {{"face_name", "Caf\xc3\xa9: Nr. 5"}, {"style", ""}, {"license", "line 1\nline 2"}};
    FeatureVector vector{};
    vector[0] = 1.5f;
    vector[60] = -2.25f;
    report.features = {{97, vector}, {48, FeatureVector{}}};

    const auto payload = openEnvelope("text before\n" + writeFaceReport(report));
    QVERIFY(payload);
    const auto parsed = parseFaceReport(*payload);
    QVERIFY(parsed);
    QCOMPARE(parsed->information, report.information);
    QCOMPARE(parsed->features, report.features);
}

void ProtocolTest::valuesCannotBreakOut_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("item separator") << QByteArray("a|:|face_name:stolen");
    QTest::newRow("part separator") << QByteArray("a|:::::|97|:|QUJD");
    QTest::newRow("marker") << QByteArray("|:::::::::::::::|5|abcde");
    QTest::newRow("begins a separator at its end") << QByteArray("a|:");
    QTest::newRow("bar at its end") << QByteArray("a|");
    QTest::newRow("ends a separator at its start") << QByteArray(":|a");
    QTest::newRow("separator around a control character") << QByteArray("a|\x01:|b");
    QTest::newRow("separator around NUL") << QByteArray("a|\0:|b", 6);
    QTest::newRow("cut UTF-8") << QByteArray("a\xe5\x87");
    QTest::newRow("overlong UTF-8") << QByteArray("\xc0\xbc\xe0\x80\xbc");
    QTest::newRow("surrogate") << QByteArray("\xed\xa0\x80");
    QTest::newRow("above the last character") << QByteArray("\xf4\x90\x80\x80\xff");
}

void ProtocolTest::valuesCannotBreakOut()
{
    QFETCH(QByteArray, value);
    FaceReport report;
    report.information = {{"designer", value.toStdString()}, {"face_name", "True"}};
    report.features = {{97, FeatureVector{}}};
    const auto payload = openEnvelope(writeFaceReport(report));
    QVERIFY(payload);
    const auto parsed = parseFaceReport(*payload);
    QVERIFY(parsed);
    QCOMPARE(parsed->information.size(), std::size_t(2));
    QCOMPARE(parsed->information[1].second, std::string("True"));
    QCOMPARE(parsed->features.size(), std::size_t(1));
    const QByteArray safe = QByteArray::fromStdString(parsed->information[0].second);
    QCOMPARE(QString::fromUtf8(safe).toUtf8(), safe);
    QCOMPARE(harmlessValue(safe.toStdString()), safe.toStdString());
}

void ProtocolTest::malformedOutputIsRefused_data()
{
    QTest::addColumn<QByteArray>("output");
    const QByteArray marker("|:::::::::::::::|");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no marker") << QByteArray("|::::::::::::::|4|QUJD");
    QTest::newRow("no bar") << QByteArray(marker + "4");
    QTest::newRow("length 0") << QByteArray(marker + "0|");
    QTest::newRow("no length") << QByteArray(marker + "|QUJD");
    QTest::newRow("negative length") << QByteArray(marker + "-4|QUJD");
    QTest::newRow("length beyond all numbers") << QByteArray(marker + "99999999999999999999999|QUJD");
    QTest::newRow("cut short") << QByteArray(marker + "8|QUJD");
    QTest::newRow("no base64") << QByteArray(marker + "4|QU|D");
}

void ProtocolTest::malformedOutputIsRefused()
{
    QFETCH(QByteArray, output);
    QVERIFY(!openEnvelope(output.toStdString()));
}

void ProtocolTest::malformedFeaturesAreRefused_data()
{
    QTest::addColumn<QByteArray>("features");
    QTest::addColumn<bool>("accepted");
    const QByteArray vector = QByteArray(244, 'v').toBase64();
    QTest::newRow("one vector") << QByteArray("97|:|" + vector) << true;
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("odd last item is ignored") << QByteArray("97|:|" + vector + "|:|98") << true;
    QTest::newRow("code 0") << QByteArray("0|:|" + vector) << false;
    QTest::newRow("no code") << QByteArray("a|:|" + vector) << false;
    QTest::newRow("240 bytes") << QByteArray("97|:|" + QByteArray(240, 'v').toBase64()) << false;
    QTest::newRow("248 bytes") << QByteArray("97|:|" + QByteArray(248, 'v').toBase64()) << false;
}

void ProtocolTest::malformedFeaturesAreRefused()
{
    QFETCH(QByteArray, features);
    QFETCH(bool, accepted);
    QCOMPARE(parseFaceReport("face_name:A|:::::|" + features.toStdString()).has_value(), accepted);
}

void ProtocolTest::blobsAreWalkedToTheirLastWholeItem()
{
    std::string blob;
    FeatureVector vector{};
    vector[7] = 3.5f;
    appendFeature(blob, 'a', vector);
    appendFeature(blob, 0xff, FeatureVector{});
    blob += "cut";

    FeatureBlobReader reader(blob);
    unsigned char key = 0;
    std::string_view bytes;
    FeatureVector read{};
    QVERIFY(reader.next(key, bytes));
    QCOMPARE(key, static_cast<unsigned char>('a'));
    QVERIFY(fromBytes(bytes, read));
    QCOMPARE(read, vector);
    QVERIFY(reader.next(key, bytes));
    QCOMPARE(key, static_cast<unsigned char>(0xff));
    QVERIFY(!reader.next(key, bytes));
}

void ProtocolTest::featureFilesCoverTheAlphabet()
{
    std::string sorted(featureAlphabet);
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(sorted, std::string(featurefolder::characters));
    QCOMPARE(featurefolder::characterFile('a'), std::string("features_97.bin"));
}

KERVAL_TEST(ProtocolTest)

#include "ProtocolTest.moc"
