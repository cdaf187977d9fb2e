// Which font is in this picture: words set in 200 fonts, five letters of each clicked, cut and looked for among all
// fonts of the machine. Arguments for a closer look: --fonts N, --seed N, --failures FOLDER (saves what went wrong).
#include "bench/fontlens/PictureMaker.h"
#include "bench/fontlens/TwinJudge.h"
#include "bench/similarity/FontSurvey.h"
#include "bench/support/bench.h"

#include "fontlens/letters/CandidateFace.h"
#include "fontlens/letters/LetterCutter.h"
#include "fontlens/letters/LetterMatcher.h"
#include "fontlens/letters/ShapeDescriptor.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H

using namespace kerval::bench;
using namespace kerval::letters;

namespace {

constexpr int picked = 5;
constexpr int among = 10;

struct Script
{
    const char* name;
    QString alphabet;
    QStringList texts;
};

QVector<Script> scripts()
{
    return {
        {"Latin",
         QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"),
         {QStringLiteral("Hamburgefonts"), QStringLiteral("Quick brown fox"), QStringLiteral("Jazz & Wine Bar"),
          QStringLiteral("Typography 2019"), QStringLiteral("SUMMER SALE"), QStringLiteral("Grand Opening"),
          QStringLiteral("Kaleidoscope"), QStringLiteral("Museum of Design"), QStringLiteral("Velocity Park"),
          QStringLiteral("Fresh bread daily")}},
        {"Greek",
         QStringLiteral("αβγδεζηθικλμνξοπρστυφχψωΑΒΓΔΕΖΗΘΛΞΠΣΦΨΩ"),
         {QStringLiteral("Καλημερα κοσμε"), QStringLiteral("Ξενοδοχειο"), QStringLiteral("Εφημεριδα")}},
        {"Cyrillic",
         QStringLiteral("абвгдежзиклмнопрстуфхцчшщыэюяАБВГДЕЖЗИКЛМНОПРСТУФХЦЧШЩЭЮЯ"),
         {QStringLiteral("Добрый вечер"), QStringLiteral("Журнал мод"), QStringLiteral("Хлебный завод")}},
    };
}

QVector<FontCandidate> machineFonts()
{
    QStringList files = fontFiles(QStringLiteral("/usr/share/fonts"));
    if (files.size() < 3000)
        files += fontFiles(benchFonts());
    QVector<FontCandidate> result;
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    for (const QString& file : qAsConst(files)) {
        if (KrvFontFile::formatFromFileName(file) == KrvFontFile::FormatPfb)
            continue;
        FT_Face face = nullptr;
        if (FT_New_Face(library, QFile::encodeName(file).constData(), -1, &face) != 0)
            continue;
        const int count = int(face->num_faces);
        FT_Done_Face(face);
        for (int i = 0; i < count; ++i)
            result.append({result.size(), file, i});
    }
    FT_Done_FreeType(library);
    return result;
}

// All letters are there, and they are letters: no two alike, as in symbol fonts that fill gaps with a box.
bool canSet(const FontCandidate& font, const QString& text)
{
    CandidateFace face(font.file, font.faceIndex);
    ShapeDescriptor before;
    int alike = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char(' '))
            continue;
        const GlyphOutline outline = face.outline(text[i]);
        if (outline.isEmpty())
            return false;
        Placement placement = Placement::of(64);
        const GlyphOutline::Box box = outline.box(placement);
        placement.dx = 1 - box.left;
        placement.dy = 1 - box.top;
        Coverage drawn(int(box.right - box.left) + 3, int(box.bottom - box.top) + 3);
        outline.draw(placement, drawn);
        ShapeDescriptor shape;
        if (!ShapeDescriptor::of(drawn, 1, 0, shape))
            return false;
        alike += i > 0 && shape.distance(before) == 0 ? 1 : 0;
        before = shape;
    }
    return alike * 3 < text.size();
}

