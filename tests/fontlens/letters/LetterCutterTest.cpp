#include "fontlens/letters/LetterCutter.h"

#include "tests/support/testregistry.h"

#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QtTest>

using namespace kerval::letters;

namespace {

const QRect letterF(70, 40, 36, 60);
const QPoint inF(74, 70);
const QRect neighbour(116, 40, 10, 60);

// An F and a bar beside it.
QPainterPath shapes()
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRect(letterF.left(), letterF.top(), 10, letterF.height());
    path.addRect(letterF.left(), letterF.top(), letterF.width(), 10);
    path.addRect(letterF.left(), letterF.top() + 25, letterF.width() - 8, 9);
    path.addRect(neighbour);
    return path;
}

QImage drawn(const QBrush& ground, const QColor& ink, const QPainterPath& path = shapes(), QSize size = QSize(200, 140))
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(image.rect(), ground);
    painter.fillPath(path, ink);
    return image;
}

// The box of what is at least half black.
QRect inkBox(const QImage& image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

double inkSum(const QImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += (255 - qGray(image.pixel(x, y))) / 255.0;
    }
    return sum;
}

const double areaOfF = 10 * 60 + 26 * 10 + 18 * 9;

bool isF(const QImage& image, int tolerance = 1)
{
    const QRect box = inkBox(image);
    return qAbs(box.width() - letterF.width()) <= tolerance && qAbs(box.height() - letterF.height()) <= tolerance &&
           qAbs(inkSum(image) - areaOfF) < 0.1 * areaOfF;
}

QImage noisy(QImage image, int amplitude)
{
    QRandomGenerator random(7);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            const auto spoiled = [&](int value) {
                return qBound(0, value + int(random.bounded(2 * amplitude + 1)) - amplitude, 255);
            };
            image.setPixel(x, y, qRgb(spoiled(colour.red()), spoiled(colour.green()), spoiled(colour.blue())));
        }
    }
    return image;
}

QImage asJpeg(const QImage& image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.convertToFormat(QImage::Format_RGB32).save(&buffer, "JPG", quality);
    return QImage::fromData(bytes, "JPG");
}

} // namespace

class LetterCutterTest : public QObject
{
    Q_OBJECT

private slots:
    void grounds_data();
    void grounds();
    void formats_data();
    void formats();
    void pointsAreUnited();
    void turnedPictureComesOutUpright_data();
    void turnedPictureComesOutUpright();
    void cutLinesSeparate();
    void nearMissTakesTheNearestInk();
    void clicksInTheWhiteOfALetter();
    void clicksOnBackgroundFail_data();
    void clicksOnBackgroundFail();
    void sensitivityDecidesOnFaintInk();
    void sensitivityDecidesOnBridges();
    void lettersOfAnySize_data();
    void lettersOfAnySize();
    void refusedRequests();
    void giantPicturesStayCheap();
};

void LetterCutterTest::grounds_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::newRow("black on white") << drawn(Qt::white, Qt::black);
    QTest::newRow("white on black") << drawn(Qt::black, Qt::white);
    QTest::newRow("hue alone differs") << drawn(QColor(120, 120, 0), QColor(120, 60, 200));
    QTest::newRow("transparent ground is white") << drawn(Qt::transparent, Qt::black);
    QLinearGradient dark(0, 0, 200, 140);
    dark.setColorAt(0, QColor(10, 20, 60));
    dark.setColorAt(1, QColor(120, 60, 30));
    QTest::newRow("light on a dark gradient") << drawn(dark, QColor(250, 240, 200));
    QLinearGradient light(0, 0, 200, 0);
    light.setColorAt(0, Qt::white);
    light.setColorAt(1, QColor(130, 170, 150));
    QTest::newRow("dark on a light gradient") << drawn(light, QColor(40, 0, 0));
    QTest::newRow("noise") << noisy(drawn(QColor(210, 210, 220), QColor(40, 40, 40)), 30);
    QTest::newRow("JPEG") << asJpeg(drawn(QColor(250, 220, 120), QColor(160, 20, 40)), 30);
    QTest::newRow("noise on a gradient, as JPEG") << asJpeg(noisy(drawn(light, QColor(20, 30, 60)), 20), 50);
}

