// How well the shape values and classes agree with what is known of the families in designs.txt. Rows say "held out"
// for families that had no part in tuning (heldout.txt) and "tuned on" for the others; targets count for the first.
#include "bench/similarity/DesignLabels.h"
#include "bench/similarity/FontSurvey.h"
#include "bench/similarity/SurveyCatalogue.h"
#include "bench/support/bench.h"

#include "helpers/findsimilar/FeatureFolder.h"
#include "helpers/findsimilar/SimilarityMethods.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <numeric>

using namespace kerval::bench;
using namespace kerval::helpers;

namespace {

constexpr float Nowhere = std::numeric_limits<float>::infinity();

struct Face
{
    SurveyedFace font;
    DesignLabels::Family label;
    NamedStyle style;

    bool isSerif() const { return label.kind == QLatin1String("serif") || label.kind == QLatin1String("monoserif"); }
    bool isMono() const { return label.kind.startsWith(QLatin1String("mono")); }
    bool isText() const { return isSerif() || isMono() || label.kind == QLatin1String("sans"); }
    QString kind() const { return isMono() ? QStringLiteral("mono") : label.kind; }
    bool has(const char* keyword) const
    {
        return QString::fromStdString(font.analysis.classification)
            .contains(QLatin1String(keyword), Qt::CaseInsensitive);
    }
};

struct Share
{
    int good = 0;
    int all = 0;
    void count(bool success)
    {
        good += success ? 1 : 0;
        ++all;
    }
    double percent() const { return all ? 100.0 * good / all : 0; }
};

using Scores = QMap<QString, QMap<bool, Share>>; // what is measured -> held out -> share

// One file for each face: outlines of one face in several formats would find each other.
std::vector<Face> catalogue(const std::vector<SurveyedFace>& fonts, DesignLabels& labels,
                            QVector<QPair<int, int>>* formats)
{
    QHash<QString, int> known;
    std::vector<Face> faces;
    for (const SurveyedFace& font : fonts) {
        const DesignLabels::Family& label = labels.family(font.family);
        if (label.kind.isEmpty())
            continue;
        const QString key = font.postScriptName.toLower() + QLatin1Char('/') + font.family;
        const auto earlier = known.constFind(key);
        const QString suffix = QFileInfo(font.file).suffix();
        if (earlier != known.constEnd()) {
            if (QFileInfo(faces[*earlier].font.file).suffix() != suffix)
                formats->append({*earlier, int(faces.size())});
            else
                continue;
        }
        known.insert(key, int(faces.size()));
        faces.push_back({font, label, NamedStyle::of(font.family, font.style, font.postScriptName)});
    }
    return faces;
}

// The faces as the service would ask about them: all in a catalogue, its features extracted.
class FeatureSearch
{
public:
    explicit FeatureSearch(const std::vector<Face>& faces)
    {
        std::vector<SurveyedFace> fonts;
        for (const Face& face : faces)
            fonts.push_back(face.font);
        const QString database = m_place.filePath(QStringLiteral("fms.db"));
        const QString folder = m_place.filePath(QStringLiteral("features"));
        writeCatalogue(database, fonts, int(fonts.size()));
        extractCatalogue(database, folder);
        const std::string letters(QueryLetters.begin(), QueryLetters.end());
        if (m_folder.open(folder.toStdString(), letters) != FeatureFolder::State::Ready)
            qFatal("no features");
    }

