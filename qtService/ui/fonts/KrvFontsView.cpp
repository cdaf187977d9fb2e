#include "qtService/ui/fonts/KrvFontsView.h"

#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/ui/fonts/FontActivityDelegate.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/FontColumnValues.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/fonts/KrvPreviewDelegate.h"
#include "qtService/ui/widgets/QProgressIndicator.h"

#include <QAction>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

constexpr int defaultPreviewSize = 24;
// Far beyond what the settings page offers.
constexpr int largestPreviewSize = 400;
// A search that ends sooner would only flash the indicator.
constexpr int waitIndicatorDelayMs = 150;
// However little the other columns leave.
constexpr int leastPreviewWidth = 240;

// Widths are for letters of this width and grow with them.
constexpr int defaultLetterWidth = 7;

struct DefaultColumn
{
    int column;
    int width;
};

constexpr DefaultColumn defaultColumns[] = {
    {fonts::ActivityImageColumn, 34}, {fonts::PreviewColumn, leastPreviewWidth},
    {fonts::FamilyNameColumn, 190},   {fonts::StyleNameColumn, 120},
    {fonts::FormatColumn, 90},        {fonts::FoundryColumn, 150},
};

using Settings = KrvUiSettings;

QList<int> storedList(Settings::SettingId id)
{
    return Settings::instance()->value(id).value<QList<int>>();
}

} // namespace

KrvFontsView::KrvFontsView(QWidget* parent)
    : QTreeView(parent)
    , m_previewDelegate(new KrvPreviewDelegate(this))
    , m_waitIndicator(new QProgressIndicator(this))
    , m_columnsMenu(new QMenu(tr("Columns"), this))
    , m_previewText(Settings::instance()->value(Settings::SidPreviewText).toString())
    , m_previewSize(Settings::instance()->value(Settings::SidPreviewSize, defaultPreviewSize).toInt())
{
    if (m_previewSize < 1 || m_previewSize > largestPreviewSize)
        m_previewSize = defaultPreviewSize;
    setItemDelegateForColumn(fonts::PreviewColumn, m_previewDelegate);
    setItemDelegateForColumn(fonts::ActivityImageColumn, new FontActivityDelegate(this));
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    header()->setStretchLastSection(false);
    m_waitIndicator->hide();
    m_waitTimer.setSingleShot(true);
    m_waitTimer.setInterval(waitIndicatorDelayMs);
    connect(&m_waitTimer, &QTimer::timeout, this, [this] {
        m_waitIndicator->move(viewport()->geometry().center() - m_waitIndicator->rect().center());
        m_waitIndicator->show();
        m_waitIndicator->startAnimation();
    });
    // While a column is dragged the header lets no other be stretched.
    m_fillTimer.setSingleShot(true);
    m_fillTimer.setInterval(30);
    connect(&m_fillTimer, &QTimer::timeout, this, [this] {
        if (QGuiApplication::mouseButtons() == Qt::NoButton)
            fillWidth();
        else
            m_fillTimer.start();
    });
    m_rowsInViewTimer.setSingleShot(true);
    m_rowsInViewTimer.setInterval(30);
    connect(&m_rowsInViewTimer, &QTimer::timeout, this, &KrvFontsView::reportRowsInView);
}

KrvFontsView::~KrvFontsView()
{
    Settings* settings = Settings::instance();
    settings->setValue(Settings::SidPreviewText, m_previewText);
    settings->setValue(Settings::SidPreviewSize, m_previewSize);
    if (m_model)
        saveColumns();
}

