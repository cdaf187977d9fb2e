#include "fontlens/recognizer/PictureDecoder.h"
#include "tests/fontlens/recognizer/pictures.h"
#include "tests/support/testregistry.h"

#include <QRandomGenerator>
#include <QtTest>

using kerval::recognizer::PictureDecoder;
using namespace testpictures;

class TestPictureDecoder : public QObject
{
    Q_OBJECT

private slots:
    void kindsAreToldByTheBytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("type"); // empty: no picture
        const QImage image = plainPicture(40, 30);
        QTest::newRow("PNG") << encoded(image) << QByteArray("image/png");
        QTest::newRow("JPEG") << encoded(image, "JPG") << QByteArray("image/jpeg");
        QTest::newRow("BMP") << encoded(image, "BMP") << QByteArray("image/bmp");
        QTest::newRow("GIF") << QByteArray::fromBase64(
                                    "R0lGODdhKAAeAIAAAAAAAP///ywAAAAAKAAeAAACL4SPqcvtD6OctNqLs968+w+G4kiW5omm6sq27"
                                    "gvH8kzX9o3n+s73/g8MCofEogEAOw==")
                             << QByteArray("image/gif");
        QTest::newRow("nothing") << QByteArray() << QByteArray();
        QTest::newRow("text") << QByteArray("<html>no picture</html>") << QByteArray();
        // It could show files of this machine.
        QTest::newRow("SVG") << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>")
                             << QByteArray();
        QTest::newRow("XPM") << QByteArray("/* XPM */\nstatic char* x[]={\"1 1 1 1\",\"a c #000\",\"a\"};")
                             << QByteArray();
        QTest::newRow("cut in its head") << encoded(image).left(20) << QByteArray();
        QTest::newRow("signature alone") << encoded(image).left(8) << QByteArray();
    }

    void kindsAreToldByTheBytes()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, type);
        const auto result = PictureDecoder::decode(bytes);
        QCOMPARE(result.problem, type.isEmpty() ? PictureDecoder::NotAPicture : PictureDecoder::NoProblem);
        QCOMPARE(result.picture.contentType, type);
        if (!type.isEmpty()) {
            QCOMPARE(result.picture.image.size(), QSize(40, 30));
            QCOMPARE(result.picture.bytes, bytes);
        }
    }

    void bombsAreRefusedByTheirHead()
    {
        for (const QSize size : {QSize(60000, 60000), QSize(2000000000, 1), QSize(32767, 32767), QSize(20000, 20000)})
            QCOMPARE(PictureDecoder::decode(pngClaiming(quint32(size.width()), quint32(size.height()))).problem,
                     size.width() > 1000000000 ? PictureDecoder::NotAPicture : PictureDecoder::TooLarge);
        QCOMPARE(PictureDecoder::decode(pngClaiming(0, 5)).problem, PictureDecoder::NotAPicture);
        PictureDecoder::Limits limits;
        limits.decodedBytes = 4 * 40 * 30;
        QCOMPARE(PictureDecoder::decode(encoded(plainPicture(40, 30)), limits).problem, PictureDecoder::NoProblem);
        QCOMPARE(PictureDecoder::decode(encoded(plainPicture(41, 30)), limits).problem, PictureDecoder::TooLarge);
    }

    void largePicturesAreScaledDown()
    {
        PictureDecoder::Limits limits;
        limits.keptPixels = 5000;
        for (const char* format : {"PNG", "JPG"}) {
            const auto result = PictureDecoder::decode(encoded(plainPicture(400, 100), format), limits);
            QCOMPARE(result.problem, PictureDecoder::NoProblem);
            QCOMPARE(result.picture.image.size(), QSize(141, 35));
            // Clients see the picture in which their points are.
            QCOMPARE(QImage::fromData(result.picture.bytes).size(), QSize(141, 35));
        }
    }

    void picturesOfCamerasAreTurnedUpright()
    {
        QByteArray jpeg = encoded(plainPicture(40, 20), "JPG");
        const QByteArray exif("\xff\xe1\x00\x22"
                              "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0",
                              36);
        jpeg.insert(2, exif);
        const auto result = PictureDecoder::decode(jpeg);
        QCOMPARE(result.problem, PictureDecoder::NoProblem);
        QCOMPARE(result.picture.image.size(), QSize(20, 40));
        QCOMPARE(QImage::fromData(result.picture.bytes).size(), QSize(20, 40));
    }

    void deepColoursAreReduced()
    {
        const auto result =
            PictureDecoder::decode(encoded(plainPicture(40, 30).convertToFormat(QImage::Format_RGBX64)));
        QCOMPARE(result.problem, PictureDecoder::NoProblem);
        QVERIFY(result.picture.image.depth() <= 32);
    }

    void damagedPicturesHarmNobody()
    {
        QRandomGenerator random(815);
        for (const char* format : {"PNG", "JPG", "BMP"}) {
            const QByteArray whole = encoded(plainPicture(60, 50), format);
            for (int i = 0; i < 100; ++i) {
                QByteArray damaged = whole.left(random.bounded(1, whole.size() + 1));
                for (int j = random.bounded(4); j > 0; --j)
                    damaged[random.bounded(damaged.size())] = char(random.bounded(256));
                const auto result = PictureDecoder::decode(damaged);
                QCOMPARE(result.problem == PictureDecoder::NoProblem, !result.picture.image.isNull());
            }
        }
    }
};

KERVAL_TEST(TestPictureDecoder)
#include "tst_picturedecoder.moc"
