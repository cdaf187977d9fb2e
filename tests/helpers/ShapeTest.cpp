#include "tests/support/testregistry.h"

#include "helpers/shape/FaceAnalysis.h"
#include "helpers/shape/GlyphDistance.h"

#include <QFile>
#include <QTransform>
#include <QtTest>

#include <cmath>

using namespace krv;

namespace {

// A face from memory, as the programs open it; null when FreeType refuses.
class OpenFace
{
public:
    explicit OpenFace(const QByteArray& bytes)
        : m_bytes(bytes)
    {
        FT_Init_FreeType(&m_library);
        if (FT_New_Memory_Face(m_library, reinterpret_cast<const FT_Byte*>(m_bytes.constData()), m_bytes.size(), 0,
                               &m_face) != 0)
            m_face = nullptr;
    }
    ~OpenFace() { FT_Done_FreeType(m_library); }
    Q_DISABLE_COPY(OpenFace)

    static QByteArray bytesOf(const QString& name)
    {
        QFile file(QStringLiteral("/usr/share/fonts/truetype/") + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    FT_Face face() const { return m_face; }

private:
    QByteArray m_bytes;
    FT_Library m_library = nullptr;
    FT_Face m_face = nullptr;
};

FaceAnalysis analyse(const char* name)
{
    const OpenFace font(OpenFace::bytesOf(QString::fromLatin1(name)));
    if (!font.face())
        qFatal("%s is not installed", name);
    return FaceAnalysis::analyse(font.face());
}

const float* letter(const FaceAnalysis& face, char character)
{
    return face.features[static_cast<std::size_t>(featureLetterIndex(character))].data();
}

GlyphFeatures measured(const QImage& image)
{
    GlyphFeatures features;
    measureGlyph({image.constBits(), image.width(), image.height(), image.bytesPerLine()}, nullptr, features);
    return features;
}

// A ring with a foot: a counter, a round and straight edges.
QImage drawnLetter(int size, int margin)
{
    QImage image(size + 2 * margin, size + 2 * margin, QImage::Format_Alpha8);
    image.fill(Qt::transparent);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const double dx = (x + 0.5) / size - 0.5;
            const double dy = (y + 0.5) / size - 0.5;
            const double radius = std::hypot(dx, dy);
            if ((radius < 0.5 && radius > 0.33) || (dy > 0.38 && dx > 0))
                image.scanLine(y + margin)[x + margin] = 255;
        }
    }
    return image;
}

} // namespace

class ShapeTest : public QObject
{
    Q_OBJECT

private slots:
    void lettersAreFinite();
    void absentLettersAreAllZero();
    void sizeAndMarginsDoNotMatter();
    void emptyPicturesAreNotMeasured();
    void cutsOfOneDesignAreNear();
    void measuresFallIntoTheirBands_data();
    void measuresFallIntoTheirBands();
    void classesAreFound_data();
    void classesAreFound();
    void textFacesSuitText();
    void brokenFontsAreSurvived();
};

void ShapeTest::lettersAreFinite()
{
    const FaceAnalysis face = analyse("dejavu/DejaVuSerif-Bold.ttf");
    for (const GlyphFeatures& features : face.features) {
        QVERIFY(isMeasured(features));
        for (const float value : features)
            QVERIFY(std::isfinite(value) && std::fabs(value) <= 8);
    }
}

void ShapeTest::absentLettersAreAllZero()
{
    const OpenFace font(OpenFace::bytesOf(QStringLiteral("dejavu/DejaVuSans.ttf")));
    QVERIFY(font.face());
    FT_Set_Charmap(font.face(), font.face()->charmaps[0]);
    GlyphFeatures features;
    features.fill(7);
    QVERIFY(!measureGlyph({}, nullptr, features));
    QCOMPARE(features, GlyphFeatures{});
    QVERIFY(!isMeasured(features));
    QCOMPARE(featureLetterIndex(0xE4), -1);
    QCOMPARE(featureLetterIndex(0), -1);
    QCOMPARE(featureLetterIndex('9'), kFeatureLetterCount - 1);
}

// A letter cut out of a picture has any size and any white around it.
void ShapeTest::sizeAndMarginsDoNotMatter()
{
    const GlyphFeatures reference = measured(drawnLetter(56, 0));
    for (const int size : {40, 90, 300, 900}) {
        const float distance = glyphShapeDistance(reference.data(), measured(drawnLetter(size, 11)).data());
        QVERIFY2(distance < 0.25F, qPrintable(QStringLiteral("%1: %2").arg(size).arg(double(distance))));
    }
    QVERIFY(glyphShapeDistance(reference.data(), measured(drawnLetter(56, 0).mirrored(true, false)).data()) > 0.3F);
    for (int i = kFirstPlacementValue; i < kGlyphValueCount; ++i)
        QCOMPARE(reference[static_cast<std::size_t>(i)], 0.0F);
}

void ShapeTest::emptyPicturesAreNotMeasured()
{
    QImage blank(20, 20, QImage::Format_Alpha8);
    blank.fill(Qt::transparent);
    QVERIFY(!isMeasured(measured(blank)));
    blank.scanLine(7)[7] = 255; // a single dot is ink, and must not divide by zero
    for (const float value : measured(blank))
        QVERIFY(std::isfinite(value));
}

void ShapeTest::cutsOfOneDesignAreNear()
{
    const FaceAnalysis liberation = analyse("liberation/LiberationSans-Regular.ttf");
    const FaceAnalysis bold = analyse("liberation/LiberationSans-Bold.ttf");
    const FaceAnalysis freeSans = analyse("freefont/FreeSans.ttf");
    const FaceAnalysis freeSerif = analyse("freefont/FreeSerif.ttf");
    for (const char character : {'h', 't', 'l', 'a', 'f'}) {
        const float* own = letter(liberation, character);
        const float alike = glyphDistance(own, letter(freeSans, character));
        QCOMPARE(glyphDistance(own, own), 0.0F);
        QVERIFY(alike < glyphDistance(own, letter(freeSerif, character)));
        QVERIFY(alike < glyphDistance(own, letter(bold, character)) + 0.3F);
    }
}