void LetterCutterTest::grounds()
{
    QFETCH(QImage, picture);
    const LetterCut cut = LetterCutter::cut(picture, {inF});
    QVERIFY2(cut.isValid(), qPrintable(cut.text));
    QCOMPARE(cut.scale, 1.0);
    QVERIFY(isF(cut.image));
    const QRect box = inkBox(cut.image);
    QVERIFY2(box.left() >= 2 && box.top() >= 2 && cut.image.width() - box.right() > 2, "a margin all around");
    QCOMPARE(qGray(cut.image.pixel(0, 0)), 255);
}

void LetterCutterTest::formats_data()
{
    QTest::addColumn<int>("format");
    for (const QImage::Format format :
         {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_RGB16, QImage::Format_RGB888,
          QImage::Format_ARGB32_Premultiplied, QImage::Format_Grayscale8, QImage::Format_RGBA64})
        QTest::addRow("format %d", int(format)) << int(format);
}

void LetterCutterTest::formats()
{
    QFETCH(int, format);
    const QImage picture = drawn(Qt::white, Qt::black).convertToFormat(QImage::Format(format));
    const LetterCut cut = LetterCutter::cut(picture, {inF});
    QVERIFY(cut.isValid());
    QVERIFY(isF(cut.image));
}

void LetterCutterTest::pointsAreUnited()
{
    const QImage picture = drawn(Qt::white, Qt::black);
    const LetterCut cut = LetterCutter::cut(picture, {inF, neighbour.center(), inF});
    QVERIFY(cut.isValid());
    QCOMPARE(inkBox(cut.image).size(), letterF.united(neighbour).size());
    QVERIFY(qAbs(inkSum(cut.image) - areaOfF - 600) < 30);
    // One point without ink spoils the whole request.
    QCOMPARE(LetterCutter::cut(picture, {inF, QPoint(20, 120)}).error, LetterCut::NoInk);
}

void LetterCutterTest::turnedPictureComesOutUpright_data()
{
    QTest::addColumn<int>("angle");
    for (const int angle : {90, -90, 180, 10, -25, 360, 395, -350})
        QTest::addRow("%d degrees", angle) << angle;
}

void LetterCutterTest::turnedPictureComesOutUpright()
{
    QFETCH(int, angle);
    // Turning the view clockwise by the angle makes the F upright, so in the picture it is turned the other way.
    QTransform turn;
    turn.translate(100, 100);
    turn.rotate(-angle);
    turn.translate(-100, -100);
    const QImage picture = drawn(QColor(230, 230, 200), Qt::black, turn.map(shapes()), QSize(220, 220));
    const LetterCut cut = LetterCutter::cut(picture, {turn.map(inF)}, angle);
    QVERIFY(cut.isValid());
    QVERIFY(isF(cut.image));
    // Upright and not mirrored: the stem is at the left, the long bar at the top.
    const QRect box = inkBox(cut.image);
    QVERIFY(qGray(cut.image.pixel(box.left() + 4, box.bottom() - 4)) < 60);
    QVERIFY(qGray(cut.image.pixel(box.right() - 3, box.top() + 4)) < 60);
    QVERIFY(qGray(cut.image.pixel(box.right() - 3, box.bottom() - 4)) > 200);
}

void LetterCutterTest::cutLinesSeparate()
{
    QPainterPath joined = shapes();
    joined.addRect(80, 62, 40, 6); // a bridge from the stem to the neighbour, beside the bar
    const QImage picture = drawn(Qt::white, Qt::black, joined);
    QVERIFY(inkBox(LetterCutter::cut(picture, {inF}).image).width() > 50);
    const QList<QPolygon> across = {QPolygon(QVector<QPoint>{{10, 5}, {30, 5}}),
                                    QPolygon(QVector<QPoint>{{111, 20}, {109, 66}, {112, 110}})};
    const LetterCut left = LetterCutter::cut(picture, {inF}, 0, LetterCutter::normalSensitivity, across);
    QVERIFY(left.isValid());
    QVERIFY(qAbs(inkBox(left.image).width() - 40) <= 3);
    const LetterCut right =
        LetterCutter::cut(picture, {neighbour.center()}, 0, LetterCutter::normalSensitivity, across);
    QVERIFY(right.isValid());
    QVERIFY(qAbs(inkBox(right.image).width() - 16) <= 3);
    // A slanting line lets nothing through at the corners of its pixels, and lines far outside do no harm.
    const QList<QPolygon> slanting = {QPolygon(QVector<QPoint>{{90, 20}, {130, 110}}),
                                      QPolygon(QVector<QPoint>{{-2000000, -5}, {2000000, 3}})};
    QVERIFY(inkBox(LetterCutter::cut(picture, {inF}, 0, LetterCutter::normalSensitivity, slanting).image).width() < 46);
}

