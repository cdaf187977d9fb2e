#include "fontlens/letters/LetterMatcher.h"

#include "fontlens/letters/LetterCutter.h"
#include "tests/fontfile/fontsupport.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/support/testregistry.h"

#include <QDir>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QRawFont>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>

using namespace kerval::letters;
using namespace kerval::testing;

namespace {

QStringList fontNames()
{
    return {QStringLiteral("DejaVuSans.ttf"),
            QStringLiteral("DejaVuSans-Bold.ttf"),
            QStringLiteral("DejaVuSans-Oblique.ttf"),
            QStringLiteral("DejaVuSerif.ttf"),
            QStringLiteral("DejaVuSansMono.ttf"),
            QStringLiteral("LiberationSans-Regular.ttf"),
            QStringLiteral("LiberationSans-Bold.ttf"),
            QStringLiteral("LiberationSerif-Regular.ttf"),
            QStringLiteral("LiberationSerif-Italic.ttf"),
            QStringLiteral("LiberationMono-Regular.ttf"),
            QStringLiteral("Cantarell-Regular.otf"),
            QStringLiteral("LobsterTwo-Regular.otf")};
}

QVector<FontCandidate> candidates()
{
    QVector<FontCandidate> result;
    const QStringList names = fontNames();
    for (const QString& name : names)
        result.append({100 + result.size(), debianFont(name), 0});
    return result;
}

// A word set by the framework, and its letters cut out again. Points are taken in the ink of the letter's first
// stroke from the left, half way up its height.
QVector<CutLetter> lettersOf(const QString& file, const QString& text, int pixels, double gap = 1.0 / 12,
                             double turn = 0)
{
    const QRawFont font(file, pixels, QFont::PreferNoHinting);
    QImage picture(pixels * (text.size() + 1), pixels * (turn == 0 ? 2 : 3), QImage::Format_RGB32);
    picture.fill(QColor(240, 235, 220));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.rotate(turn);
    QList<QPoint> clicks;
    double pen = pixels / 2.0;
    for (const QChar character : text) {
        const quint32 glyph = font.glyphIndexesForString(character).value(0);
        const QPainterPath path = font.pathForGlyph(glyph).translated(pen, 1.4 * pixels);
        painter.fillPath(path, QColor(20, 30, 70));
        const QRectF box = path.boundingRect();
        QPoint click;
        for (double x = box.left(); x < box.right() && click.isNull(); x += 0.5) {
            const QPointF at(x + 1, box.top() + 0.6 * box.height());
            if (path.contains(at) && path.contains(at + QPointF(1, 0)))
                click = painter.transform().map(QPoint(int(at.x()), int(at.y())));
        }
        clicks.append(click);
        pen += font.advancesForGlyphIndexes({glyph}).value(0).x() + gap * pixels;
    }
    painter.end();
    QVector<CutLetter> result;
    for (int i = 0; i < text.size(); ++i) {
        const LetterCut cut = LetterCutter::cut(picture, {clicks[i]});
        if (cut.isValid())
            result.append({text[i], cut.image, cut.scale, cut.click});
    }
    return result;
}

int firstOf(LetterMatcher& matcher, const QVector<CutLetter>& letters)
{
    const QVector<FontMatch> matches = matcher.match(letters);
    return matches.isEmpty() ? -1 : matches.first().id;
}

} // namespace

class LetterMatcherTest : public QObject
{
    Q_OBJECT

private slots:
    void findsTheFont_data();
    void findsTheFont();
    void crookedTextIsTurned();
    void touchingLettersAreToldApart();
    void answersAreOrderedAndLimited();
    void letterOfSeveralPartsMayLackSome();
    void relativeSizeTellsFontsApart();
    void reducedLettersKeepTheirSize();
    void requestsWithoutAnswer();
    void severalRecordsOfOneFace();
    void preparedLettersSurviveARestart();
    void damagedCacheIsMeasuredAgain_data();
    void damagedCacheIsMeasuredAgain();
    void replacedFontFileIsMeasuredAgain();
    void damagedFontsArePassedOver();
    void manyAskAtOnce();

private:
    void keepDejaVu(const QTemporaryDir& folder);
};

