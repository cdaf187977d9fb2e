#include "fontlens/PictureSource.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QBuffer>
#include <QMimeData>
#include <QTemporaryDir>
#include <QtTest>

// Where a picture is taken from, and what is no picture.
class PictureSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void addressesAsTyped_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("url");
        QTest::newRow("complete") << "http://example.org/a.png"
                                  << "http://example.org/a.png";
        QTest::newRow("secure, with blanks around") << " https://example.org/a.png?x=1&y=2\n"
                                                    << "https://example.org/a.png?x=1&y=2";
        QTest::newRow("without scheme") << "www.example.org/a.png"
                                        << "http://www.example.org/a.png";
        QTest::newRow("nothing") << ""
                                 << "";
        QTest::newRow("words") << "not an address"
                               << "";
        QTest::newRow("no host") << "http://"
                                 << "";
        QTest::newRow("another protocol") << "ftp://example.org/a.png"
                                          << "";
        QTest::newRow("script") << "javascript:alert(1)"
                                << "";
        QTest::newRow("a file that is not there") << "/no/such/file.png"
                                                  << "";
    }

    void addressesAsTyped()
    {
        QFETCH(QString, text);
        QFETCH(QString, url);
        const PictureSource source = PictureSource::fromText(text);
        QCOMPARE(source.url.toString(), url);
        QCOMPARE(source.isEmpty(), url.isEmpty());
    }

    void thePictureItselfIsPreferred()
    {
        QMimeData data;
        data.setUrls({QUrl(QStringLiteral("http://example.org/page.html"))});
        QImage image(3, 4, QImage::Format_RGB32);
        image.fill(Qt::red);
        data.setImageData(image);
        const PictureSource source = PictureSource::fromMimeData(&data);
        QCOMPARE(source.image.size(), QSize(3, 4));
        QVERIFY(source.url.isEmpty());
    }

    void filesAndAddressesAreFoundInWhatIsDropped()
    {
        QMimeData files;
        files.setUrls(
            {QUrl(QStringLiteral("mailto:a@example.org")), QUrl::fromLocalFile(QStringLiteral("/tmp/a b.png"))});
        QCOMPARE(PictureSource::fromMimeData(&files).file, QStringLiteral("/tmp/a b.png"));
        QMimeData text;
        text.setText(QStringLiteral("https://example.org/a.png"));
        QCOMPARE(PictureSource::fromMimeData(&text).url, QUrl(QStringLiteral("https://example.org/a.png")));
        QMimeData word;
        word.setText(QStringLiteral("Garden"));
        QVERIFY(PictureSource::fromMimeData(&word).isEmpty());
        QVERIFY(PictureSource::fromMimeData(nullptr).isEmpty());
    }

    void whatIsNoPictureIsRefusedAndLargeOnesAreReduced()
    {
        const QTemporaryDir folder;
        const QString text = folder.filePath(QStringLiteral("text.png"));
        kerval::testing::writeFile(text, "this is no picture");
        QVERIFY(PictureSource::load(text).isNull());
        QVERIFY(PictureSource::load(folder.filePath(QStringLiteral("missing.png"))).isNull());

        const QString misnamed = folder.filePath(QStringLiteral("misnamed.jpg"));
        QVERIFY(QImage(30, 20, QImage::Format_RGB32).save(misnamed, "PNG"));
        QCOMPARE(PictureSource::load(misnamed).size(), QSize(30, 20));

        const QString large = folder.filePath(QStringLiteral("large.png"));
        QImage plain(8000, 2000, QImage::Format_Mono);
        plain.fill(0);
        QVERIFY(plain.save(large));
        const QSize reduced = PictureSource::load(large).size();
        QVERIFY(reduced.width() * reduced.height() <= 8000000);
        QVERIFY(qAbs(reduced.width() - 4 * reduced.height()) <= 4);
    }

    // The header alone claims four gigapixels.
    void aPictureThatClaimsTooMuchIsNotDecoded()
    {
        const QTemporaryDir folder;
        const QString claim = folder.filePath(QStringLiteral("claim.png"));
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(QImage(1, 1, QImage::Format_Grayscale8).save(&buffer, "PNG"));
        const QByteArray size("\x00\x01\x00\x00", 4);
        png.replace(16, 4, size).replace(20, 4, size);
        const quint32 sum = crc(png.mid(12, 17));
        for (int i = 0; i < 4; ++i)
            png[29 + i] = char(sum >> (24 - 8 * i));
        kerval::testing::writeFile(claim, png);
        QVERIFY(PictureSource::load(claim).isNull());
    }

private:
    static quint32 crc(const QByteArray& bytes)
    {
        quint32 value = 0xffffffff;
        for (const char byte : bytes) {
            value ^= quint8(byte);
            for (int bit = 0; bit < 8; ++bit)
                value = value & 1 ? (value >> 1) ^ 0xedb88320 : value >> 1;
        }
        return ~value;
    }
};

KERVAL_TEST(PictureSourceTest)

#include "PictureSourceTest.moc"