    // From one face to all.
    QVector<float> distancesFrom(int face) const
    {
        SimilarityQuery query;
        query.font = face;
        query.limit = m_folder.count();
        QVector<float> distances(m_folder.count(), Nowhere);
        for (const Match& match : findMatches(m_folder, SimilarityMethod::Similar, query))
            distances[match.font] = float(match.deviance);
        return distances;
    }

private:
    QTemporaryDir m_place;
    FeatureFolder m_folder;
};

// What anybody would try first: the letters scaled to 16 x 16 pixels each, the lengths of their differences added up.
float bitmapDistance(const Face& one, const Face& other)
{
    float sum = 0;
    int common = 0;
    for (std::size_t letter = 0; letter < one.font.bitmaps.size(); ++letter) {
        const LetterBitmap& mine = one.font.bitmaps[letter];
        const LetterBitmap& its = other.font.bitmaps[letter];
        if (mine.empty() || its.empty())
            continue;
        float square = 0;
        for (std::size_t i = 0; i < mine.size(); ++i)
            square += (mine[i] - its[i]) * (mine[i] - its[i]);
        sum += std::sqrt(square);
        ++common;
    }
    return common > 0 ? sum / float(common) : Nowhere;
}

QVector<float> bitmapDistancesFrom(const std::vector<Face>& faces, int asked)
{
    QVector<float> distances;
    for (const Face& face : faces)
        distances << bitmapDistance(faces[std::size_t(asked)], face);
    return distances;
}

// The outcome of one question: is the nearest of the right answers before all of the wrong ones?
void judge(Scores& scores, const QString& what, const Face& asked, const QVector<float>& distances,
           const QVector<char>& right, const QVector<char>& wrong, int among = 1)
{
    float nearest = Nowhere;
    for (int i = 0; i < distances.size(); ++i)
        nearest = right[i] ? std::min(nearest, distances[i]) : nearest;
    if (nearest == Nowhere)
        return;
    int before = 0;
    for (int i = 0; i < distances.size(); ++i)
        before += wrong[i] && distances[i] < nearest ? 1 : 0;
    scores[what][asked.label.heldOut].count(before < among);
}

// The plain cut of a family; of the editions of one maker the first, or twenty of them would ask the same.
bool asksForAlike(const std::vector<Face>& faces, int asked)
{
    const Face& face = faces[std::size_t(asked)];
    const auto sameDesign = [&face](const Face& other) {
        return other.style == NamedStyle() && other.label.heldOut == face.label.heldOut &&
               other.label.kin.intersects(face.label.kin);
    };
    return face.style == NamedStyle() && std::none_of(faces.begin(), faces.begin() + asked, sameDesign);
}

void judgeFace(const std::vector<Face>& faces, int asked, const QVector<float>& distances, Scores& scores)
{
    const Face& face = faces[asked];
    const int count = int(faces.size());
    QVector<char> cut(count), redrawn(count), alike(count), genre(count), kin(count), own(count), copy(count);
    for (int i = 0; i < count; ++i) {
        const Face& other = faces[i];
        cut[i] = face.label.cuts.intersects(other.label.cuts);
        redrawn[i] = face.label.redrawn.intersects(other.label.redrawn);
        alike[i] = face.label.alike.intersects(other.label.alike);
        genre[i] = face.label.genre.intersects(other.label.genre);
        kin[i] = face.label.kin.intersects(other.label.kin);
        own[i] = other.font.family == face.font.family;
        copy[i] = i == asked || (own[i] && other.style == face.style);
    }
    QVector<char> right(count), wrong(count);
    const auto ask = [&](const QString& what, auto isRight, auto isWrong, int among = 1) {
        for (int i = 0; i < count; ++i) {
            right[i] = i != asked && distances[i] < Nowhere && isRight(i, faces[i]);
            wrong[i] = i != asked && distances[i] < Nowhere && !right[i] && isWrong(i, faces[i]);
        }
        judge(scores, what, face, distances, right, wrong, among);
    };
    const auto nearStyle = [&face](const Face& other) {
        return other.style.italic == face.style.italic && std::abs(other.style.weight - face.style.weight) <= 100;
    };
    const auto twin = [&](int i, const Face& other) { return cut[i] && !own[i] && other.style == face.style; };
    const auto noTwin = [&](int i, const Face& other) { return !copy[i] && !kin[i] && !(cut[i] && nearStyle(other)); };
    ask(QStringLiteral("twin first"), twin, noTwin);
    ask(QStringLiteral("twin among ten"), twin, noTwin, 10);
    if (face.style.weight == 400 || face.style.weight == 700) {
        ask(
            QStringLiteral("redrawn cut first"),
            [&](int i, const Face& other) {
                return redrawn[i] && !cut[i] && !own[i] && nearStyle(other) && other.style.sameBut(face.style);
            },
            [&](int i, const Face&) { return !cut[i] && !own[i] && !redrawn[i] && !kin[i]; });
    }
    if (asksForAlike(faces, asked)) {
        const auto other = [&](int i, const Face& it) {
            return !cut[i] && !redrawn[i] && !kin[i] && !own[i] && it.style == face.style;
        };
        const auto like = [&](int i, const Face& it) { return alike[i] && other(i, it); };
        const auto unlike = [&](int i, const Face& it) { return !alike[i] && other(i, it); };
        ask(QStringLiteral("alike design first"), like, unlike);
        ask(
            QStringLiteral("design of the genre first"),
            [&](int i, const Face& it) { return genre[i] && other(i, it); },
            [&](int i, const Face& it) { return !genre[i] && other(i, it); });
        for (int b = 0; b < count; ++b) {
            for (int c = 0; b != asked && like(b, faces[b]) && c < count; ++c) {
                if (c != asked && unlike(c, faces[c]) && faces[c].kind() == face.kind() && distances[b] < Nowhere)
                    scores[QStringLiteral("B closer to A than C")][face.label.heldOut].count(distances[b] <
                                                                                             distances[c]);
            }
        }
    }
    int nextWeight = 10000;
    for (int i = 0; i < count; ++i) {
        const int difference = std::abs(faces[i].style.weight - face.style.weight);
        if (own[i] && difference > 0 && faces[i].style.sameBut(face.style))
            nextWeight = std::min(nextWeight, difference);
    }
    if (nextWeight < 10000) {
        ask(
            QStringLiteral("next weight first"),
            [&](int i, const Face& other) {
                return (own[i] || cut[i]) && other.style.sameBut(face.style) &&
                       std::abs(other.style.weight - face.style.weight) == nextWeight;
            },
            [&](int i, const Face& other) {
                return !copy[i] && !((cut[i] || redrawn[i] || kin[i]) && other.style.weight == face.style.weight);
            });
    }
    const QString firstWord = face.font.family.section(QLatin1Char(' '), 0, 0);
    const auto unrelated = [&](int i, const Face& other) {
        return !own[i] && !cut[i] && !redrawn[i] && !alike[i] && !kin[i] &&
               other.font.family.section(QLatin1Char(' '), 0, 0) != firstWord;
    };
    const auto sameKind = [&](int i, const Face& other) { return unrelated(i, other) && other.kind() == face.kind(); };
    ask(QStringLiteral("unrelated of same class"), sameKind, unrelated);
    ask(QStringLiteral("class ") + face.kind(), sameKind, unrelated);
    if (face.isText()) {
        ask(
            QStringLiteral("serif or not"),
            [&](int i, const Face& other) {
                return unrelated(i, other) && other.isText() && other.isSerif() == face.isSerif();
            },
            [&](int i, const Face& other) { return unrelated(i, other) && other.isText(); });
    }
}

double rankCorrelation(const QVector<double>& one, const QVector<double>& other)
{
    const auto ranks = [](const QVector<double>& values) {
        std::vector<int> order(std::size_t(values.size()));
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), [&values](int a, int b) { return values[a] < values[b]; });
        QVector<double> result(values.size());
        for (std::size_t i = 0; i < order.size();) {
            std::size_t end = i;
            while (end < order.size() && values[order[end]] == values[order[i]])
                ++end;
            for (std::size_t k = i; k < end; ++k)
                result[order[k]] = double(i + end - 1) / 2;
            i = end;
        }
        return result;
    };
    const QVector<double> a = ranks(one);
    const QVector<double> b = ranks(other);
    const double middle = double(a.size() - 1) / 2;
    double ab = 0, aa = 0, bb = 0;
    for (int i = 0; i < a.size(); ++i) {
        ab += (a[i] - middle) * (b[i] - middle);
        aa += (a[i] - middle) * (a[i] - middle);
        bb += (b[i] - middle) * (b[i] - middle);
    }
    return aa > 0 && bb > 0 ? ab / std::sqrt(aa * bb) : 0;
}

