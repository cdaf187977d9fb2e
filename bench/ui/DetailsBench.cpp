#include "bench/support/bench.h"
#include "qtService/ui/details/CharacterMapWidget.h"
#include "qtService/ui/details/KrvCharacterMapModel.h"
#include "qtService/ui/details/KrvCharacterMapWidget.h"
#include "qtService/ui/details/KrvWaterfallWidget.h"
#include "tests/fontfile/sfntbuilder.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <malloc.h>
#include <vector>

// The details pane with fonts that have much to show: from the call that names the font until its picture is complete
// on the screen, all on the main thread.

namespace {

const int manyGlyphs = 60000;
const int repetitions = 5;
const int scrollSteps = 1200;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

StaticFontPtr makeFont(const QString& file)
{
    static int id = 0;
    const auto font = StaticFontPtr::create();
    font->setId(++id);
    font->setFileName(file);
    return font;
}

QString generateFont(const QString& folder)
{
    using kerval::testing::SfntBuilder;
    SfntBuilder builder;
    uint code = 0x20;
    for (int glyph = 0; glyph < manyGlyphs; ++glyph, ++code) {
        if (code == 0xD800)
            code = 0x20000;
        const int height = 300 + glyph % 400;
        builder.mapCharacter(code, builder.addGlyph(SfntBuilder::boxGlyph(50, 0, 550, height)));
    }
    const QString path = folder + QStringLiteral("/many.ttf");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(builder.build());
    return path;
}

double mebibytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / (1024.0 * 1024.0);
}

bool isComplete(const CharacterMapWidget* map)
{
    for (int row = qMax(0, map->indexAt(QPoint(0, 0)).row()); row < map->model()->rowCount(); ++row) {
        const QModelIndex index = map->model()->index(row, 0);
        if (map->visualRect(index).top() >= map->viewport()->height())
            break;
        if (index.data(KrvCharacterMapModel::KeptImageRole).value<QImage>().isNull())
            return false;
    }
    return true;
}

void measureMap(const QString& file, const char* name)
{
    KrvCharacterMapWidget widget;
    auto* map = widget.findChild<CharacterMapWidget*>();
    auto* ranges = widget.findChild<QComboBox*>(QStringLiteral("characterRangeComboBox"));
    widget.resize(1180, 600);
    widget.show();
    widget.grab(); // the interface's own fonts are loaded now
    malloc_trim(0);
    const double before = mebibytesInUse();
    const auto untilComplete = [&](const std::function<void()>& act) {
        return 1000 * kerval::bench::seconds([&] {
                   act();
                   map->viewport()->repaint();
                   while (!isComplete(map))
                       QCoreApplication::processEvents();
               });
    };
    // Twice: what the second opening takes says what is kept.
    const double first = untilComplete([&] { widget.setFont(makeFont(file)); });
    const double all = untilComplete([&] { ranges->setCurrentIndex(ranges->count() - 1); });
    const std::string what = "character map of " + std::string(name);
    std::printf("  %s: %d characters, first range %.0f ms\n", name, map->model()->rowCount(), first);
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        widget.setFont(StaticFontPtr());
        times.push_back(untilComplete([&] { widget.setFont(makeFont(file)); }));
    }
    kerval::bench::atMost(what + ": opening, nothing kept", std::max(first, all), 200, "ms");
    kerval::bench::atMost(what + ": opening again", median(times), 200, "ms");

    std::vector<double> blocks;
    QScrollBar* bar = map->verticalScrollBar();
    for (int step = 0; step <= scrollSteps; ++step) {
        QElapsedTimer frame;
        frame.start();
        bar->setValue(int(qint64(bar->maximum()) * step / scrollSteps));
        QCoreApplication::processEvents();
        double block = double(frame.nsecsElapsed()) / 1e6;
        while (!frame.hasExpired(16)) {
            QElapsedTimer turn;
            turn.start();
            QCoreApplication::processEvents();
            block = std::max(block, double(turn.nsecsElapsed()) / 1e6);
        }
        blocks.push_back(block);
    }
    std::sort(blocks.begin(), blocks.end());
    std::printf("  median %.1f ms, longest %.1f ms\n", blocks[blocks.size() / 2], blocks.back());
    kerval::bench::atMost(what + ": scrolling end to end, block of the main thread, 99th percentile",
                          blocks[blocks.size() * 99 / 100], 25, "ms");
    kerval::bench::atMost(what + ": memory after that", mebibytesInUse() - before, 40, "MiB");
}

void measureWaterfall(const QStringList& files, const char* name, const QString& text)
{
    KrvWaterfallWidget widget;
    widget.setPreviewText(text);
    widget.resize(1180, 600);
    widget.show();
    QCoreApplication::processEvents();
    double slowest = 0;
    for (const QString& file : files) {
        std::vector<double> times;
        for (int i = 0; i < repetitions; ++i) {
            const StaticFontPtr font = makeFont(file);
            times.push_back(1000 * kerval::bench::seconds([&] {
                                widget.setFont(font);
                                widget.grab();
                            }));
        }
        slowest = std::max(slowest, median(times));
    }
    kerval::bench::atMost(std::string("waterfall of ") + name + ", slowest font", slowest, 100, "ms");
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir home;
    for (const char* variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, QFile::encodeName(home.path()));
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    measureMap(generateFont(home.path()), "60,000 boxes");
    const QString chinese = QStringLiteral("/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc");
    if (QFile::exists(chinese))
        measureMap(chinese, "a font of 65,535 glyphs");
    const QDir latin(QStringLiteral("/usr/share/fonts/truetype/dejavu"));
    QStringList files;
    for (const QString& name : latin.entryList({QStringLiteral("*.ttf")}))
        files.append(latin.filePath(name));
    measureWaterfall(files, "Latin text", QStringLiteral("The quick brown fox jumps over the lazy dog"));
    if (QFile::exists(chinese))
        measureWaterfall({chinese}, "Chinese text", QStringLiteral("我能吞下玻璃而不伤身体"));
    return 0;
}