QVector<int> testFonts(const QVector<FontCandidate>& fonts, int count, const QString& alphabet, std::mt19937& random)
{
    QVector<int> order(fonts.size());
    for (int i = 0; i < order.size(); ++i)
        order[i] = i;
    std::shuffle(order.begin(), order.end(), random);
    QVector<int> result;
    QHash<QString, int> families;
    for (const int i : qAsConst(order)) {
        if (result.size() == count)
            break;
        KrvFontFile file(fonts[i].file);
        if (!file.open(fonts[i].faceIndex) || !canSet(fonts[i], alphabet))
            continue;
        int& taken = families[QString::fromUtf8(file.face()->family_name)];
        if (taken >= 2)
            continue;
        ++taken;
        result.append(i);
    }
    return result;
}

struct Tally
{
    int pictures = 0;
    int among = 0;
    int drawings = 0; // among, counting only the face itself and same drawings
    int first = 0;
    int family = 0;
    int cutFailures = 0;
    double percent(int count) const { return pictures ? 100.0 * count / pictures : 0; }
};

struct Bench
{
    QVector<FontCandidate> fonts;
    LetterMatcher* matcher = nullptr;
    TwinJudge judge;
    QString failures;
    std::vector<double> times;

    void ask(PictureMaker& maker, int font, const Script& script, PictureMaker::Spoiling spoiling, Tally& tally);
};

void Bench::ask(PictureMaker& maker, int font, const Script& script, PictureMaker::Spoiling spoiling, Tally& tally)
{
    const FontCandidate& asked = fonts[font];
    const QString text = script.texts[int(maker.random()() % unsigned(script.texts.size()))];
    const int pixels = int(maker.between(40, 120.99));
    SetPicture picture = maker.set(asked.file, asked.faceIndex, text, pixels, spoiling);
    if (picture.letters.isEmpty())
        return;
    std::shuffle(picture.letters.begin(), picture.letters.end(), maker.random());
    QVector<CutLetter> letters;
    QElapsedTimer timer;
    timer.start();
    QString chosen;
    for (const SetPicture::Letter& letter : qAsConst(picture.letters)) {
        if (!script.alphabet.contains(letter.character) || chosen.contains(letter.character))
            continue;
        const LetterCut cut = LetterCutter::cut(picture.image, {letter.click}, picture.angle);
        chosen += letter.character;
        if (cut.isValid())
            letters.append({letter.character, cut.image, cut.scale, cut.click});
        else
            ++tally.cutFailures;
        if (chosen.size() == picked)
            break;
    }
    const QVector<FontMatch> matches = matcher->match(letters, among);
    times.push_back(double(timer.nsecsElapsed()) / 1e9);

    const TwinJudge::Face right(asked.file, asked.faceIndex);
    bool twin = false;
    bool drawing = false;
    bool first = false;
    bool family = false;
    for (const FontMatch& match : matches) {
        const TwinJudge::Face face(fonts[match.id].file, fonts[match.id].faceIndex);
        drawing = drawing || judge.isSameDrawing(right, face, script.alphabet);
        const bool same = judge.isTwin(right, face, script.alphabet);
        first = first || (same && match.id == matches.first().id);
        twin = twin || same;
        family = family || judge.isSameFamily(right, face);
    }
    ++tally.pictures;
    tally.among += twin ? 1 : 0;
    tally.drawings += drawing ? 1 : 0;
    tally.first += first ? 1 : 0;
    tally.family += twin || family ? 1 : 0;
    if (!twin && !failures.isEmpty()) {
        const QString name = QStringLiteral("%1/%2_%3_%4").arg(failures).arg(int(spoiling)).arg(font).arg(chosen);
        picture.image.save(name + QStringLiteral(".png"));
        for (const CutLetter& letter : qAsConst(letters))
            letter.image.save(name + QStringLiteral("_%1.png").arg(letter.character));
        std::printf("MISS %d %s %dpx '%s' angle %d%s: ", int(spoiling), qPrintable(QFileInfo(asked.file).fileName()),
                    pixels, qPrintable(chosen), picture.angle, family ? " (family found)" : "");
        for (const FontMatch& match : matches.mid(0, 3))
            std::printf(" %s %.3f", qPrintable(QFileInfo(fonts[match.id].file).fileName()), match.deviance);
        std::printf("\n");
    }
}