void reportRecords(const std::vector<Face>& faces)
{
    Share serif, mono;
    QVector<double> measured, stated;
    QMap<QString, std::array<int, 3>> found; // keyword -> right, given, wanted
    const std::pair<const char*, const char*> keywords[] = {
        {"Symbol", "symbol"}, {"Handwriting", "script"}, {"Headline", "display"}, {"Blackletter", "blackletter"}};
    for (const Face& face : faces) {
        const int weight = face.font.statedWeight;
        if (face.isText() && face.font.analysis.hwe > 0 && weight >= 100 && weight <= 900 && weight % 50 == 0) {
            measured << face.font.analysis.hwe;
            stated << weight;
        }
        if (!face.label.heldOut)
            continue;
        if (face.isText()) {
            serif.count(face.has("serif") == face.isSerif());
            mono.count(face.has("monospace") == face.isMono());
        }
        for (const auto& [keyword, kind] : keywords) {
            std::array<int, 3>& counts = found[QLatin1String(keyword)];
            const bool is = face.label.kind == QLatin1String(kind);
            counts[0] += face.has(keyword) && is;
            counts[1] += face.has(keyword);
            counts[2] += is;
        }
    }
    atLeast("record: isSerif, held out", serif.percent(), 96, "%");
    atLeast("record: isMonospacedClass of text faces, held out", mono.percent(), 98, "%");
    const std::pair<const char*, double> targets[] = {
        {"Symbol", 90}, {"Handwriting", 70}, {"Headline", 65}, {"Blackletter", 65}};
    for (const auto& [keyword, target] : targets) {
        const std::array<int, 3>& counts = found[QLatin1String(keyword)];
        const int sum = counts[1] + counts[2];
        atLeast(std::string("record: F1 of ") + keyword + ", held out", sum ? 200.0 * counts[0] / sum : 0, target, "%");
    }
    atLeast("weight against OS/2 weight class, Spearman", rankCorrelation(measured, stated), 0.85, "");
}

