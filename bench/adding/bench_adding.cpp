#include "bench/support/bench.h"
#include "fontfile/KrvFontFile.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/database/CachedFontRepositoryStrategy.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/RelationalFeatureRepositoryStrategy.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "qtService/management/FontAdder.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

// The analysing pipeline until the last face is processed, beside a minimal program started as often; and the queue.

namespace {

using FontFaces = QList<QPair<QString, int>>;

constexpr int faceCount = 200;
constexpr int queuedCount = 50000;

QList<FontQueue::Face> machineFaces()
{
    QStringList files;
    QDirIterator iterator(QStringLiteral("/usr/share/fonts"), QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString file = iterator.next();
        const KrvFontFile::Format format = KrvFontFile::formatFromFileName(file);
        if (format == KrvFontFile::FormatTtf || format == KrvFontFile::FormatOtf)
            files.append(file);
    }
    files.sort();
    QList<FontQueue::Face> faces;
    const int step = qMax(1, files.size() / faceCount);
    for (int i = 0; i < files.size(); i += step)
        faces.append({files.at(i), 0});
    return faces;
}

// An adder over a catalogue of its own.
struct Pipeline
{
    Pipeline()
    {
        userDatabase.open(folder.filePath(QStringLiteral("user.db")));
        const auto database = QSharedPointer<FontDatabase>::create(folder.filePath(QStringLiteral("fms.db")));
        const auto strategy = QSharedPointer<CachedFontRepositoryStrategy>::create(
            QSharedPointer<RelationalFontRepositoryStrategy>::create(database));
        const auto repository = QSharedPointer<KrvFontRepository>::create(strategy, &userDatabase);
        const auto features = QSharedPointer<KrvFeatureRepository>::create(
            QSharedPointer<RelationalFeatureRepositoryStrategy>::create(database));
        adder.reset(new FontAdder(QStringLiteral(KERVAL_BIN_DIR "/krvfontadder.exe"), nullptr, &userDatabase,
                                  repository, features));
    }

    QTemporaryDir folder;
    KrvUserDatabase userDatabase;
    QScopedPointer<FontAdder> adder;
};

QString queueFile()
{
    return krv::userSettingsFolder() + QStringLiteral("/fontadder.ev");
}

double pipelineSeconds(const QList<FontQueue::Face>& faces)
{
    FontQueue::save(queueFile(), faces);
    Pipeline pipeline;
    QEventLoop loop;
    QElapsedTimer timer;
    double seconds = 0;
    QObject::connect(pipeline.adder.data(), &FontAdder::numberOfAddedFontsChanged, &loop, [&] {
        if (pipeline.adder->numberOfAddedFonts() == faces.size())
            seconds = double(timer.nsecsElapsed()) / 1e9;
    });
    QObject::connect(pipeline.adder.data(), &FontAdder::fontAddingStopped, &loop, &QEventLoop::quit);
    timer.start();
    pipeline.adder->startAdding();
    loop.exec();
    return seconds;
}

double minimalSeconds(const QList<FontQueue::Face>& faces)
{
    const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/../../bin/bench_rasterise");
    QEventLoop loop;
    int next = 0;
    int running = 0;
    const std::function<void()> fill = [&] {
        while (next < faces.size() && running < QThread::idealThreadCount()) {
            const FontQueue::Face& face = faces.at(next++);
            auto* const process = new QProcess;
            ++running;
            QObject::connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), process,
                             [&, process] {
                                 process->readAllStandardOutput();
                                 process->deleteLater();
                                 --running;
                                 fill();
                                 if (running == 0)
                                     loop.quit();
                             });
            process->start(program, {face.first, QString::number(face.second)});
        }
    };
    return kerval::bench::seconds([&] {
        fill();
        loop.exec();
    });
}

void measureQueue()
{
    QList<FontQueue::Face> faces;
    for (int i = 0; i < queuedCount; ++i)
        faces.append({QStringLiteral("/home/someone/fonts/a folder of fonts/face number %1.otf").arg(i), 0});
    FontQueue::save(queueFile(), {});
    {
        Pipeline pipeline;
        // As a search delivers them: one call for each file.
        const double enqueued = kerval::bench::seconds([&] {
            for (const FontQueue::Face& face : faces)
                QMetaObject::invokeMethod(pipeline.adder.data(), "onFontFilesFound", Qt::DirectConnection,
                                          QArgument<FontFaces>("QList<QPair<QString,int> >", FontFaces{face}));
        });
        kerval::bench::atMost("enqueuing 50,000 faces", enqueued * 1000, 1000, "ms");
        if (pipeline.adder->numberOfFonts() != queuedCount)
            qFatal("faces were lost");
    }
    const double saved = kerval::bench::seconds([&] { FontQueue::save(queueFile(), faces); });
    kerval::bench::atMost("saving 50,000 queued faces", saved * 1000, 1000, "ms");
    const double restored = kerval::bench::seconds([&] {
        Pipeline pipeline;
        if (pipeline.adder->numberOfFonts() != queuedCount)
            qFatal("faces were lost");
    });
    kerval::bench::atMost("restoring 50,000 queued faces", restored * 1000, 1000, "ms");
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path() + QStringLiteral("/data")));
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    const QList<FontQueue::Face> faces = machineFaces();
    pipelineSeconds(faces); // reads the files into the page cache
    kerval::bench::compare(
        "analysing faces until the last is processed, beside a minimal program", 1.5,
        [&] { return pipelineSeconds(faces); }, [&] { return minimalSeconds(faces); }, 5, faces.size());
    measureQueue();
    return 0;
}
