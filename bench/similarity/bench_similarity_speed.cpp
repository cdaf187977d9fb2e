// What a query over 50,000 fonts, an extraction of them and the measuring of one face cost.
#include "bench/similarity/FontSurvey.h"
#include "bench/similarity/SurveyCatalogue.h"
#include "bench/support/bench.h"

#include "helpers/common/FeatureBlob.h"
#include "helpers/common/FeatureFolderLayout.h"
#include "helpers/shape/FaceRaster.h"
#include "qtService/management/KrvSimilarityWrapper.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

using namespace kerval::bench;
using namespace kerval::helpers;

namespace {

constexpr int Fonts = 50000;

// The program by itself, from start to end, without a reader for what it prints.
void runBare(const char* program, const QStringList& arguments)
{
    std::vector<QByteArray> texts = {QByteArray(KERVAL_BIN_DIR "/") + program};
    for (const QString& argument : arguments)
        texts.push_back(argument.toLocal8Bit());
    std::vector<char*> pointers;
    for (QByteArray& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    int status = 0;
    if (posix_spawn(&process, pointers[0], &actions, nullptr, pointers.data(), environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0)
        qFatal("%s failed", program);
    posix_spawn_file_actions_destroy(&actions);
}

// From the request to the answer, by way of the program.
void askService(KrvSimilarityWrapper& service)
{
    QEventLoop loop;
    int failure = -1;
    const auto connection = QObject::connect(&service, &KrvSimilarityWrapper::similarityDone, &loop,
                                             [&](const auto&, const auto& result, int error) {
                                                 failure = result.matches.isEmpty() ? -1 : error;
                                                 loop.quit();
                                             });
    service.requestSimilar(4712, QStringLiteral("htlaf"), 100, QString(), QVariant());
    loop.exec();
    QObject::disconnect(connection);
    if (failure != 0)
        qFatal("the service fails to answer");
}

void readFeatureRows(const QString& path)
{
    sqlite3* database = nullptr;
    sqlite3_open_v2(QFile::encodeName(path).constData(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* rows = nullptr;
    sqlite3_prepare_v2(database, "SELECT font_id, featuredata FROM feature", -1, &rows, nullptr);
    std::string copy;
    while (sqlite3_step(rows) == SQLITE_ROW)
        copy.assign(static_cast<const char*>(sqlite3_column_blob(rows, 1)), std::size_t(sqlite3_column_bytes(rows, 1)));
    sqlite3_finalize(rows);
    sqlite3_close(database);
}

// The feature files' bytes without anything else: no set of them can be written in less.
void writeBare(const QString& folder)
{
    const std::vector<char> bytes(1 << 18, 1);
    std::vector<std::unique_ptr<QFile>> files;
    for (std::size_t letter = 0; letter < featureAlphabet.size(); ++letter) {
        files.push_back(std::make_unique<QFile>(folder + QLatin1Char('/') + QString::number(letter)));
        if (!files.back()->open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            qFatal("cannot write");
    }
    qint64 left = qint64(Fonts) * qint64(featureByteCount);
    for (; left > 0; left -= qint64(bytes.size()))
        for (const auto& file : files)
            file->write(bytes.data(), std::min(left, qint64(bytes.size())));
}

// What anyone would write: map the five files, add up the squares, keep the best hundred.
float plainSearch(const QString& folder)
{
    std::vector<float> distances(Fonts, 0.0F);
    for (const unsigned char letter : {'h', 't', 'l', 'a', 'f'}) {
        QFile file(folder + QLatin1Char('/') + QString::fromStdString(featurefolder::characterFile(letter)));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no feature files");
        const auto* vectors = reinterpret_cast<const float*>(file.map(0, file.size()));
        const float* base = vectors + 61 * 4711;
        for (std::size_t font = 0; font < distances.size(); ++font) {
            float sum = 0;
            for (std::size_t i = 0; i < 61; ++i) {
                const float difference = vectors[font * 61 + i] - base[i];
                sum += difference * difference;
            }
            distances[font] += sum;
        }
    }
    std::partial_sort(distances.begin(), distances.begin() + 100, distances.end());
    return distances[99];
}

void openAndDraw(FT_Library library, const QByteArray& file)
{
    FT_Face face = nullptr;
    if (FT_New_Face(library, file.constData(), 0, &face) != 0)
        return;
    krv::FaceRaster raster(face);
    krv::GlyphCoverage coverage;
    krv::GlyphPlacement placement;
    for (const char* letter = krv::kFeatureLetters; *letter; ++letter)
        raster.draw(raster.glyphFor(static_cast<unsigned char>(*letter)), coverage, placement);
    FT_Done_Face(face);
}

void benchFace(const QStringList& files)
{
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    std::vector<QByteArray> names;
    for (const QString& file : files)
        names.push_back(QFile::encodeName(file));
    compare(
        "measure a face (opening included)", 2,
        [&] {
            return seconds([&] {
                for (const QByteArray& name : names) {
                    FT_Face face = nullptr;
                    if (FT_New_Face(library, name.constData(), 0, &face) == 0) {
                        krv::FaceAnalysis::analyse(face);
                        FT_Done_Face(face);
                    }
                }
            });
        },
        [&] {
            return seconds([&] {
                for (const QByteArray& name : names)
                    openAndDraw(library, name);
            });
        },
        5, double(names.size()));
    FT_Done_FreeType(library);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList all = fontFiles(QStringLiteral("/usr/share/fonts"));
    QStringList files;
    for (int i = 0; i < all.size(); i += std::max(1, int(all.size() / 200)))
        files << all[i];
    if (files.isEmpty())
        qFatal("no fonts are installed");
    benchFace(files);

    QTemporaryDir place;
    const QString database = place.filePath(QStringLiteral("fms.db"));
    const QString folder = place.filePath(QStringLiteral("features"));
    writeCatalogue(database, surveyFonts(files), Fonts);
    const auto read = [&] { return seconds([&] { readFeatureRows(database); }); };
    const auto extract = [&] {
        QDir(folder).removeRecursively(); // as the service leaves it when fonts were added
        return seconds([&] { extractCatalogue(database, folder); });
    };
    compare("extract the features of 50,000 fonts", 2, extract, read, 9);
    const QString bare = place.filePath(QStringLiteral("bare"));
    compare(
        "for comparison: only write as many bytes", 2,
        [&] {
            QDir(bare).removeRecursively();
            QDir().mkpath(bare);
            return seconds([&] { writeBare(bare); });
        },
        read, 9);
    QDir(bare).removeRecursively();
    const auto arguments = [&](const char* method) {
        return QStringList{QStringLiteral("-f"), hexPath(folder),
                           QStringLiteral("-t"), QStringLiteral("htlaf"),
                           QStringLiteral("-i"), QStringLiteral("4712"),
                           QStringLiteral("-l"), QStringLiteral("100"),
                           QStringLiteral("-o"), QStringLiteral("{id}:{deviance}\\n"),
                           QStringLiteral("-m"), QLatin1String(method)};
    };
    const auto query = [&](const char* method) {
        return seconds([&] { runHelper("krvfindsimilar.exe", arguments(method)); });
    };
    KrvSimilarityWrapper service(QStringLiteral(KERVAL_BIN_DIR "/krvextractfeatures.exe"),
                                 QStringLiteral(KERVAL_BIN_DIR "/krvfindsimilar.exe"), folder, {}, database, 1,
                                 QString(), QString());
    std::vector<double> added;
    for (int i = 0; i < 15; ++i) {
        const double served = seconds([&] { askService(service); });
        added.push_back(served - seconds([&] { runBare("krvfindsimilar.exe", arguments("similar")); }));
    }
    std::nth_element(added.begin(), added.begin() + 7, added.end());
    atMost("what the service adds to a query's program", added[7] * 1000, 5, "ms");
    float sink = 0;
    const auto plain = [&] { return seconds([&] { sink += plainSearch(folder); }); };
    compare(
        "find similar among 50,000 fonts, process included", 1.5, [&] { return query("similar"); }, plain, 9);
    atMost("smart choice among 50,000 fonts", query("smartall") * 1000, 1000, "ms");
    atMost("harmony by contrast among 50,000 fonts", query("harcont") * 1000, 1000, "ms");
    return sink > 0 ? 0 : 1;
}
