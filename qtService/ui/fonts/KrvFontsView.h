#pragma once

#include <QElapsedTimer>
#include <QSet>
#include <QTimer>
#include <QTreeView>

class KrvFontsViewModel;
class KrvPreviewDelegate;
class QMenu;
class QProgressIndicator;

// The font list. It keeps columns, widths, order, sorting and the preview settings between runs, and selection, current
// font and scroll position over a reload. Main thread.
class KrvFontsView : public QTreeView
{
    Q_OBJECT

public:
    enum ResetStateMode
    {
        ResetSelection, // nothing selected, no current font, scrolled to the top
        ResetColumns    // the columns a new user sees
    };
    Q_ENUM(ResetStateMode)

    explicit KrvFontsView(QWidget* parent = nullptr);
    ~KrvFontsView() override;

    // "Columns": one checkable action for each column.
    QMenu* columnsMenu() const { return m_columnsMenu; }
    QString previewText() const { return m_previewText; }
    int previewSize() const { return m_previewSize; }

    QList<int> selectedFontIds() const;
    int selectedCount() const;
    // Rows only: the columns stay where the user has them.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    // 0: none
    int currentFontId() const;
    void selectFont(int fontId);
    // Typed letters go to the first font, from the current one on, whose name begins with them.
    void keyboardSearch(const QString& search) override;
    // The group's own order instead of a column's, until a column is chosen or sortByChosenColumn() called.
    void sortByGroup();
    void sortByChosenColumn();

public slots:
    void setPreviewText(QString text);
    void setPreviewSize(int size);
    void setModel(KrvFontsViewModel* model);
    void setColumnVisible(int column, bool visible);
    void setColumnVisible(int column);
    void showWaitIndicator();
    void hideWaitIndicator();
    void resetState(KrvFontsView::ResetStateMode mode);
    void selectAll() override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void startDrag(Qt::DropActions supportedActions) override;

private slots:
    void toggleColumnVisibility(int column);
    void updateColumnVisibilityActionsState();
    void onSortIndicatorChanged(int columnIndex, Qt::SortOrder sortOrder);
    void onModelReset();
    void onSectionResized();
    void onSectionMoved();

private:
    using QTreeView::setModel;

    void buildColumnsMenu();
    void restoreColumns();
    void applyDefaultColumns();
    void saveColumns() const;
    void fillWidth();
    void followColumnWidth(int column, int oldWidth, int newWidth);
    void rememberPlace(const QSet<int>& fontIds, bool sameGroup);
    void returnToPlace();
    void reportRowsInView();
    QModelIndex inShownColumn(const QModelIndex& index) const;
    // The font of a row, or the nearest one that stays.
    int nearestFont(int row, const QSet<int>& staying) const;
    QList<int> selectedRows() const;
    void selectRow(const QModelIndex& index);

    // Where the user was before the rows changed, by font rather than by row; 0: none.
    struct Place
    {
        QList<int> selected;
        int current = 0;
        int successor = 0; // takes the current font's place when that is gone
        int anchor = 0;    // keeps its height in the view
        int anchorTop = 0;
    };

    KrvFontsViewModel* m_model = nullptr;
    KrvPreviewDelegate* m_previewDelegate;
    QProgressIndicator* m_waitIndicator;
    QMenu* m_columnsMenu;
    QString m_previewText;
    int m_previewSize;
    bool m_previewFills = true;
    bool m_isFillingWidth = false;
    Place m_place;
    QTimer m_waitTimer;
    QTimer m_fillTimer;
    QTimer m_rowsInViewTimer;
    QString m_typed;
    QElapsedTimer m_typedAt;
};
