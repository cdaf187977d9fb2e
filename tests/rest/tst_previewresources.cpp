#include "tests/rest/library.h"
#include "tests/support/testregistry.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QtTest>

class TestPreviewResources : public QObject
{
    Q_OBJECT

    std::unique_ptr<Library> m_library;
    int m_font = 0;   // a real file
    int m_absent = 0; // a record whose file is gone

    HttpReply get(const QString& path) { return m_library->client().get(path); }
    HttpReply text(const QString& query)
    {
        return get(QStringLiteral("/text-previews?fontId=%1&").arg(m_font) + query);
    }
    static QImage image(const HttpReply& reply) { return QImage::fromData(reply.body, "PNG"); }
    static bool isAllOf(const QImage& image, int lightness)
    {
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qAlpha(image.pixel(x, y)) != 0 && qGray(image.pixel(x, y)) != lightness)
                    return false;
        return true;
    }

private slots:
    void initTestCase()
    {
        m_library = std::make_unique<Library>();
        const QString file = m_library->addFile(QStringLiteral("real.ttf"));
        const QList<int> ids = m_library->addFonts(2, [&](fms::StaticFont& font, int i) {
            if (i == 0)
                font.setFileName(file);
        });
        m_font = ids.first();
        m_absent = ids.last();
    }
    void cleanupTestCase() { m_library.reset(); }

    void characters()
    {
        const HttpReply one = get(QStringLiteral("/characters/%1").arg(m_font));
        QCOMPARE(one.status, 200);
        QCOMPARE(one.header("Content-Type"), QByteArray("application/json"));
        QVERIFY(one.body.startsWith("{\"0\":[32,33,34"));
        QVERIFY(one.json().object().value(QStringLiteral("1")).toArray().contains(233));
        QCOMPARE(get(QStringLiteral("/characters/%1").arg(m_absent)).status, 404);
        QCOMPARE(get(QStringLiteral("/characters/0")).status, 404);

        const HttpReply all = get(QStringLiteral("/characters"));
        QCOMPARE(all.status, 200);
        QVERIFY(all.body.startsWith("[{\"id\":" + QByteArray::number(m_font) + ",\"characters\":" + one.body + "}"));
        QCOMPARE(all.json().array().size(), 2);
        QCOMPARE(all.json().array().last().toObject().value(QLatin1String("characters")).toObject(), QJsonObject());
    }

    void sizes()
    {
        const HttpReply points = text(QStringLiteral("text=Hello&pointSize=12&dpi=96"));
        QCOMPARE(points.status, 200);
        QCOMPARE(points.body, text(QStringLiteral("text=Hello&pixelSize=16")).body);
        QCOMPARE(points.body, text(QStringLiteral("text=Hello&pixelSize=16&pointSize=40&dpi=96")).body);
        QVERIFY(image(points).width() > 20);
        QVERIFY(isAllOf(image(points), 0));
        for (const int height : {1, 8, 40, 41, 300}) {
            for (const char* sample : {"Hello", "...", "%C3%84gypten", "+"}) {
                const HttpReply reply =
                    text(QStringLiteral("text=%1&imageHeight=%2").arg(QLatin1String(sample)).arg(height));
                QCOMPARE(reply.status, 200);
                QCOMPARE(image(reply).height(), height);
            }
        }
    }

    void headersLetClientsKeepImages()
    {
        const HttpReply reply = text(QStringLiteral("text=Hello&pixelSize=16"));
        QCOMPARE(reply.header("Content-Type"), QByteArray("image/png"));
        QCOMPARE(reply.header("Cache-Control"), QByteArray("public"));
        const QDateTime expires = QLocale::c().toDateTime(QString::fromLatin1(reply.header("Expires")),
                                                          QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
        QVERIFY(qAbs(expires.secsTo(QDateTime::currentDateTime().addYears(1))) < 60);
        const HttpReply character =
            get(QStringLiteral("/character-previews?fontId=%1&character=65&pixelSize=30").arg(m_font));
        QCOMPARE(character.status, 200);
        QCOMPARE(character.header("Cache-Control"), QByteArray());
        QVERIFY(!character.header("Expires").isEmpty());
    }

    void charactersAreDrawnByTheirGlyph()
    {
        const auto character = [this](int code) {
            return get(QStringLiteral("/character-previews?fontId=%1&character=%2&pixelSize=40").arg(m_font).arg(code));
        };
        QCOMPARE(image(character('A')), image(text(QStringLiteral("text=A&pixelSize=40"))));
        QCOMPARE(image(character(0x1F600)).size(), QSize(36, 36));
        // A soft hyphen, and marks below, which have no width in a text.
        for (const int code : {0xAD, 0x5BD, 0x64D}) {
            const HttpReply reply = character(code);
            QCOMPARE(reply.status, 200);
            QVERIFY(image(reply).width() > 2);
        }
    }

    void inverting()
    {
        QVERIFY(isAllOf(image(text(QStringLiteral("text=Hello&pixelSize=30&invert=TRUE"))), 0));
        QVERIFY(isAllOf(image(text(QStringLiteral("text=Hello&pixelSize=30&invert=true"))), 255));
        // Scaled images are no indexed ones any more.
        QVERIFY(isAllOf(
            image(get(
                QStringLiteral("/character-previews?fontId=%1&character=8364&pixelSize=30&invert=true").arg(m_font))),
            255));
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("path"); // %1: the font
        QTest::addColumn<int>("status");
        const auto row = [](const char* name, const QString& path, int status) {
            QTest::newRow(name) << path << status;
        };
        const QString preview = QStringLiteral("/text-previews?fontId=%1&");
        const QString character = QStringLiteral("/character-previews?fontId=%1&pixelSize=20&");
        row("unknown font", QStringLiteral("/text-previews?fontId=999999&text=a&pixelSize=10"), 404);
        row("no font", QStringLiteral("/character-previews?character=65&pixelSize=10"), 404);
        row("no text", preview + QStringLiteral("pixelSize=10"), 400);
        row("no text at a height", preview + QStringLiteral("imageHeight=10"), 400);
        row("no size", preview + QStringLiteral("text=a"), 400);
        row("negative size", preview + QStringLiteral("text=a&pixelSize=-5"), 400);
        row("negative height", preview + QStringLiteral("text=a&imageHeight=-5"), 400);
        row("overflowing size", preview + QStringLiteral("text=a&pointSize=2147483647&dpi=2147483647"), 400);
        row("too large", preview + QStringLiteral("text=a&pixelSize=16385"), 400);
        row("too high", preview + QStringLiteral("text=a&imageHeight=16385"), 400);
        row("too wide", preview + QStringLiteral("pixelSize=100&text=") + QString(5000, QLatin1Char('W')), 400);
        row("too wide at a height", preview + QStringLiteral("imageHeight=100&text=") + QString(5000, QLatin1Char('W')),
            400);
        row("too long", preview + QStringLiteral("pixelSize=1&text=") + QString(10001, QLatin1Char('i')), 400);
        row("no such character", character + QStringLiteral("character=57344"), 400);
        row("a surrogate", character + QStringLiteral("character=55357"), 400);
        row("beyond Unicode", character + QStringLiteral("character=1114112"), 400);
        row("nothing to see", character + QStringLiteral("character=32"), 400);
        row("no character", character, 400);
    }

    void refusals()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        const HttpReply reply = get(path.replace(QLatin1String("%1"), QString::number(m_font)));
        QCOMPARE(reply.status, status);
        QVERIFY(reply.body.isEmpty());
        QVERIFY(reply.header("Content-Type").isEmpty());
    }

    void aLostFileHasNoPreview()
    {
        QCOMPARE(get(QStringLiteral("/text-previews?fontId=%1&text=a&pixelSize=20").arg(m_absent)).status, 400);
        const HttpReply row = get(QStringLiteral("/text-previews?fontId=%1&text=a&imageHeight=20").arg(m_absent));
        QCOMPARE(row.status, 200);
        QCOMPARE(image(row).size(), QSize(1, 20));
        QCOMPARE(image(row).pixel(0, 19), qRgba(0, 0, 0, 0));
        QCOMPARE(m_library->client().send("POST", QStringLiteral("/text-previews"), "{}").status, 405);
    }
};

KERVAL_TEST(TestPreviewResources)
#include "tst_previewresources.moc"
