#include "qtService/ui/details/CharacterMapWidget.h"
#include "qtService/ui/details/GlyphPreviewWidget.h"
#include "qtService/ui/details/KrvCharacterMapModel.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest>

using kerval::testing::SfntBuilder;

namespace {

constexpr int manyGlyphs = 60000;
constexpr int arrows = 22; // indexes in the table of blocks
constexpr int mathematicalOperators = 23;

} // namespace

// The grid of characters and the model under it.
class CharacterMapTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_model = std::make_unique<KrvCharacterMapModel>();
        m_map = std::make_unique<CharacterMapWidget>();
        m_map->setModel(m_model.get());
        m_map->resize(640, 400);
        m_map->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_map.get()));
    }

    void cleanup()
    {
        m_map.reset();
        m_model.reset();
    }

    void onlyCellsInSightAreDrawn()
    {
        QAbstractItemModelTester tester(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_model->setFont(bigFont(), 0, {});
        m_model->setRange(CharacterMapFont::AllCharacters);
        QCOMPARE(m_model->rowCount(), manyGlyphs);
        QTRY_VERIFY(allInSightAreDrawn());
        const int inSight = drawnCells();
        QVERIFY2(inSight < 400, qPrintable(QString::number(inSight)));

        m_map->verticalScrollBar()->setValue(m_map->verticalScrollBar()->maximum());
        QTRY_VERIFY(allInSightAreDrawn());
        QVERIFY(drawnCells() <= 2 * inSight + 2 * m_map->columns());
        const QModelIndex last = m_model->index(manyGlyphs - 1);
        QVERIFY(m_map->viewport()->rect().contains(m_map->visualRect(last)));
        QVERIFY(m_model->character(last) > 0xFFFF);
        QCOMPARE(last.data().toString(), KrvCharacterMapModel::codeText(m_model->character(last)));
    }

    void rangesAndSizesThatWereShownAreKept()
    {
        m_model->setFont(dejaVu(), 0, {});
        m_model->setRange(arrows);
        QTRY_VERIFY(allInSightAreDrawn());
        const int drawn = drawnCells();
        m_model->setRange(mathematicalOperators);
        m_model->setNormalImageSize(50);
        QTRY_VERIFY(allInSightAreDrawn());
        m_model->setNormalImageSize(34);
        m_model->setRange(arrows);
        QCOMPARE(drawnCells(), drawn);
        // Of the same file in other sizes, nothing is mixed up.
        QCOMPARE(m_model->index(0).data(Qt::DecorationRole).value<QImage>().size(), QSize(34, 34));
        m_model->setDevicePixelRatio(1.5);
        const QImage sharp = m_model->index(0).data(Qt::DecorationRole).value<QImage>();
        QCOMPARE(sharp.size(), QSize(51, 51));
        QCOMPARE(sharp.devicePixelRatio(), 1.5);
    }

    // Letters, low commas, high quotes and wide ligatures: nothing is cut at the edge of its cell.
    void glyphsLieInsideTheirCells()
    {
        m_model->setFont(dejaVu(), 0, {});
        m_model->setRange(0);
        QStringList cut;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            const QModelIndex index = m_model->index(row);
            const QImage large = index.data(KrvCharacterMapModel::LargeImageRole).value<QImage>();
            QCOMPARE(large.size(), QSize(120, 120));
            for (int i = 0; i < large.width(); ++i) {
                if (qAlpha(large.pixel(i, 0)) > 128 || qAlpha(large.pixel(i, 119)) > 128 ||
                    qAlpha(large.pixel(0, i)) > 128 || qAlpha(large.pixel(119, i)) > 128) {
                    cut.append(index.data().toString());
                    break;
                }
            }
        }
        QVERIFY2(cut.size() < 3, qPrintable(cut.join(QLatin1Char(' '))));

        // A glyph of six times the cell becomes small enough to be seen whole.
        SfntBuilder builder;
        builder.mapCharacter('A', builder.addGlyph(SfntBuilder::boxGlyph(0, 0, 3000, 700)));
        m_model->setFont(write("wide.ttf", builder), 0, {});
        m_model->setRange(0);
        const QImage wide = m_model->index(0).data(Qt::DecorationRole).value<QImage>();
        QVERIFY(qAlpha(wide.pixel(2, 17)) > 128 && qAlpha(wide.pixel(31, 17)) > 128);
        QVERIFY(qAlpha(wide.pixel(17, 4)) == 0 && qAlpha(wide.pixel(17, 29)) == 0);
    }

    void charactersAboveTheFirstPlaneAreReachedAndCopied()
    {
        SfntBuilder builder;
        for (const uint code : {0x41u, 0x42u, 0x1F600u, 0x1F601u, 0x10FFFDu})
            builder.mapCharacter(code, builder.addGlyph(SfntBuilder::boxGlyph(50, 0, 550, 700)));
        m_model->setFont(write("faces.ttf", builder), 0, {});
        // Folded to 16 bits they would be in "Private Use Area", where the font has nothing.
        QCOMPARE(m_model->ranges(), (QList<int>{0, CharacterMapFont::AllCharacters}));
        m_model->setRange(CharacterMapFont::AllCharacters);
        QCOMPARE(m_model->rowCount(), 5);
        QCOMPARE(m_model->index(0).data().toString(), QStringLiteral("0x0041"));
        QCOMPARE(m_model->index(2).data().toString(), QStringLiteral("0x1F600"));
        m_map->setFocus();
        QTest::keyClick(m_map.get(), Qt::Key_Right);
        QTest::keyClick(m_map.get(), Qt::Key_Right, Qt::ShiftModifier);
        QTest::keyClick(m_map.get(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString::fromUtf8("B\xF0\x9F\x98\x80"));
        m_map->copyCodes();
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("0x0042 0x1F600"));
    }

    void keysMoveThroughTheGrid()
    {
        m_model->setFont(bigFont(), 0, {});
        m_model->setRange(CharacterMapFont::AllCharacters);
        m_map->setFocus();
        const int columns = m_map->columns();
        const auto at = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            QTest::keyClick(m_map.get(), key, modifiers);
            return m_map->currentIndex().row();
        };
        QCOMPARE(m_map->currentIndex().row(), 0);
        QCOMPARE(at(Qt::Key_Up), 0);
        QCOMPARE(at(Qt::Key_Left), 0);
        QCOMPARE(at(Qt::Key_Down), columns);
        QCOMPARE(at(Qt::Key_End), 2 * columns - 1);
        QCOMPARE(at(Qt::Key_Right), 2 * columns);
        QCOMPARE(at(Qt::Key_Home), 2 * columns);
        const int page = at(Qt::Key_PageDown) - 2 * columns;
        QVERIFY(page > 0 && page % columns == 0);
        QVERIFY(m_map->viewport()->rect().contains(m_map->visualRect(m_map->currentIndex())));
        QCOMPARE(at(Qt::Key_PageUp), 2 * columns);
        QCOMPARE(at(Qt::Key_End, Qt::ControlModifier), manyGlyphs - 1);
        QCOMPARE(at(Qt::Key_PageDown), manyGlyphs - 1);
        QCOMPARE(at(Qt::Key_Home, Qt::ControlModifier), 0);
        QCOMPARE(m_map->verticalScrollBar()->value(), 0);
    }

    void theLargeCharacterFollowsTheMouseInsideTheMap()
    {
        m_model->setFont(dejaVu(), 0, {});
        m_model->setRange(0);
        auto* preview = m_map->findChild<GlyphPreviewWidget*>();
        QVERIFY(preview->isHidden());
        const auto moveTo = [this](const QPoint& point) {
            QMouseEvent move(QEvent::MouseMove, point, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(m_map->viewport(), &move);
        };
        moveTo(QPoint(20, 20));
        QVERIFY(preview->isVisible());
        QCOMPARE(preview->geometry(), QRect(36, 36, 120, 120));
        const QPoint corner = m_map->visualRect(m_model->index(m_map->columns() * 3 - 1)).center();
        moveTo(corner);
        QVERIFY(m_map->viewport()->rect().contains(preview->geometry()));
        QVERIFY(preview->geometry().right() < corner.x());
        moveTo(QPoint(m_map->viewport()->width() - 1, 20)); // beside the last column
        QVERIFY(m_map->indexAt(QPoint(m_map->viewport()->width() - 1, 20)).isValid() || preview->isHidden());
        moveTo(QPoint(20, 20));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(m_map->viewport(), &leave);
        QVERIFY(preview->isHidden());
    }

    void aScreenReaderFindsTheCharacters()
    {
        m_model->setFont(dejaVu(), 0, {});
        m_model->setRange(0);
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(m_map.get());
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->childCount(), m_model->rowCount());
        QAccessibleInterface* cell = list->child(33);
        QCOMPARE(cell->role(), QAccessible::ListItem);
        QCOMPARE(cell->text(QAccessible::Name), QStringLiteral("A 0x0041"));
        QCOMPARE(cell->parent(), list);
        QCOMPARE(list->indexOfChild(cell), 33);
        const QPoint middle = cell->rect().center();
        QCOMPARE(list->childAt(middle.x(), middle.y()), cell);
        m_map->setFocus();
        m_map->setCurrentIndex(m_model->index(33));
        QVERIFY(cell->state().focused && cell->state().selected && !cell->state().offscreen);
        m_model->setFont(QString(), 0, {});
        QVERIFY(!cell->isValid());
        QCOMPARE(list->childCount(), 0);
    }

    void brokenFilesGiveAnEmptyMap()
    {
        for (const char* name : {"endless-composites.ttf", "not-a-font.ttf", "cut-in-tables.ttf", "empty.ttf",
                                 "cmap-of-all-codes.ttf", "zeroed-tables.ttf"}) {
            m_model->setFont(QStringLiteral(KERVAL_SOURCE_DIR "/tests/data/fonts/") + QLatin1String(name), 0, {});
            const QList<int> ranges = m_model->ranges();
            m_model->setRange(CharacterMapFont::AllCharacters);
            QCOMPARE(ranges.isEmpty(), m_model->rowCount() == 0);
            m_map->viewport()->repaint();
        }
    }

