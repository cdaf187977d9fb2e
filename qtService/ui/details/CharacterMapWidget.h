#pragma once

#include <QAbstractItemView>
#include <QPersistentModelIndex>
#include <QTimer>

class CharacterMapItemDelegate;
class GlyphPreviewWidget;

// A wrapping grid of equal cells. It paints, and so has drawn, only the cells in sight, and gives drawing a bounded
// share of each turn of the event loop: where a font is slow, cells appear bit by bit and the window goes on answering.
//
// Keys move as in a grid of icons: arrows, Home and End to the ends of the row, with Ctrl to the ends of the map, page
// keys; Shift extends the selection. Ctrl+C copies the selected characters.
class CharacterMapWidget : public QAbstractItemView
{
    Q_OBJECT

public:
    explicit CharacterMapWidget(QWidget* parent = nullptr);

    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    void setModel(QAbstractItemModel* model) override;
    void reset() override;

    int columns() const;

public slots:
    void copyCharacters();
    void copyCodes();

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags flags) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;

protected slots:
    void updateGeometries() override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void applyFont();
    void makeFirstCurrent();
    int count() const;
    int gridRows() const;
    // Rows of the model that lie in, or cut, this part of the viewport.
    QPair<int, int> rowsIn(const QRect& rect) const;
    void showPreview(const QModelIndex& index, const QPoint& mouse);
    void hidePreview();
    QModelIndexList selectedInOrder() const;

    CharacterMapItemDelegate* m_delegate;
    GlyphPreviewWidget* m_preview;
    QPersistentModelIndex m_previewed;
    QTimer m_drawRest;
    QSize m_cell{1, 1};
};