void KrvFontsView::setModel(KrvFontsViewModel* model)
{
    m_model = model;
    QTreeView::setModel(model);
    model->setPreviewText(m_previewText);
    model->setPreviewSize(m_previewSize);
    connect(model, &KrvFontsViewModel::rowsAboutToChange, this, &KrvFontsView::rememberPlace);
    connect(model, &QAbstractItemModel::modelReset, this, &KrvFontsView::onModelReset);
    connect(model, &KrvFontsViewModel::rowsChanged, this, &KrvFontsView::returnToPlace);
    connect(model, &QAbstractItemModel::layoutChanged, &m_rowsInViewTimer, qOverload<>(&QTimer::start));
    connect(model, &KrvFontsViewModel::filteringStatusChanged, this,
            [this](bool filtering) { filtering ? showWaitIndicator() : hideWaitIndicator(); });

    buildColumnsMenu();
    header()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header(), &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { m_columnsMenu->popup(header()->mapToGlobal(pos)); });
    restoreColumns();
    connect(header(), &QHeaderView::sortIndicatorChanged, this, &KrvFontsView::onSortIndicatorChanged);
    connect(header(), &QHeaderView::sectionResized, this, &KrvFontsView::onSectionResized);
    connect(header(), &QHeaderView::sectionResized, this, &KrvFontsView::followColumnWidth);
    connect(header(), &QHeaderView::sectionMoved, this, &KrvFontsView::onSectionMoved);
    connect(header(), &QHeaderView::sectionCountChanged, this, &KrvFontsView::updateColumnVisibilityActionsState);
}

void KrvFontsView::buildColumnsMenu()
{
    m_columnsMenu->clear();
    for (int column = 0; column < m_model->columnCount(); ++column) {
        QString title = fonts::columnTitle(column);
        if (column == fonts::ActivityImageColumn)
            title = tr("Activity", "Menu entry of the column that shows activity as an image");
        QAction* action = m_columnsMenu->addAction(title);
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, column] { toggleColumnVisibility(column); });
    }
}

void KrvFontsView::applyDefaultColumns()
{
    for (int column = 0; column < fonts::ColumnCount; ++column)
        header()->setSectionHidden(column, true);
    int position = 0;
    const int letterWidth = qMax(defaultLetterWidth, fontMetrics().horizontalAdvance(QLatin1Char('x')));
    for (const DefaultColumn& shown : defaultColumns) {
        header()->setSectionHidden(shown.column, false);
        header()->resizeSection(shown.column, shown.width * letterWidth / defaultLetterWidth);
        header()->moveSection(header()->visualIndex(shown.column), position++);
    }
    m_previewFills = true;
    header()->setSortIndicator(fonts::FamilyNameColumn, Qt::AscendingOrder);
}

