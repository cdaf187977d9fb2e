#include "rest/JsonWriter.h"
#include "tests/support/testregistry.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include <limits>

using api::rest::JsonWriter;

class TestJsonWriter : public QObject
{
    Q_OBJECT

private slots:
    void textsComeBackAsTheyWere_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("quotes and controls") << QStringLiteral("\"\\/\b\f\n\r\t\x01\x1f\x7f");
        QTest::newRow("two to four bytes") << QString::fromUtf8("\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
        QString all;
        for (uint c = 0; c < 0xD800; c += 7)
            all += QChar(ushort(c));
        QTest::newRow("longer than a piece") << all;
        QString pairs(255, QLatin1Char('x')); // a pair across the border of two pieces
        pairs += QString::fromUtf8("\xf0\x9f\x98\x80");
        QTest::newRow("pair across a border") << pairs;
    }

    void textsComeBackAsTheyWere()
    {
        QFETCH(QString, text);
        QByteArray out;
        JsonWriter writer(out);
        writer.beginArray();
        writer.value(text);
        writer.endArray();
        QCOMPARE(out, QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact));
    }

    void loneSurrogatesAreReplaced()
    {
        QByteArray out;
        JsonWriter writer(out);
        writer.value(QString(QChar(0xD83D)) + QLatin1Char('a') + QChar(0xDE00));
        QCOMPARE(QString::fromUtf8(out), QStringLiteral("\"\uFFFDa\uFFFD\""));
    }

    void keepsTheOrderOfMembers()
    {
        QByteArray out;
        JsonWriter writer(out);
        writer.beginArray();
        writer.beginObject();
        writer.member(QLatin1String("z"), std::numeric_limits<int>::min());
        writer.key(QLatin1String("a"));
        writer.beginArray();
        writer.endArray();
        writer.member(QLatin1String("m"), false);
        writer.endObject();
        writer.beginObject();
        writer.key(QLatin1String("n"));
        writer.null();
        writer.member(QLatin1String("#"), 0);
        writer.endObject();
        writer.endArray();
        QCOMPARE(out, QByteArray("[{\"z\":-2147483648,\"a\":[],\"m\":false},{\"n\":null,\"#\":0}]"));
    }
};

KERVAL_TEST(TestJsonWriter)
#include "tst_jsonwriter.moc"
