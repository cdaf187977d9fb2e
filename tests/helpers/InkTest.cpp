#include "tests/support/testregistry.h"

#include "helpers/shape/InkBits.h"
#include "helpers/shape/InkGrid.h"
#include "helpers/shape/PixelBlock.h"
#include "helpers/shape/WhiteRegions.h"

#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <numeric>

using namespace krv;

namespace {

InkGrid randomGrid(int columns, int rows)
{
    QRandomGenerator random(quint32(columns * 1000 + rows));
    InkGrid grid(columns, rows);
    for (int y = 0; y < rows; ++y)
        std::generate_n(grid.row(y), columns, [&] { return std::uint8_t(random.bounded(4) * 85); });
    return grid;
}

// Sizes of the white areas that a flood from the margin does not reach.
std::vector<int> floodedHoles(const InkGrid& grid, int darkness)
{
    const int width = grid.columns() + 2;
    const int height = grid.rows() + 2;
    std::vector<char> open(std::size_t(width * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            open[std::size_t(y * width + x)] = grid.row(y - 1)[x - 1] < darkness;
    std::vector<int> sizes;
    for (int start = 0; start < width * height; ++start) {
        if (!open[std::size_t(start)])
            continue;
        int size = 0;
        std::vector<int> waiting = {start};
        open[std::size_t(start)] = false;
        while (!waiting.empty()) {
            const int here = waiting.back();
            waiting.pop_back();
            ++size;
            for (const int next :
                 {here - width, here + width, here % width ? here - 1 : -1, (here + 1) % width ? here + 1 : -1}) {
                if (next >= 0 && next < width * height && open[std::size_t(next)]) {
                    open[std::size_t(next)] = false;
                    waiting.push_back(next);
                }
            }
        }
        if (start > 0)
            sizes.push_back(size);
    }
    std::sort(sizes.begin(), sizes.end());
    return sizes;
}

} // namespace

// What is worked out many pixels at a time against the same pixel by pixel, at widths around the sizes of the blocks.
class InkTest : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithSinglePixels_data();
    void agreesWithSinglePixels();
};

void InkTest::agreesWithSinglePixels_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("rows");
    for (const int columns : {1, 7, 8, 17, 63, 64, 65, 128, 255, 256})
        for (const int rows : {1, 8, 30, 256})
            QTest::addRow("%d x %d", columns, rows) << columns << rows;
}

void InkTest::agreesWithSinglePixels()
{
    QFETCH(int, columns);
    QFETCH(int, rows);
    const InkGrid grid = randomGrid(columns, rows);
    const InkGrid turned = grid.transposed();
    QCOMPARE(turned.columns(), rows);
    QCOMPARE(turned.rows(), columns);
    WhiteRegions white(columns);
    for (int y = 0; y < rows; ++y) {
        InkBits some;
        InkBits dark;
        InkBits::set(grid.row(y), columns, 85, some, 86, dark);
        white.addRow(dark);
        for (int x = 0; x < columns; ++x) {
            QCOMPARE(turned.row(x)[y], grid.row(y)[x]);
            QCOMPARE(some.nextSet(x) == x, grid.row(y)[x] >= 85);
            QCOMPARE(dark.nextClear(x) == x, grid.row(y)[x] < 86);
            const auto differing = PixelBlock(grid.row(y) + x).differing(PixelBlock(grid.row(y) + x - 1));
            QCOMPARE((differing & 1) != 0, grid.row(y)[x] != grid.row(y)[x - 1]);
            const int count = std::min(columns - x, int(PixelBlock::kCount));
            QCOMPARE(PixelBlock(grid.row(y) + x).sumOfFirst(1 + y % count),
                     std::accumulate(grid.row(y) + x, grid.row(y) + x + 1 + y % count, 0));
        }
        QVERIFY(some.nextSet(columns) >= columns);
        QCOMPARE(some.nextClear(columns), columns);
    }
    std::vector<int> enclosed = white.enclosed();
    std::sort(enclosed.begin(), enclosed.end());
    QCOMPARE(enclosed, floodedHoles(grid, 86));
    QVERIFY(std::all_of(turned.row(columns) - 1, turned.row(columns) + rows + 1, [](int pixel) { return pixel == 0; }));
}

KERVAL_TEST(InkTest)

#include "InkTest.moc"