void ShapeTest::measuresFallIntoTheirBands_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<int>("lightest");
    QTest::addColumn<int>("heaviest");
    QTest::addColumn<int>("narrowest");
    QTest::addColumn<int>("widest");
    QTest::addColumn<bool>("slanted");
    const auto row = [](const char* font, int lightest, int heaviest, int narrowest, int widest, bool slanted) {
        QTest::newRow(font) << QString::fromLatin1(font) << lightest << heaviest << narrowest << widest << slanted;
    };
    row("liberation/LiberationSans-Regular.ttf", 100, 170, 800, 1800, false);
    row("liberation/LiberationSans-Bold.ttf", 250, 500, 800, 1800, false);
    row("liberation/LiberationSerif-Italic.ttf", 80, 170, 800, 1800, true);
    row("freefont/FreeSerif.ttf", 100, 170, 800, 1800, false);
    row("dejavu/DejaVuSans-ExtraLight.ttf", 1, 99, 800, 1800, false);
    row("dejavu/DejaVuSans-Oblique.ttf", 100, 170, 800, 1800, true);
    row("dejavu/DejaVuSansCondensed.ttf", 100, 170, 500, 1300, false);
}

void ShapeTest::measuresFallIntoTheirBands()
{
    QFETCH(QString, font);
    QFETCH(int, lightest);
    QFETCH(int, heaviest);
    QFETCH(int, narrowest);
    QFETCH(int, widest);
    QFETCH(bool, slanted);
    const FaceAnalysis face = analyse(font.toLatin1().constData());
    QVERIFY2(face.hwe >= lightest && face.hwe <= heaviest, qPrintable(QString::number(face.hwe)));
    QVERIFY2(face.specificWidth >= narrowest && face.specificWidth < widest,
             qPrintable(QString::number(face.specificWidth)));
    QCOMPARE(face.italicAngle > 0, slanted);
    QVERIFY(face.italicAngle < 30);
    const int apparentSize = face.specificWidth * face.specificHeight / 1000;
    QVERIFY2(apparentSize >= 100 && apparentSize < 220, qPrintable(QString::number(apparentSize)));
}

void ShapeTest::classesAreFound_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<QString>("keywords");
    const auto row = [](const char* font, const char* keywords) {
        QTest::newRow(font) << QString::fromLatin1(font) << QString::fromLatin1(keywords);
    };
    row("liberation/LiberationSans-Bold.ttf", "Modern");
    row("liberation/LiberationSerif-Regular.ttf", "Classic, Serif");
    row("liberation/LiberationMono-Regular.ttf", "Modern, Monospace");
    row("freefont/FreeMono.ttf", "Typewriter, Serif, Monospace");
    row("dejavu/DejaVuSans.ttf", "Modern");
    row("lobstertwo/LobsterTwo-Italic.otf", "");
}

void ShapeTest::classesAreFound()
{
    QFETCH(QString, font);
    QFETCH(QString, keywords);
    if (keywords.isEmpty()) {
        const QString path = QStringLiteral("../opentype/") + font;
        const std::string found = analyse(path.toLatin1().constData()).classification;
        QVERIFY2(found.find("Serif") == std::string::npos, found.c_str());
        return;
    }
    QCOMPARE(QString::fromStdString(analyse(font.toLatin1().constData()).classification), keywords);
}

void ShapeTest::textFacesSuitText()
{
    const FaceAnalysis book = analyse("liberation/LiberationSerif-Regular.ttf");
    const FaceAnalysis bold = analyse("liberation/LiberationSerif-Bold.ttf");
    const FaceAnalysis typewriter = analyse("freefont/FreeMono.ttf");
    QVERIFY(book.smartChoiceBody > bold.smartChoiceBody);
    QVERIFY(bold.smartChoiceHead > book.smartChoiceHead);
    QVERIFY(book.smartChoiceBody > typewriter.smartChoiceBody);
    for (const FaceAnalysis* face : {&book, &bold, &typewriter}) {
        for (const int score : {face->smartChoiceAll, face->smartChoiceBody, face->smartChoiceHead})
            QVERIFY(score > 0 && score <= 1000);
    }
}

// FreeType opens many files that are damaged further in; whatever it makes of them is measured or left out.
void ShapeTest::brokenFontsAreSurvived()
{
    const QByteArray whole = OpenFace::bytesOf(QStringLiteral("liberation/LiberationSans-Regular.ttf"));
    QVERIFY(!whole.isEmpty());
    quint32 random = 12345;
    const auto next = [&random] { return random = random * 1664525U + 1013904223U; };
    int opened = 0;
    for (int round = 0; round < 40; ++round) {
        QByteArray bytes = round % 8 == 7 ? whole.left(whole.size() * (round + 1) / 41) : whole;
        for (int hit = 0; hit < 200; ++hit)
            bytes[int(next() % quint32(bytes.size() - 400)) + 400] = char(next() >> 24);
        const OpenFace font(bytes);
        if (!font.face())
            continue;
        ++opened;
        for (const GlyphFeatures& features : FaceAnalysis::analyse(font.face()).features) {
            for (const float value : features)
                QVERIFY(std::isfinite(value));
        }
    }
    QVERIFY(opened > 0);
}

KERVAL_TEST(ShapeTest)

#include "ShapeTest.moc"
