#include "rest/http/HttpRequestParser.h"
#include "tests/support/testregistry.h"

#include <QtTest>

class TestHttpParser : public QObject
{
    Q_OBJECT

    // Writes down what the parser reports.
    struct Recorder : HttpRequestParser::Sink
    {
        void messageBegun() override { ++begun; }
        void headersComplete(const HttpRequestHead& head) override { heads.append(head); }
        void bodyReceived(const QByteArray& data) override { body += data; }
        int begun = 0;
        QList<HttpRequestHead> heads;
        QByteArray body;
    };

    using State = HttpRequestParser::State;

private slots:
    void readsOneByteAtATime()
    {
        Recorder sink;
        HttpRequestParser parser(sink, HttpLimits());
        const QByteArray text = "PUT /gr%20oups/5?name=a%26b HTTP/1.1\r\nHost: x:33000\r\nX-Empty:\r\nX-After: v\r\n"
                                "Content-Length: 5\r\n\r\nhello";
        for (const char c : text)
            QCOMPARE(parser.feed(QByteArray(1, c)), 1);
        QCOMPARE(parser.state(), State::MessageComplete);
        QCOMPARE(sink.heads.size(), 1);
        const HttpRequestHead& head = sink.heads.first();
        QCOMPARE(head.method, int(QHttpRequest::HTTP_PUT));
        QCOMPARE(head.httpVersion, QStringLiteral("1.1"));
        QCOMPARE(head.url.path(QUrl::FullyDecoded), QStringLiteral("/gr oups/5"));
        QCOMPARE(head.url.query(), QStringLiteral("name=a%26b"));
        QCOMPARE(head.headers.value(QStringLiteral("host")), QStringLiteral("x:33000"));
        QVERIFY(head.headers.contains(QStringLiteral("x-empty")));
        QCOMPARE(head.headers.value(QStringLiteral("x-after")), QStringLiteral("v"));
        QCOMPARE(sink.body, QByteArray("hello"));
    }

    void stopsBehindEachRequest()
    {
        Recorder sink;
        HttpRequestParser parser(sink, HttpLimits());
        const QByteArray first =
            "PATCH /a HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n";
        const QByteArray second = "OPTIONS http://h/b HTTP/1.0\r\n\r\n";
        QCOMPARE(parser.feed(first + second), first.size());
        QCOMPARE(parser.feed(second), 0);
        QCOMPARE(sink.heads.first().method, int(QHttpRequest::HTTP_PATCH));
        QCOMPARE(sink.body, QByteArray("abcde"));
        parser.resume();
        QCOMPARE(parser.feed(second), second.size());
        QCOMPARE(sink.heads.size(), 2);
        QCOMPARE(sink.heads.last().url, QUrl(QStringLiteral("http://h/b")));
        QVERIFY(sink.heads.first().keepAlive);
        QVERIFY(!sink.heads.last().keepAlive);
    }

    void limitsAndNonsenseEndTheParse_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("state");
        const QByteArray post = "POST / HTTP/1.1\r\n";
        QTest::newRow("no HTTP") << QByteArray("\x16\x03\x01hello") << int(State::Malformed);
        QTest::newRow("conflicting lengths")
            << post + "Content-Length: 3\r\nContent-Length: 4\r\n\r\nabc" << int(State::Malformed);
        QTest::newRow("length and chunks") << post + "Content-Length: 3\r\nTransfer-Encoding: chunked\r\n\r\n"
                                           << int(State::Malformed);
        QTest::newRow("length beyond 64 bits") << post + "Content-Length: 99999999999999999999999\r\n\r\n"
                                               << int(State::Malformed);
        QTest::newRow("long target") << "GET /" + QByteArray(300, 'a') + " HTTP/1.1\r\n\r\n"
                                     << int(State::HeadersTooLarge);
        QTest::newRow("many small headers") << post + QByteArray("a:\r\n").repeated(100) + "\r\n"
                                            << int(State::HeadersTooLarge);
        QTest::newRow("announced body") << post + "Content-Length: 11\r\n\r\n" << int(State::BodyTooLarge);
        QTest::newRow("chunks that add up") << post + "Transfer-Encoding: chunked\r\n\r\n6\r\nabcdef\r\n5\r\nabcde\r\n"
                                            << int(State::BodyTooLarge);
        QTest::newRow("body at the limit")
            << post + "Content-Length: 10\r\n\r\n0123456789" << int(State::MessageComplete);
    }

    void limitsAndNonsenseEndTheParse()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, state);
        HttpLimits limits;
        limits.headerBytes = 200;
        limits.bodyBytes = 10;
        Recorder sink;
        HttpRequestParser parser(sink, limits);
        parser.feed(text);
        QCOMPARE(int(parser.state()), state);
        if (parser.state() != State::MessageComplete) {
            parser.resume();
            QCOMPARE(parser.feed("GET / HTTP/1.1\r\n\r\n"), 0);
        }
    }
};

KERVAL_TEST(TestHttpParser)
#include "tst_httpparser.moc"