void KrvFontsView::restoreColumns()
{
    Settings* settings = Settings::instance();
    applyDefaultColumns();
    const QList<int> widths = storedList(Settings::SidColumnWidths);
    const QList<int> orders = storedList(Settings::SidColumnOrders);
    // Visual positions, column by column; moving them into place from the left keeps what is already placed.
    if (orders.size() == fonts::ColumnCount) {
        for (int position = 0; position < orders.size(); ++position) {
            const int column = orders.indexOf(position);
            if (column >= 0)
                header()->moveSection(header()->visualIndex(column), position);
        }
    }
    for (int column = 0; column < widths.size() && column < fonts::ColumnCount; ++column) {
        if (widths.at(column) > 0)
            header()->resizeSection(column, widths.at(column));
    }
    m_previewFills = widths.value(fonts::PreviewColumn) <= 0;
    if (settings->contains(Settings::SidVisibleColumns)) {
        const QList<int> visible = storedList(Settings::SidVisibleColumns);
        // A list without columns has no header to bring one back.
        const bool any = std::any_of(visible.cbegin(), visible.cend(),
                                     [](int column) { return column >= 0 && column < fonts::ColumnCount; });
        for (int column = 0; column < fonts::ColumnCount && any; ++column)
            header()->setSectionHidden(column, !visible.contains(column));
    }
    if (settings->contains(Settings::SidSortColumnIndex)) {
        const int column = settings->value(Settings::SidSortColumnIndex).toInt();
        const int order = settings->value(Settings::SidSortOrder, int(Qt::AscendingOrder)).toInt();
        if (column >= 0 && column < fonts::ColumnCount)
            header()->setSortIndicator(column, order == Qt::DescendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
    onSortIndicatorChanged(header()->sortIndicatorSection(), header()->sortIndicatorOrder());
    updateColumnVisibilityActionsState();
}

void KrvFontsView::saveColumns() const
{
    QList<int> widths;
    QList<int> orders;
    for (int column = 0; column < fonts::ColumnCount; ++column) {
        // A hidden section reports no width; 0 keeps the default, and lets the preview fill the list.
        const bool isChosen = !header()->isSectionHidden(column) && (column != fonts::PreviewColumn || !m_previewFills);
        widths.append(isChosen ? header()->sectionSize(column) : 0);
        orders.append(header()->visualIndex(column));
    }
    Settings* settings = Settings::instance();
    settings->setValue(Settings::SidColumnWidths, QVariant::fromValue(widths));
    settings->setValue(Settings::SidColumnOrders, QVariant::fromValue(orders));
    settings->setValue(Settings::SidSortColumnIndex, header()->sortIndicatorSection());
    settings->setValue(Settings::SidSortOrder, int(header()->sortIndicatorOrder()));
}

void KrvFontsView::setColumnVisible(int column, bool visible)
{
    setColumnHidden(column, !visible);
    if (column == fonts::PreviewColumn)
        m_previewFills = true; // taken away and brought back it begins anew
    if (visible && header()->sectionSize(column) < header()->minimumSectionSize())
        header()->resizeSection(column, header()->defaultSectionSize());
    fillWidth();
    updateColumnVisibilityActionsState();
}

// Samples want all the width there is: the preview takes what the other columns leave, until the user gives it a width.
// Then the last column does, so that rows end where the list ends.
void KrvFontsView::fillWidth()
{
    if (!m_model)
        return;
    const bool fills = m_previewFills && !isColumnHidden(fonts::PreviewColumn);
    const QScopedValueRollback<bool> filling(m_isFillingWidth, true);
    header()->setStretchLastSection(!fills);
    if (!fills)
        return;
    const int others = header()->length() - header()->sectionSize(fonts::PreviewColumn);
    header()->resizeSection(fonts::PreviewColumn, qMax(leastPreviewWidth, viewport()->width() - others));
}

void KrvFontsView::followColumnWidth(int column, int oldWidth, int newWidth)
{
    // Hidden and shown again a column has a width of nothing in between.
    if (m_isFillingWidth || oldWidth == 0 || newWidth == 0)
        return;
    if (column == fonts::PreviewColumn)
        m_previewFills = false;
    m_fillTimer.start();
}

void KrvFontsView::setColumnVisible(int column)
{
    setColumnVisible(column, true);
}

void KrvFontsView::toggleColumnVisibility(int column)
{
    setColumnVisible(column, isColumnHidden(column));
    QList<int> visible;
    for (int i = 0; i < fonts::ColumnCount; ++i) {
        if (!isColumnHidden(i))
            visible.append(i);
    }
    Settings::instance()->setValue(Settings::SidVisibleColumns, QVariant::fromValue(visible));
}

void KrvFontsView::updateColumnVisibilityActionsState()
{
    const QList<QAction*> actions = m_columnsMenu->actions();
    int visible = 0;
    for (int column = 0; column < actions.size(); ++column) {
        actions.at(column)->setChecked(!isColumnHidden(column));
        visible += isColumnHidden(column) ? 0 : 1;
    }
    // The last column cannot be taken away: a list without columns has no header to bring one back.
    for (QAction* action : actions)
        action->setEnabled(visible > 1 || !action->isChecked());
}

void KrvFontsView::onSortIndicatorChanged(int columnIndex, Qt::SortOrder sortOrder)
{
    header()->setSortIndicatorShown(true);
    if (m_model)
        m_model->sort(columnIndex, sortOrder);
    if (currentIndex().isValid())
        scrollTo(currentIndex());
}

void KrvFontsView::sortByGroup()
{
    header()->setSortIndicatorShown(false);
    m_model->sort(-1);
}

void KrvFontsView::sortByChosenColumn()
{
    onSortIndicatorChanged(header()->sortIndicatorSection(), header()->sortIndicatorOrder());
}

int KrvFontsView::nearestFont(int row, const QSet<int>& staying) const
{
    const auto fontAt = [this](int r) { return m_model->font(m_model->index(r, 0))->id(); };
    for (int r = row; r < m_model->rowCount(); ++r) {
        if (staying.contains(fontAt(r)))
            return fontAt(r);
    }
    for (int r = row - 1; r >= 0; --r) {
        if (staying.contains(fontAt(r)))
            return fontAt(r);
    }
    return 0;
}

void KrvFontsView::rememberPlace(const QSet<int>& fontIds, bool sameGroup)
{
    m_place = Place();
    m_place.selected = selectedFontIds();
    m_place.current = currentFontId();
    const QModelIndex current = inShownColumn(currentIndex());
    if (current.isValid() && sameGroup)
        m_place.successor = nearestFont(current.row(), fontIds);
    // The eye rests on the current font, else on the upper edge, unless that is where the list begins.
    QModelIndex anchor = current;
    if (!anchor.isValid() || !viewport()->rect().intersects(visualRect(anchor)))
        anchor = verticalScrollBar()->value() > 0 && sameGroup ? indexAt(QPoint(0, 0)) : QModelIndex();
    if (!anchor.isValid())
        return;
    const int font = m_model->font(anchor)->id();
    if (sameGroup || fontIds.contains(font))
        m_place.anchor = nearestFont(anchor.row(), fontIds);
    m_place.anchorTop = visualRect(anchor).top();
}

void KrvFontsView::returnToPlace()
{
    const QModelIndex successor = m_model->indexOfFont(m_place.successor);
    if (successor.isValid() && !m_model->indexOfFont(m_place.current).isValid()) {
        const QList<int> selected = selectedFontIds();
        if (selected.isEmpty())
            selectRow(successor);
        else
            selectionModel()->setCurrentIndex(inShownColumn(m_model->indexOfFont(selected.first())),
                                              QItemSelectionModel::NoUpdate);
    }
    executeDelayedItemsLayout();
    QScrollBar* bar = verticalScrollBar();
    const QModelIndex anchor = inShownColumn(m_model->indexOfFont(m_place.anchor));
    bar->setValue(anchor.isValid() ? bar->value() + visualRect(anchor).top() - m_place.anchorTop : 0);
    m_rowsInViewTimer.start();
}

void KrvFontsView::onModelReset()
{
    std::vector<int> rows;
    rows.reserve(size_t(m_place.selected.size()));
    for (const int id : qAsConst(m_place.selected)) {
        const QModelIndex index = m_model->indexOfFont(id);
        if (index.isValid())
            rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    // As few ranges as there are: a selection model's work grows with the square of their number.
    QItemSelection selection;
    for (size_t first = 0, last = 0; first < rows.size(); first = last + 1) {
        for (last = first; last + 1 < rows.size() && rows[last + 1] == rows[last] + 1;)
            ++last;
        selection.select(m_model->index(rows[first], 0), m_model->index(rows[last], 0));
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const QModelIndex current = m_model->indexOfFont(m_place.current);
    if (current.isValid())
        selectionModel()->setCurrentIndex(inShownColumn(current), QItemSelectionModel::NoUpdate);
}

void KrvFontsView::onSectionResized()
{
    m_rowsInViewTimer.start();
}

void KrvFontsView::onSectionMoved()
{
    updateColumnVisibilityActionsState();
}

void KrvFontsView::setPreviewText(QString text)
{
    m_previewText = text;
    if (m_model)
        m_model->setPreviewText(text);
}

void KrvFontsView::setPreviewSize(int size)
{
    m_previewSize = size;
    if (!m_model)
        return;
    const QModelIndex top = indexAt(QPoint(0, 0));
    m_model->setPreviewSize(size);
    if (top.isValid())
        scrollTo(top, PositionAtTop);
}

void KrvFontsView::showWaitIndicator()
{
    if (!m_waitIndicator->isVisible() && !m_waitTimer.isActive())
        m_waitTimer.start();
}

void KrvFontsView::hideWaitIndicator()
{
    m_waitTimer.stop();
    m_waitIndicator->stopAnimation();
    m_waitIndicator->hide();
}

void KrvFontsView::resetState(ResetStateMode mode)
{
    if (mode == ResetColumns) {
        applyDefaultColumns();
        fillWidth();
        updateColumnVisibilityActionsState();
        return;
    }
    clearSelection();
    selectionModel()->clearCurrentIndex();
    scrollToTop();
}

// The base class selects from first to last row in the first column alone, and nothing where that column is hidden.
void KrvFontsView::selectAll()
{
    if (!m_model || m_model->rowCount() == 0)
        return;
    const QItemSelection all(m_model->index(0, 0), m_model->index(m_model->rowCount() - 1, 0));
    selectionModel()->select(all, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QList<int> KrvFontsView::selectedRows() const
{
    QList<int> rows;
    if (!selectionModel())
        return rows;
    // Asking the selection model for its rows would look through all ranges for each of them.
    const QItemSelection selection = selectionModel()->selection();
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    // The selection model lists ranges in the order they were made; users expect the order they see.
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

int KrvFontsView::selectedCount() const
{
    // Rows are selected whole, and the ranges of a selection share none.
    const QItemSelection selection = selectionModel()->selection();
    return std::accumulate(selection.cbegin(), selection.cend(), 0,
                           [](int sum, const QItemSelectionRange& range) { return sum + range.height(); });
}

QList<int> KrvFontsView::selectedFontIds() const
{
    QList<int> ids;
    const QList<int> rows = selectedRows();
    for (const int row : rows) {
        if (const StaticFontPtr font = m_model->font(m_model->index(row, 0)))
            ids.append(font->id());
    }
    return ids;
}

void KrvFontsView::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    const int column = horizontalScrollBar()->value();
    QTreeView::scrollTo(inShownColumn(index), hint);
    horizontalScrollBar()->setValue(column);
}

// An index of a hidden column has no place in the view; its row has.
QModelIndex KrvFontsView::inShownColumn(const QModelIndex& index) const
{
    const int shown = header()->logicalIndexAt(0);
    return shown >= 0 && isColumnHidden(index.column()) ? index.siblingAtColumn(shown) : index;
}

int KrvFontsView::currentFontId() const
{
    const StaticFontPtr font = m_model ? m_model->font(currentIndex()) : StaticFontPtr();
    return font ? font->id() : 0;
}

void KrvFontsView::selectFont(int fontId)
{
    const QModelIndex index = m_model->indexOfFont(fontId);
    if (!index.isValid())
        return;
    selectRow(index);
    scrollTo(index);
}

// The view's own function would add to the selection while Shift is held, and the selection model's leaves the view
// without the row that Shift extends from.
void KrvFontsView::selectRow(const QModelIndex& index)
{
    const SelectionMode mode = selectionMode();
    setSelectionMode(NoSelection);
    setCurrentIndex(inShownColumn(index));
    setSelectionMode(mode);
    selectionModel()->select(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void KrvFontsView::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
    fillWidth();
    m_rowsInViewTimer.start();
}

void KrvFontsView::scrollContentsBy(int dx, int dy)
{
    QTreeView::scrollContentsBy(dx, dy);
    if (dy != 0)
        m_rowsInViewTimer.start();
}

void KrvFontsView::reportRowsInView()
{
    if (!m_model)
        return;
    const QModelIndex first = indexAt(QPoint(0, 0));
    if (!first.isValid())
        return;
    const QModelIndex last = indexAt(QPoint(0, viewport()->height() - 1));
    m_model->setRowsInView(first.row(), last.isValid() ? last.row() : m_model->rowCount() - 1);
}
