#pragma once

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
    // Rows only: the columns stay where the user has them.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    // 0: none
    int currentFontId() const;
    void selectFont(int fontId);

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
    void rememberPlace();
    void reportRowsInView();

    // Where the user was before a reset, by font rather than by row.
    struct Place
    {
        QList<int> selected;
        int current = 0;
        int top = 0;
    };

    KrvFontsViewModel* m_model = nullptr;
    KrvPreviewDelegate* m_previewDelegate;
    QProgressIndicator* m_waitIndicator;
    QMenu* m_columnsMenu;
    QString m_previewText;
    int m_previewSize;
    Place m_place;
    QTimer m_waitTimer;
    QTimer m_rowsInViewTimer;
};