void LetterMatcherTest::findsTheFont_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("pixels");
    const QStringList names = fontNames();
    for (const QString& name : names)
        QTest::addRow("%s", qPrintable(name)) << name << QStringLiteral("Ragen") << 52;
    QTest::newRow("one letter") << QStringLiteral("DejaVuSerif.ttf") << QStringLiteral("g") << 60;
    QTest::newRow("small") << QStringLiteral("LiberationSans-Bold.ttf") << QStringLiteral("Ragesh") << 24;
    QTest::newRow("large") << QStringLiteral("LiberationSerif-Italic.ttf") << QStringLiteral("agQ") << 400;
    QTest::newRow("Greek") << QStringLiteral("DejaVuSans.ttf") << QString::fromUtf8("αβγψ") << 48;
    QTest::newRow("Cyrillic") << QStringLiteral("LiberationSerif-Regular.ttf") << QString::fromUtf8("жбДя") << 48;
    QTest::newRow("signs") << QStringLiteral("LobsterTwo-Regular.otf") << QStringLiteral("&?2R") << 48;
}

void LetterMatcherTest::findsTheFont()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(int, pixels);
    static LetterMatcher matcher((QString()));
    matcher.setCandidates(candidates());
    const QVector<CutLetter> letters = lettersOf(debianFont(name), text, pixels);
    QCOMPARE(letters.size(), text.size());
    QCOMPARE(firstOf(matcher, letters), 100 + fontNames().indexOf(name));
}

void LetterMatcherTest::crookedTextIsTurned()
{
    LetterMatcher matcher{QString()};
    matcher.setCandidates(candidates());
    for (const int font : {0, 2, 3, 8}) {
        const QString file = debianFont(fontNames().at(font));
        QCOMPARE(firstOf(matcher, lettersOf(file, QStringLiteral("Hage"), 70, 1.0 / 12, 9)), 100 + font);
    }
}

void LetterMatcherTest::touchingLettersAreToldApart()
{
    LetterMatcher matcher{QString()};
    matcher.setCandidates(candidates());
    for (const int font : {0, 1, 3}) {
        const auto letters = lettersOf(debianFont(fontNames().at(font)), QStringLiteral("bovade"), 80, -0.14);
        QCOMPARE(letters[0].image.size(), letters[1].image.size()); // cut as one
        QCOMPARE(firstOf(matcher, letters), 100 + font);
    }
}

void LetterMatcherTest::answersAreOrderedAndLimited()
{
    LetterMatcher matcher((QString()));
    matcher.setCandidates(candidates());
    const QVector<CutLetter> letters =
        lettersOf(debianFont(QStringLiteral("DejaVuSans.ttf")), QStringLiteral("Rage"), 50);
    const QVector<FontMatch> all = matcher.match(letters);
    QCOMPARE(all.size(), candidates().size());
    for (int i = 1; i < all.size(); ++i)
        QVERIFY(all[i - 1].deviance <= all[i].deviance);
    QVERIFY(all.first().deviance >= 0 && all.first().deviance < 0.02);
    QVERIFY(all.last().deviance > 0.1);
    QCOMPARE(matcher.match(letters, 3).size(), 3);
    QVERIFY(matcher.match(letters, 0).isEmpty());
}

void LetterMatcherTest::letterOfSeveralPartsMayLackSome()
{
    LetterMatcher matcher((QString()));
    matcher.setCandidates(candidates());
    // One click cuts the stems and bodies alone.
    const QVector<CutLetter> letters =
        lettersOf(debianFont(QStringLiteral("DejaVuSerif.ttf")), QString::fromUtf8("ijäü"), 60);
    QCOMPARE(letters.size(), 4);
    QCOMPARE(firstOf(matcher, letters), 100 + fontNames().indexOf(QStringLiteral("DejaVuSerif.ttf")));
    QVERIFY(matcher.match(letters).first().deviance < 0.02);
}