// For bench/similarity/fit: a line for each face with what is known of it, and its 62 x 61 values beside.
bool writeFittingData(const std::vector<Face>& faces, const QString& path)
{
    QFile lines(path);
    QFile values(path + QStringLiteral(".values"));
    if (!lines.open(QIODevice::WriteOnly) || !values.open(QIODevice::WriteOnly))
        return false;
    const auto groups = [](const QSet<QString>& names) { return QJsonArray::fromStringList(names.values()); };
    for (const Face& face : faces) {
        const QString found =
            QString::fromStdString(face.font.analysis.classification).section(QLatin1String(", "), 0, 0);
        const QJsonObject known = {{QStringLiteral("family"), face.font.family},
                                   {QStringLiteral("class"), face.label.kind},
                                   {QStringLiteral("found"), found},
                                   {QStringLiteral("held"), face.label.heldOut},
                                   {QStringLiteral("cut"), groups(face.label.cuts)},
                                   {QStringLiteral("redrawn"), groups(face.label.redrawn)},
                                   {QStringLiteral("alike"), groups(face.label.alike)},
                                   {QStringLiteral("kin"), groups(face.label.kin)},
                                   {QStringLiteral("weight"), face.style.weight},
                                   {QStringLiteral("italic"), face.style.italic},
                                   {QStringLiteral("condensed"), face.style.condensed},
                                   {QStringLiteral("other"), face.style.other}};
        lines.write(QJsonDocument(known).toJson(QJsonDocument::Compact) + '\n');
        const auto& features = face.font.analysis.features;
        values.write(reinterpret_cast<const char*>(features.data()), qint64(sizeof(features)));
    }
    return lines.flush() && values.flush();
}

// Whether each face comes first in its other format, not counting its relatives.
template <typename Distances>
Share otherFormats(const std::vector<Face>& all, const QVector<QPair<int, int>>& formats, Distances distancesFrom)
{
    Share found;
    for (const auto& [one, other] : formats) {
        float nearest = Nowhere;
        const Face& face = all[std::size_t(one)];
        const QVector<float> distances = distancesFrom(one);
        for (int i = 0; i < int(all.size()); ++i) {
            const Face& it = all[std::size_t(i)];
            const bool related = i == one || it.font.family == face.font.family ||
                                 it.label.cuts.intersects(face.label.cuts) || it.label.kin.intersects(face.label.kin);
            nearest = related ? nearest : std::min(nearest, distances[i]);
        }
        found.count(distances[other] <= nearest);
    }
    return found;
}

// Beside ours what the plain comparison of bitmaps reaches with the same faces and labels.
void reportShare(const QString& what, double ours, double bitmaps, double least)
{
    Row row;
    row.what = what.toStdString();
    row.ours = ours;
    row.reference = bitmaps;
    row.unit = "%";
    row.ratio = bitmaps > 0 ? ours / bitmaps : 0;
    row.target = ">= " + QString::number(least).toStdString() + " %";
    row.met = ours >= least;
    report(row);
}