private:
    QString write(const char* name, const SfntBuilder& builder) const
    {
        const QString path = m_folder.filePath(QLatin1String(name));
        kerval::testing::writeFile(path, builder.build());
        return path;
    }
    static QString dejaVu() { return QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"); }

    QString bigFont() const
    {
        SfntBuilder builder;
        const QByteArray box = SfntBuilder::boxGlyph(50, 0, 550, 700);
        uint code = 0x20;
        for (int glyph = 0; glyph < manyGlyphs; ++glyph, ++code) {
            if (code == 0xD800)
                code = 0x20000; // past the surrogates
            builder.mapCharacter(code, builder.addGlyph(box));
        }
        return write("big.ttf", builder);
    }

    bool isDrawn(const QModelIndex& index) const
    {
        return !index.data(KrvCharacterMapModel::KeptImageRole).value<QImage>().isNull();
    }
    int drawnCells() const
    {
        int drawn = 0;
        for (int row = 0; row < m_model->rowCount(); ++row)
            drawn += isDrawn(m_model->index(row)) ? 1 : 0;
        return drawn;
    }
    bool allInSightAreDrawn() const
    {
        for (int row = m_map->indexAt(QPoint(0, 0)).row(); row < m_model->rowCount(); ++row) {
            const QModelIndex index = m_model->index(row);
            if (m_map->visualRect(index).top() >= m_map->viewport()->height())
                break;
            if (!isDrawn(index))
                return false;
        }
        return true;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<KrvCharacterMapModel> m_model;
    std::unique_ptr<CharacterMapWidget> m_map;
};

KERVAL_TEST(CharacterMapTest)
#include "CharacterMapTest.moc"