// Two fonts with the same boxes as letters, of which only the ratio of small letter to capital differs.
void LetterMatcherTest::relativeSizeTellsFontsApart()
{
    const QTemporaryDir folder;
    const auto font = [&folder](const QString& name, int xHeight) {
        SfntBuilder builder;
        builder.mapCharacter('L', builder.addGlyph(SfntBuilder::boxGlyph(50, 0, 350, 700)));
        builder.mapCharacter('o', builder.addGlyph(SfntBuilder::boxGlyph(50, 0, 50 + xHeight, xHeight)));
        QFile file(folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(builder.build()) > 0 ? file.fileName() : QString();
    };
    const QString low = font(QStringLiteral("low.ttf"), 420);
    const QString high = font(QStringLiteral("high.ttf"), 500);
    LetterMatcher matcher((QString()));
    matcher.setCandidates({{1, low, 0}, {2, high, 0}});
    QCOMPARE(firstOf(matcher, lettersOf(low, QStringLiteral("Lo"), 70)), 1);
    QCOMPARE(firstOf(matcher, lettersOf(high, QStringLiteral("Lo"), 70)), 2);
}

void LetterMatcherTest::reducedLettersKeepTheirSize()
{
    LetterMatcher matcher((QString()));
    matcher.setCandidates(candidates());
    QVector<CutLetter> letters =
        lettersOf(debianFont(QStringLiteral("LiberationSans-Regular.ttf")), QStringLiteral("Rags"), 120);
    QCOMPARE(letters.size(), 4);
    letters[0].image =
        letters[0].image.scaled(letters[0].image.size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    letters[0].scale = 0.5;
    const QVector<FontMatch> matches = matcher.match(letters);
    QCOMPARE(matches.first().id, 100 + fontNames().indexOf(QStringLiteral("LiberationSans-Regular.ttf")));
    QVERIFY(matches.first().deviance < 0.03);
}

void LetterMatcherTest::requestsWithoutAnswer()
{
    LetterMatcher matcher((QString()));
    const QVector<CutLetter> letters =
        lettersOf(debianFont(QStringLiteral("DejaVuSans.ttf")), QStringLiteral("ab"), 50);
    QVERIFY(matcher.match(letters).isEmpty());
    matcher.setCandidates(candidates());
    QVERIFY(matcher.match({}).isEmpty());
    QVERIFY(matcher.match({{QChar(), letters.first().image, 1}, {QLatin1Char('a'), QImage(), 1}}).isEmpty());
    QImage white(40, 40, QImage::Format_RGB32);
    white.fill(Qt::white);
    QVERIFY(matcher.match({{QLatin1Char('a'), white, 1}}).isEmpty());
    QVERIFY(matcher.match({{QLatin1Char('a'), letters.first().image, 0}}).isEmpty());
    QVERIFY(matcher.match({{QChar(0xE123), letters.first().image, 1}}).isEmpty());
    const std::atomic<bool> cancelled{true};
    QVERIFY(matcher.match(letters, 10, &cancelled).isEmpty());
    QVERIFY(!matcher.match(letters, 10).isEmpty());
    // Letters that no font fits still get the best that there is.
    QImage black(3000, 20, QImage::Format_Mono);
    black.fill(Qt::color0);
    matcher.match({{QLatin1Char('a'), black, 1}, {QLatin1Char('b'), letters.last().image, 1}});
}

void LetterMatcherTest::severalRecordsOfOneFace()
{
    const QString file = debianFont(QStringLiteral("DejaVuSans.ttf"));
    LetterMatcher matcher((QString()));
    matcher.setCandidates({{7, file, 0}, {8, debianFont(QStringLiteral("LobsterTwo-Regular.otf")), 0}, {9, file, 0}});
    const QVector<FontMatch> matches = matcher.match(lettersOf(file, QStringLiteral("Rag"), 50));
    QCOMPARE(matches.size(), 3);
    QCOMPARE(matches[0].id, 7);
    QCOMPARE(matches[1].id, 9);
    QCOMPARE(matches[0].deviance, matches[1].deviance);
}

void LetterMatcherTest::preparedLettersSurviveARestart()
{
    const QTemporaryDir folder;
    const QString cache = folder.filePath(QStringLiteral("letters"));
    {
        LetterMatcher matcher(cache);
        matcher.setCandidates(candidates());
        matcher.prepare();
        matcher.waitUntilPrepared();
        QVERIFY(!matcher.isPreparing());
    }
    const QFileInfoList files = QDir(cache).entryInfoList(QDir::Files);
    QVERIFY(files.size() >= 62);
    LetterMatcher matcher(cache);
    matcher.setCandidates(candidates());
    QCOMPARE(firstOf(matcher, lettersOf(debianFont(QStringLiteral("DejaVuSerif.ttf")), QStringLiteral("Rag"), 50)),
             103);
    for (const QFileInfo& file : files)
        QCOMPARE(QFileInfo(file.filePath()).lastModified(), file.lastModified()); // nothing was measured again
    // Dropping the matcher in the middle of the work ends it.
    LetterMatcher other(folder.filePath(QStringLiteral("other")));
    other.setCandidates(candidates());
    other.prepare();
    other.prepare();
}

void LetterMatcherTest::keepDejaVu(const QTemporaryDir& folder)
{
    LetterMatcher matcher(folder.path());
    matcher.setCandidates(candidates());
    matcher.match(lettersOf(debianFont(QStringLiteral("DejaVuSans.ttf")), QStringLiteral("g"), 50));
}

void LetterMatcherTest::damagedCacheIsMeasuredAgain_data()
{
    QTest::addColumn<QString>("damage");
    for (const char* damage : {"empty", "truncated", "foreign", "flipped", "count", "grown", "folder"})
        QTest::newRow(damage) << QString::fromLatin1(damage);
}

void LetterMatcherTest::damagedCacheIsMeasuredAgain()
{
    QFETCH(QString, damage);
    const QTemporaryDir folder;
    keepDejaVu(folder);
    const QString name = folder.filePath(QStringLiteral("0067.letters"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray sound = file.readAll();
    file.close();
    QVERIFY(sound.size() > 1000);
    QByteArray bytes = sound;
    if (damage == QLatin1String("empty"))
        bytes.clear();
    else if (damage == QLatin1String("truncated"))
        bytes.chop(bytes.size() / 2);
    else if (damage == QLatin1String("foreign"))
        bytes = QByteArray(bytes.size(), '\x7f');
    else if (damage == QLatin1String("flipped"))
        bytes[bytes.size() / 2] = char(~bytes[bytes.size() / 2]);
    else if (damage == QLatin1String("count"))
        bytes.replace(12, 4, QByteArray(4, '\xff'));
    else if (damage == QLatin1String("grown"))
        bytes += sound;
    QVERIFY(QFile::remove(name));
    if (damage == QLatin1String("folder")) {
        QVERIFY(QDir().mkpath(name));
    } else {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
    }
    LetterMatcher matcher(folder.path());
    matcher.setCandidates(candidates());
    QCOMPARE(firstOf(matcher, lettersOf(debianFont(QStringLiteral("DejaVuSerif.ttf")), QStringLiteral("g"), 50)), 103);
    if (damage != QLatin1String("folder")) {
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), sound); // and is sound again
    }
}

void LetterMatcherTest::replacedFontFileIsMeasuredAgain()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("changing.ttf"));
    const QString serif = debianFont(QStringLiteral("DejaVuSerif.ttf"));
    const QString mono = debianFont(QStringLiteral("LiberationMono-Regular.ttf"));
    const QVector<FontCandidate> fonts = {{1, name, 0}, {2, debianFont(QStringLiteral("DejaVuSans.ttf")), 0}};
    const QVector<CutLetter> letters = lettersOf(mono, QStringLiteral("Rag"), 50);
    LetterMatcher matcher(folder.filePath(QStringLiteral("cache")));
    QVERIFY(QFile::copy(serif, name));
    matcher.setCandidates(fonts);
    matcher.match(letters);
    QVERIFY(QFile::remove(name) && QFile::copy(mono, name));
    matcher.setCandidates(fonts);
    const QVector<FontMatch> matches = matcher.match(letters);
    QCOMPARE(matches.first().id, 1);
    QVERIFY(matches.first().deviance < 0.02);
    QVERIFY(QFile::remove(name));
    matcher.setCandidates(fonts);
    QCOMPARE(matcher.match(letters).size(), 1);
}

