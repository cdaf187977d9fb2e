// One switch beside few and many active fonts, and a thousand in one request beside fc-cache. Each number of active
// fonts has a home and a process of its own, because fontconfig's configuration is found by the environment.
#include "bench/support/bench.h"
#include "qtService/management/systemfm/FontManagerStrategyFontconfig.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QtConcurrentRun>

#include <cstdio>
#include <iostream>
#include <memory>
#include <unistd.h>
#include <vector>

using namespace kerval::systemfm;

namespace {

constexpr int batchSize = 1000;

// Makes the tree and leads fontconfig there: this process, and those it starts.
void enterHome(const QString& root)
{
    for (const char* name : {"fonts", "config", "lib", "settings", "run"})
        QDir(root).mkpath(QLatin1String(name));
    QSaveFile file(root + QStringLiteral("/fonts.conf"));
    file.open(QIODevice::WriteOnly);
    const QByteArray path = QFile::encodeName(root);
    file.write("<fontconfig><dir>" + path + "/fonts</dir><cachedir>" + path +
               "/cache</cachedir>"
               "<include ignore_missing=\"yes\">" +
               path + "/config/fontconfig/conf.d</include></fontconfig>");
    file.commit();
    qputenv("FONTCONFIG_FILE", path + "/fonts.conf");
}

std::unique_ptr<FontManagerStrategyFontconfig> makeStrategy(const QString& root)
{
    return std::make_unique<FontManagerStrategyFontconfig>(
        FontPlaces::at(root + QStringLiteral("/fonts"), root + QStringLiteral("/config"),
                       root + QStringLiteral("/settings")),
        LogonSession::open(root + QStringLiteral("/run"), root, "bench"));
}

// Copies of the samples in turn; a file system bounds the names of one file.
QStringList makeFonts(const QString& folder, const QStringList& samples, int count)
{
    constexpr int namesPerFile = 10000;
    QStringList files;
    QString content;
    for (int i = 0; i < count; ++i) {
        const QString file = QStringLiteral("%1/%2/%3.ttf").arg(folder).arg(i / 1000).arg(i);
        if (i % 1000 == 0)
            QDir().mkpath(QFileInfo(file).path());
        const bool link = samples.size() == 1 && i % namesPerFile != 0;
        if (!link || ::link(QFile::encodeName(content).constData(), QFile::encodeName(file).constData()) != 0) {
            QFile::copy(samples.at(i % samples.size()), file);
            content = file;
        }
        files.append(file);
    }
    return files;
}

void setAll(FontManagerStrategyInterface& strategy, const QStringList& files, bool on)
{
    strategy.beginBatch();
    for (const QString& file : files) {
        if (on)
            strategy.activatePermanently(file, {file});
        else
            strategy.deactivate(file, {file});
    }
    if (!strategy.endBatch().isEmpty())
        qFatal("fonts were refused");
    strategy.notifyFontChange();
}

// Until what the change sets off in the background is over.
void settle(FontManagerStrategyInterface& strategy, const std::function<void()>& change)
{
    QEventLoop loop;
    QObject::connect(&strategy, &FontManagerStrategyInterface::activeFontsChanged, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);
    QTimer::singleShot(20000, &loop, &QEventLoop::quit);
    change();
    loop.exec();
}

// The other process: says "ready" with so many fonts active, then switches one font for every line it reads and
// answers with the seconds that took.
int serveSwitches(const QString& sample, int active)
{
    QTemporaryDir home;
    enterHome(home.path());
    const QStringList files = makeFonts(home.filePath(QStringLiteral("lib")), {sample}, active + 1);
    const auto strategy = makeStrategy(home.path());
    settle(*strategy, [&] { setAll(*strategy, files.mid(1), true); });
    std::puts("ready");
    std::fflush(stdout);
    bool on = false;
    for (std::string line; std::getline(std::cin, line);) {
        on = !on;
        double seconds = 0;
        settle(*strategy, [&] {
            seconds = kerval::bench::seconds([&] {
                const QStringList names{QStringLiteral("name")};
                const auto result = on ? strategy->activatePermanently(files.constFirst(), names)
                                       : strategy->deactivate(files.constFirst(), names);
                if (result.value(names.constFirst(), -1) != 0)
                    qFatal("the switch was refused");
                strategy->notifyFontChange();
            });
        });
        std::printf("%.9f\n", seconds);
        std::fflush(stdout);
    }
    return 0;
}

class Switcher
{
public:
    Switcher(const QString& sample, int active)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationFilePath(), {sample, QString::number(active)});
        readLine();
    }
    ~Switcher()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished(60000);
    }
    double operator()()
    {
        m_process.write("\n");
        return readLine().toDouble();
    }

private:
    QByteArray readLine()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(600000))
                qFatal("the switching process ended");
        }
        return m_process.readLine();
    }

    QProcess m_process;
};

void benchSwitches(const QString& sample)
{
    Switcher few(sample, 50);
    Switcher many(sample, 5000);
    Switcher most(sample, 50000);
    for (Switcher* switcher : {&few, &many, &most})
        (*switcher)();
    kerval::bench::compare(
        "switching a font, 5,000 active, beside 50", 1.5, [&] { return many(); }, [&] { return few(); }, 21);
    kerval::bench::compare(
        "switching a font, 50,000 active, beside 50", 1.5, [&] { return most(); }, [&] { return few(); }, 21);
}

void benchBatch()
{
    QStringList samples;
    QDirIterator files(QStringLiteral("/usr/share/fonts/truetype"), {QStringLiteral("*.ttf")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext() && samples.size() < batchSize)
        samples.append(files.next());
    if (samples.size() < 2)
        qFatal("this machine has no fonts to measure with");
    samples.sort();

    QTemporaryDir home;
    enterHome(home.path());
    const QString folder = home.filePath(QStringLiteral("lib"));
    const QStringList fonts = makeFonts(folder, samples, batchSize);
    const auto strategy = makeStrategy(home.path());
    double longestWait = 0;
    const auto ours = [&] {
        double seconds = 0;
        // As the service does it: the batch on another thread, this one answering.
        QElapsedTimer gap;
        QTimer beat;
        QObject::connect(&beat, &QTimer::timeout, [&] {
            longestWait = qMax(longestWait, double(gap.nsecsElapsed()) / 1e6);
            gap.start();
        });
        settle(*strategy, [&] {
            gap.start();
            beat.start(1);
            const QFuture<void> batch =
                QtConcurrent::run([&] { seconds = kerval::bench::seconds([&] { setAll(*strategy, fonts, true); }); });
            while (!batch.isFinished()) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
                strategy->activeFonts();
            }
            beat.stop();
        });
        settle(*strategy, [&] { setAll(*strategy, fonts, false); });
        return seconds;
    };
    // What fc-cache does, without its start and the two seconds it sleeps at its end.
    FontconfigDatabase database;
    const auto reference = [&] {
        return kerval::bench::seconds([&] {
            database.refresh();
            database.readAgain({folder + QStringLiteral("/0")});
        });
    };
    kerval::bench::compare("activating 1,000 fonts in one request, beside the work of fc-cache", 2, ours, reference);
    kerval::bench::atMost("longest wait of the main thread meanwhile", longestWait, 50, "ms");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QStringList arguments = application.arguments();
    if (arguments.size() == 3)
        return serveSwitches(arguments.at(1), arguments.at(2).toInt());
    benchSwitches(QStringLiteral(KERVAL_SOURCE_DIR "/tests/data/fonts/blocks.ttf"));
    benchBatch();
    return 0;
}