void reportTally(const std::string& what, const Tally& tally, double target)
{
    if (target > 0)
        atLeast(what + ": right font or twin among ten", tally.percent(tally.among), target, "%");
    std::printf("%-34s %4d pictures: among ten %.1f %% (same drawing alone %.1f %%), first %.1f %%, family %.1f %%, "
                "%d letters not cut\n",
                what.c_str(), tally.pictures, tally.percent(tally.among), tally.percent(tally.drawings),
                tally.percent(tally.first), tally.percent(tally.family), tally.cutFailures);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto argument = [&arguments](const QString& name, const QString& otherwise) {
        const int place = arguments.indexOf(name);
        return place > 0 ? arguments.value(place + 1) : otherwise;
    };
    const int count = argument(QStringLiteral("--fonts"), QStringLiteral("200")).toInt();
    const unsigned seed = argument(QStringLiteral("--seed"), QStringLiteral("1")).toUInt();
    Bench bench;
    bench.failures = argument(QStringLiteral("--failures"), QString());
    bench.fonts = machineFonts();
    if (!bench.failures.isEmpty())
        QDir().mkpath(bench.failures);
    if (!bench.judge.readLabels())
        return 1;
    std::printf("%d faces as candidates\n", bench.fonts.size());
    atLeast("fontlens: candidate faces", bench.fonts.size(), 3000, "faces");

    const QVector<Script> all = scripts();
    PictureMaker maker(seed);
    const QVector<int> latin = testFonts(bench.fonts, count, all[0].alphabet, maker.random());
    QTemporaryDir temporary;
    const QString kept = argument(QStringLiteral("--cache"), temporary.path());
    Tally ignored;
    {
        LetterMatcher matcher(kept);
        matcher.setCandidates(bench.fonts);
        bench.matcher = &matcher;
        bench.ask(maker, latin.first(), all[0], PictureMaker::Clean, ignored);
        std::printf("first query ever, nothing kept: %.2f s\n", bench.times.back());
        const double preparing = seconds([&] {
            matcher.prepare();
            matcher.waitUntilPrepared();
        });
        std::printf("preparing the letters and digits of all faces on one thread: %.1f s\n", preparing);
    }
    LetterMatcher matcher(kept);
    matcher.setCandidates(bench.fonts);
    bench.matcher = &matcher;
    bench.ask(maker, latin.first(), all[0], PictureMaker::Clean, ignored);
    atMost("fontlens: first query after a start", bench.times.back(), 1, "s");
    bench.times.clear();

    const std::pair<PictureMaker::Spoiling, const char*> kinds[] = {{PictureMaker::Clean, "clean"},
                                                                    {PictureMaker::Blurred, "blurred"},
                                                                    {PictureMaker::Noisy, "noisy"},
                                                                    {PictureMaker::Compressed, "JPEG"},
                                                                    {PictureMaker::Coloured, "coloured"},
                                                                    {PictureMaker::Turned, "turned"},
                                                                    {PictureMaker::Everything, "several of these"}};
    for (const auto& [spoiling, name] : kinds) {
        Tally tally;
        for (const int font : latin)
            bench.ask(maker, font, all[0], spoiling, tally);
        reportTally(std::string("fontlens, ") + name, tally, spoiling == PictureMaker::Clean ? 80 : 60);
    }
    std::vector<double> times = bench.times;
    std::sort(times.begin(), times.end());
    atMost("fontlens: a query, cutting included (median)", times[times.size() / 2], 1, "s");
    atMost("fontlens: a query, cutting included (slowest)", times.back(), 1, "s");

    for (const Script& script : all.mid(1)) {
        const QVector<int> fonts = testFonts(bench.fonts, qMin(40, count), script.alphabet, maker.random());
        for (const auto spoiling : {PictureMaker::Clean, PictureMaker::Everything}) {
            Tally tally;
            for (const int font : fonts)
                bench.ask(maker, font, script, spoiling, tally);
            reportTally(std::string("fontlens, ") + script.name +
                            (spoiling == PictureMaker::Clean ? ", clean" : ", several"),
                        tally, 0);
        }
    }
    return 0;
}