void LetterMatcherTest::damagedFontsArePassedOver()
{
    const QTemporaryDir folder;
    QVector<FontCandidate> fonts = candidates();
    const auto add = [&](const QByteArray& bytes) {
        QFile file(folder.filePath(QStringLiteral("bad%1.ttf").arg(fonts.size())));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        fonts.append({1000 + fonts.size(), file.fileName(), 0});
    };
    QFile sound(debianFont(QStringLiteral("DejaVuSans-Oblique.ttf")));
    QVERIFY(sound.open(QIODevice::ReadOnly));
    const QByteArray bytes = sound.readAll();
    QRandomGenerator random(5);
    for (int i = 0; i < 12; ++i) {
        QByteArray damaged = bytes.left(i % 3 == 0 ? int(random.bounded(bytes.size())) : bytes.size());
        for (int k = 0; k < 400; ++k)
            damaged[int(random.bounded(damaged.size()))] = char(random.bounded(256));
        add(damaged);
    }
    add(QByteArray());
    SfntBuilder bomb; // ten parts of ten parts of ...
    int part = bomb.addGlyph(SfntBuilder::boxGlyph(0, 0, 700, 700));
    for (int i = 0; i < 7; ++i)
        part = bomb.addGlyph(SfntBuilder::compositeGlyph(QVector<int>(10, part)));
    bomb.mapCharacter('R', part);
    bomb.mapCharacter('a', part);
    add(bomb.build());
    SfntBuilder giant;
    giant.setUnitsPerEm(16);
    giant.mapCharacter('R', giant.addGlyph(SfntBuilder::boxGlyph(-32000, -32000, 32000, 32000)));
    giant.mapCharacter('a', giant.addGlyph(SfntBuilder::boxGlyph(0, 0, 0, 0)));
    add(giant.build());
    fonts.append({2000, folder.path(), 0});
    fonts.append({2001, folder.filePath(QStringLiteral("nowhere.otf")), 0});
    fonts.append({2002, debianFont(QStringLiteral("DejaVuSans.ttf")), 77});
    fonts.append({2003, debianFont(QStringLiteral("DejaVuSans.ttf")), -1});

    LetterMatcher matcher((QString()));
    matcher.setCandidates(fonts);
    QCOMPARE(firstOf(matcher, lettersOf(debianFont(QStringLiteral("DejaVuSerif.ttf")), QStringLiteral("Rag"), 50)),
             103);
}

void LetterMatcherTest::manyAskAtOnce()
{
    const QTemporaryDir folder;
    LetterMatcher matcher(folder.path());
    matcher.setCandidates(candidates());
    matcher.prepare();
    const QVector<CutLetter> letters =
        lettersOf(debianFont(QStringLiteral("DejaVuSerif.ttf")), QStringLiteral("Rag"), 40);
    std::atomic<int> right{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < 3; ++k)
                right += firstOf(matcher, letters) == 103 ? 1 : 0;
        });
    }
    matcher.setCandidates(candidates());
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(right.load(), 12);
}

KERVAL_TEST(LetterMatcherTest)

#include "LetterMatcherTest.moc"