void LetterCutterTest::nearMissTakesTheNearestInk()
{
    const QImage picture = drawn(Qt::white, Qt::black);
    const LetterCut cut = LetterCutter::cut(picture, {QPoint(letterF.left() - 3, 90)});
    QVERIFY(cut.isValid());
    QVERIFY(isF(cut.image));
    const LetterCut other = LetterCutter::cut(picture, {QPoint(neighbour.left() - 2, 95)});
    QCOMPARE(inkBox(other.image).size(), neighbour.size());
}

void LetterCutterTest::clicksInTheWhiteOfALetter()
{
    const QPoint openWhite(95, 90); // below the bars
    const LetterCut cut = LetterCutter::cut(drawn(QColor(90, 20, 20), Qt::white), {openWhite});
    QVERIFY(cut.isValid());
    QVERIFY(isF(cut.image));
    const LetterCut both = LetterCutter::cut(drawn(Qt::white, Qt::black), {openWhite, neighbour.center()});
    QCOMPARE(inkBox(both.image).size(), letterF.united(neighbour).size());
    for (const int radius : {12, 30, 90, 300}) {
        QPainterPath ring;
        const QPoint centre(2 * radius, 2 * radius);
        ring.addEllipse(centre, radius, radius);
        ring.addEllipse(centre, radius / 2, radius / 2);
        const QPoint beside(centre.x() + radius * 5 / 4, centre.y());
        const QImage picture = drawn(Qt::white, Qt::black, ring, QSize(4 * radius, 4 * radius));
        const LetterCut o = LetterCutter::cut(picture, {centre});
        QVERIFY2(o.isValid(), qPrintable(o.text));
        QVERIFY(qAbs(inkBox(o.image).width() / o.scale - 2 * radius) < 3);
        QVERIFY(!LetterCutter::cut(picture, {beside}).isValid() || radius == 12);
        QVERIFY2((o.click - QPointF(0.5 * o.image.width(), 0.5 * o.image.height())).manhattanLength() < 3,
                 "the click is told as it was");
        // Its edges are softer than a click may miss by.
        const QImage soft = picture.scaled(picture.size() / 6, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                .scaled(picture.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QVERIFY(radius < 30 || LetterCutter::cut(soft, {centre}).isValid());
    }
}

void LetterCutterTest::clicksOnBackgroundFail_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<QPoint>("point");
    const QImage picture = drawn(Qt::white, Qt::black);
    QTest::newRow("far from any ink") << picture << QPoint(20, 20);
    QTest::newRow("between letter and neighbour") << drawn(QColor(90, 20, 20), Qt::white) << QPoint(111, 70);
    QTest::newRow("nothing but ground") << drawn(Qt::gray, Qt::black, QPainterPath()) << QPoint(100, 70);
    QTest::newRow("nothing but noise") << noisy(drawn(Qt::gray, Qt::black, QPainterPath()), 20) << QPoint(100, 70);
}

void LetterCutterTest::clicksOnBackgroundFail()
{
    QFETCH(QImage, picture);
    QFETCH(QPoint, point);
    const LetterCut cut = LetterCutter::cut(picture, {point});
    QVERIFY(cut.error == LetterCut::NoInk || cut.error == LetterCut::NoLetter);
    QVERIFY(cut.image.isNull());
    QVERIFY(!cut.text.isEmpty());
}

void LetterCutterTest::sensitivityDecidesOnFaintInk()
{
    const QImage faint = drawn(QColor(200, 200, 200), QColor(190, 190, 190));
    QVERIFY(!LetterCutter::cut(faint, {inF}, 0, LetterCutter::lowSensitivity).isValid());
    QVERIFY(!LetterCutter::cut(faint, {inF}, 0, LetterCutter::normalSensitivity).isValid());
    const LetterCut cut = LetterCutter::cut(faint, {inF}, 0, LetterCutter::highSensitivity);
    QVERIFY(cut.isValid());
    QVERIFY2(isF(cut.image), "the ink is black in the cut however faint it was");
}

void LetterCutterTest::sensitivityDecidesOnBridges()
{
    QImage picture = drawn(Qt::white, Qt::black);
    QPainter painter(&picture);
    painter.fillRect(QRect(106, 44, 10, 3), QColor(170, 170, 170)); // a third of the ink's strength
    painter.end();
    QVERIFY(isF(LetterCutter::cut(picture, {inF}, 0, LetterCutter::lowSensitivity).image, 3));
    const QRect joined = inkBox(LetterCutter::cut(picture, {inF}, 0, LetterCutter::highSensitivity).image);
    QCOMPARE(joined.width(), letterF.united(neighbour).width());
}

void LetterCutterTest::lettersOfAnySize_data()
{
    QTest::addColumn<double>("factor");
    QTest::newRow("small") << 0.2;
    QTest::newRow("large") << 6.0;
    QTest::newRow("larger than is looked at in detail") << 25.0;
}

void LetterCutterTest::lettersOfAnySize()
{
    QFETCH(double, factor);
    const QTransform grow = QTransform::fromScale(factor, factor);
    const QImage picture = drawn(Qt::white, Qt::black, grow.map(shapes()), QSize(200, 140) * factor);
    const LetterCut cut = LetterCutter::cut(picture, {grow.map(inF)});
    QVERIFY2(cut.isValid(), qPrintable(cut.text));
    const QRect box = inkBox(cut.image);
    QVERIFY(qAbs(box.height() / cut.scale / factor - letterF.height()) < 4 / factor + 1);
    QVERIFY(qAbs(box.width() / cut.scale / factor - letterF.width()) < 4 / factor + 1);
    QVERIFY(cut.image.width() < 1400);
}

void LetterCutterTest::refusedRequests()
{
    const QImage picture = drawn(Qt::white, Qt::black);
    QCOMPARE(LetterCutter::cut(QImage(), {inF}).error, LetterCut::NoPicture);
    QCOMPARE(LetterCutter::cut(picture, {}).error, LetterCut::NoPoints);
    QList<QPoint> many;
    for (int i = 0; i <= LetterCutter::maxPoints; ++i)
        many.append(inF);
    QCOMPARE(LetterCutter::cut(picture, many).error, LetterCut::NoPoints);
    QCOMPARE(LetterCutter::cut(picture, {QPoint(-1, 5)}).error, LetterCut::OutsidePicture);
    QCOMPARE(LetterCutter::cut(picture, {QPoint(201, 5)}).error, LetterCut::OutsidePicture);
    QCOMPARE(LetterCutter::cut(picture, {QPoint(INT_MIN, INT_MAX)}).error, LetterCut::OutsidePicture);
    // What was rounded up at the far edge still counts as inside.
    QCOMPARE(LetterCutter::cut(picture, {QPoint(200, 140)}).error, LetterCut::NoInk);
    QVERIFY(!LetterCutter::cut(QImage(1, 1, QImage::Format_Mono), {QPoint(0, 0)}).isValid());
    // Any number may come as angle or threshold.
    QVERIFY(isF(LetterCutter::cut(picture, {inF}, 360 * 1000, -5).image));
    QVERIFY(!LetterCutter::cut(drawn(QColor(128, 128, 128), QColor(90, 90, 90)), {inF}, 0, INT_MAX).isValid());
    QVERIFY(LetterCutter::cut(picture, {inF}, INT_MIN).isValid());
}

void LetterCutterTest::giantPicturesStayCheap()
{
    QImage picture(12000, 12000, QImage::Format_Mono);
    picture.fill(0);
    QVERIFY(!LetterCutter::cut(picture, {QPoint(6000, 6000)}).isValid());
    QCOMPARE(LetterCutter::cut(picture, {QPoint(0, 0), QPoint(11999, 11999)}).error, LetterCut::NoLetter);
}

KERVAL_TEST(LetterCutterTest)

#include "LetterCutterTest.moc"