double classMean(const Scores& scores, bool heldOut)
{
    double sum = 0;
    int classes = 0;
    for (auto score = scores.constBegin(); score != scores.constEnd(); ++score) {
        if (score.key().startsWith(QLatin1String("class "))) {
            sum += score->value(heldOut).percent();
            ++classes;
        }
    }
    return classes ? sum / classes : 0;
}

} // namespace

// With "--fitting-data FILE": writes what bench/similarity/fit reads instead of measuring quality.
int main(int argc, char* argv[])
{
    const QString folder = benchFonts();
    DesignLabels labels;
    const QString here = QStringLiteral(KERVAL_SOURCE_DIR "/bench/similarity/");
    if (folder.isEmpty() || !labels.read(here + QStringLiteral("designs.txt"), here + QStringLiteral("heldout.txt"))) {
        std::fprintf(stderr, "no fonts or no labels\n");
        return 1;
    }
    QStringList files = fontFiles(folder);
    QVector<QPair<int, int>> formats;
    const std::vector<Face> all = catalogue(surveyFonts(files), labels, &formats);
    QSet<int> copies;
    for (const auto& [one, other] : qAsConst(formats))
        copies.insert(other);
    std::vector<Face> faces;
    for (int i = 0; i < int(all.size()); ++i) {
        // The texlive Type 1 files of families that are there as OpenType too, under mangled family names.
        const bool mangled = all[i].isText() && all[i].font.file.contains(QLatin1String("/texlive-fonts-extra/")) &&
                             all[i].font.file.contains(QLatin1String("/type1/"));
        if (!copies.contains(i) && !mangled)
            faces.push_back(all[i]);
    }
    if (argc == 3 && std::strcmp(argv[1], "--fitting-data") == 0)
        return writeFittingData(faces, QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    Scores scores;
    Scores bitmaps;
    const FeatureSearch search(faces);
    for (int i = 0; i < int(faces.size()); ++i) {
        judgeFace(faces, i, search.distancesFrom(i), scores);
        judgeFace(faces, i, bitmapDistancesFrom(faces, i), bitmaps);
    }
    const QMap<QString, double> targets = {{QStringLiteral("twin first"), 97},
                                           {QStringLiteral("twin among ten"), 99},
                                           {QStringLiteral("redrawn cut first"), 95},
                                           {QStringLiteral("alike design first"), 87},
                                           {QStringLiteral("B closer to A than C"), 93},
                                           {QStringLiteral("next weight first"), 68},
                                           {QStringLiteral("unrelated of same class"), 90},
                                           {QStringLiteral("class script"), 60},
                                           {QStringLiteral("serif or not"), 98}};
    std::printf("%d faces of %d files; the reference compares bitmaps\n", int(faces.size()), int(files.size()));
    for (auto score = scores.constBegin(); score != scores.constEnd(); ++score) {
        const Share held = score->value(true);
        const Share tuned = score->value(false);
        const QMap<bool, Share> reference = bitmaps.value(score.key());
        std::printf("%-26s held out %5.1f %% of %5d (bitmaps %5.1f %%), tuned on %5.1f %% of %6d (bitmaps %5.1f %%)\n",
                    qPrintable(score.key()), held.percent(), held.all, reference.value(true).percent(), tuned.percent(),
                    tuned.all, reference.value(false).percent());
        if (targets.contains(score.key()))
            reportShare(score.key() + QStringLiteral(", held out"), held.percent(), reference.value(true).percent(),
                        targets[score.key()]);
    }
    reportShare(QStringLiteral("same class, mean over the classes, held out"), classMean(scores, true),
                classMean(bitmaps, true), 82);
    const FeatureSearch searchOfAll(all);
    const Share format = otherFormats(all, formats, [&](int face) { return searchOfAll.distancesFrom(face); });
    const Share bitmapFormat = otherFormats(all, formats, [&](int face) { return bitmapDistancesFrom(all, face); });
    reportShare(QStringLiteral("same face in another format"), format.percent(), bitmapFormat.percent(), 98);
    reportRecords(faces);
    return 0;
}
