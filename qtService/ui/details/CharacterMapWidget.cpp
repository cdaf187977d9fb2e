#include "qtService/ui/details/CharacterMapWidget.h"

#include "qtService/ui/details/CharacterMapAccessible.h"
#include "qtService/ui/details/CharacterMapItemDelegate.h"
#include "qtService/ui/details/GlyphPreviewWidget.h"
#include "qtService/ui/details/KrvCharacterMapModel.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int drawingMsPerTurn = 8;
constexpr int previewDistance = 16;

} // namespace

CharacterMapWidget::CharacterMapWidget(QWidget* parent)
    : QAbstractItemView(parent)
    , m_delegate(new CharacterMapItemDelegate(this))
    , m_preview(new GlyphPreviewWidget(viewport()))
{
    CharacterMapAccessible::install();
    setItemDelegate(m_delegate);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // A map that loses the bar gets wider, may fit without it, gets it back ... it keeps it.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFrameShape(NoFrame);
    applyFont();
    m_drawRest.setSingleShot(true);
    m_drawRest.setInterval(0);
    connect(&m_drawRest, &QTimer::timeout, viewport(), qOverload<>(&QWidget::update));

    auto* copy = new QAction(tr("Copy Character"), this);
    copy->setObjectName(QStringLiteral("actionCopyCharacter"));
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &CharacterMapWidget::copyCharacters);
    auto* copyCode = new QAction(tr("Copy Code"), this);
    copyCode->setObjectName(QStringLiteral("actionCopyCode"));
    connect(copyCode, &QAction::triggered, this, &CharacterMapWidget::copyCodes);
    addActions({copy, copyCode});
}

void CharacterMapWidget::applyFont()
{
    QFont codes(QStringLiteral("Courier"));
    codes.setStyleHint(QFont::Monospace, QFont::PreferOutline);
    codes.setPointSizeF(qMax(6.0, QGuiApplication::font().pointSizeF() * 0.8));
    setFont(codes);
}

void CharacterMapWidget::setModel(QAbstractItemModel* model)
{
    if (this->model())
        disconnect(this->model(), &QAbstractItemModel::modelReset, this, &CharacterMapWidget::makeFirstCurrent);
    QAbstractItemView::setModel(model);
    // After the selection has followed the reset and forgotten its own current cell.
    if (model)
        connect(model, &QAbstractItemModel::modelReset, this, &CharacterMapWidget::makeFirstCurrent);
    updateGeometries();
}

void CharacterMapWidget::reset()
{
    hidePreview();
    QAbstractItemView::reset();
    updateGeometries();
    verticalScrollBar()->setValue(0);
}

void CharacterMapWidget::makeFirstCurrent()
{
    // The keyboard has a cell to start from; nothing is selected yet.
    if (count() > 0)
        selectionModel()->setCurrentIndex(model()->index(0, 0), QItemSelectionModel::NoUpdate);
}

void CharacterMapWidget::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QAbstractItemView::currentChanged(current, previous);
    if (QAccessible::isActive() && current.isValid() && hasFocus()) {
        QAccessibleEvent event(this, QAccessible::Focus);
        event.setChild(current.row());
        QAccessible::updateAccessibility(&event);
    }
}

int CharacterMapWidget::count() const
{
    return model() ? model()->rowCount(rootIndex()) : 0;
}

int CharacterMapWidget::columns() const
{
    return qMax(1, viewport()->width() / m_cell.width());
}

int CharacterMapWidget::gridRows() const
{
    return (count() + columns() - 1) / columns();
}

void CharacterMapWidget::updateGeometries()
{
    const int last = count() - 1;
    if (last >= 0) {
        QStyleOptionViewItem option = viewOptions();
        // Codes grow along the map, so the last cell is the widest.
        m_cell = m_delegate->sizeHint(option, model()->index(last, 0));
    }
    QScrollBar* bar = verticalScrollBar();
    bar->setSingleStep(m_cell.height());
    bar->setPageStep(viewport()->height());
    bar->setRange(0, int(qMax<qint64>(0, qint64(gridRows()) * m_cell.height() - viewport()->height())));
    QAbstractItemView::updateGeometries();
    viewport()->update();
}

void CharacterMapWidget::resizeEvent(QResizeEvent* event)
{
    // What is at the upper left stays there.
    const QModelIndex first = indexAt(QPoint(0, 0));
    QAbstractItemView::resizeEvent(event);
    updateGeometries();
    if (first.isValid() && event->oldSize().width() != event->size().width())
        verticalScrollBar()->setValue(first.row() / columns() * m_cell.height());
}

void CharacterMapWidget::changeEvent(QEvent* event)
{
    QAbstractItemView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometries();
}

QRect CharacterMapWidget::visualRect(const QModelIndex& index) const
{
    if (!index.isValid())
        return QRect();
    const int row = index.row() / columns();
    const int column = index.row() % columns();
    const QRect cell(QPoint(column * m_cell.width(), row * m_cell.height() - verticalOffset()), m_cell);
    return QStyle::visualRect(layoutDirection(), viewport()->rect(), cell);
}

QModelIndex CharacterMapWidget::indexAt(const QPoint& point) const
{
    const QPoint at =
        layoutDirection() == Qt::RightToLeft ? QPoint(viewport()->width() - 1 - point.x(), point.y()) : point;
    const int column = at.x() / m_cell.width();
    if (at.x() < 0 || at.y() + verticalOffset() < 0 || column >= columns())
        return QModelIndex();
    const int row = (at.y() + verticalOffset()) / m_cell.height() * columns() + column;
    return row < count() ? model()->index(row, 0) : QModelIndex();
}

void CharacterMapWidget::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    if (!index.isValid())
        return;
    const int top = index.row() / columns() * m_cell.height();
    const int bottom = top + m_cell.height();
    const int height = viewport()->height();
    int value = verticalScrollBar()->value();
    if (hint == PositionAtTop || (hint == EnsureVisible && top < value))
        value = top;
    else if (hint == PositionAtBottom || (hint == EnsureVisible && bottom > value + height))
        value = qMin(top, bottom - height);
    else if (hint == PositionAtCenter)
        value = (top + bottom - height) / 2;
    verticalScrollBar()->setValue(value);
}

int CharacterMapWidget::horizontalOffset() const
{
    return 0;
}

int CharacterMapWidget::verticalOffset() const
{
    return verticalScrollBar()->value();
}

bool CharacterMapWidget::isIndexHidden(const QModelIndex&) const
{
    return false;
}

QPair<int, int> CharacterMapWidget::rowsIn(const QRect& rect) const
{
    const int first = qMax(0, (rect.top() + verticalOffset()) / m_cell.height()) * columns();
    const int last = ((rect.bottom() + verticalOffset()) / m_cell.height() + 1) * columns() - 1;
    return {first, qMin(last, count() - 1)};
}

void CharacterMapWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    QElapsedTimer drawing;
    drawing.start();
    const QStyleOptionViewItem base = viewOptions();
    const auto [first, last] = rowsIn(event->rect());
    for (int row = first; row <= last; ++row) {
        const QModelIndex index = model()->index(row, 0);
        QStyleOptionViewItem option = base;
        option.rect = visualRect(index);
        if (!event->region().intersects(option.rect))
            continue;
        if (selectionModel()->isSelected(index))
            option.state |= QStyle::State_Selected;
        if (index == currentIndex() && hasFocus())
            option.state |= QStyle::State_HasFocus;
        if (drawing.hasExpired(drawingMsPerTurn)) {
            m_delegate->paintKept(&painter, option, index);
            if (index.data(KrvCharacterMapModel::KeptImageRole).value<QImage>().isNull() && !m_drawRest.isActive())
                m_drawRest.start();
        } else {
            m_delegate->paint(&painter, option, index);
        }
    }
}

bool CharacterMapWidget::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave || event->type() == QEvent::Wheel)
        hidePreview();
    return QAbstractItemView::viewportEvent(event);
}

void CharacterMapWidget::mouseMoveEvent(QMouseEvent* event)
{
    QAbstractItemView::mouseMoveEvent(event);
    showPreview(indexAt(event->pos()), event->pos());
}

void CharacterMapWidget::showPreview(const QModelIndex& index, const QPoint& mouse)
{
    if (!index.isValid()) {
        hidePreview();
        return;
    }
    if (m_previewed != index) {
        m_previewed = index;
        const QImage image = index.data(KrvCharacterMapModel::LargeImageRole).value<QImage>();
        if (image.isNull()) {
            m_preview->hide();
            return;
        }
        m_preview->setImage(image);
    } else if (m_preview->isHidden()) {
        return; // there is none of this cell
    }
    // Right and below, on the other side where there is no room, and inside the map in any case.
    QPoint place = mouse + QPoint(previewDistance, previewDistance);
    if (place.x() + m_preview->width() > viewport()->width())
        place.setX(mouse.x() - previewDistance - m_preview->width());
    if (place.y() + m_preview->height() > viewport()->height())
        place.setY(mouse.y() - previewDistance - m_preview->height());
    place.setX(qBound(0, place.x(), qMax(0, viewport()->width() - m_preview->width())));
    place.setY(qBound(0, place.y(), qMax(0, viewport()->height() - m_preview->height())));
    m_preview->move(place);
    m_preview->show();
}

void CharacterMapWidget::hidePreview()
{
    m_previewed = QPersistentModelIndex();
    m_preview->hide();
}

QModelIndex CharacterMapWidget::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    hidePreview();
    const int last = count() - 1;
    if (last < 0)
        return QModelIndex();
    const QModelIndex current = currentIndex();
    if (!current.isValid())
        return model()->index(0, 0);
    const int width = columns();
    const int page = qMax(1, viewport()->height() / m_cell.height());
    const int row = current.row();
    int to = row;
    switch (action) {
    case MoveLeft:
        to += isRightToLeft() ? 1 : -1;
        break;
    case MoveRight:
        to += isRightToLeft() ? -1 : 1;
        break;
    case MovePrevious:
        --to;
        break;
    case MoveNext:
        ++to;
        break;
    case MoveUp:
        to -= row >= width ? width : 0;
        break;
    case MoveDown:
        // From above a gap in the last row to that row's end.
        to = row / width < last / width ? qMin(row + width, last) : row;
        break;
    case MovePageUp:
        to = qMax(row % width, row - page * width);
        break;
    case MovePageDown:
        to = row + page * width;
        if (to > last)
            to = row / width < last / width ? qMin(last - last % width + row % width, last) : row;
        break;
    case MoveHome:
        to = modifiers & Qt::ControlModifier ? 0 : row - row % width;
        break;
    case MoveEnd:
        to = modifiers & Qt::ControlModifier ? last : row - row % width + width - 1;
        break;
    }
    return model()->index(qBound(0, to, last), 0);
}

void CharacterMapWidget::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags flags)
{
    if (count() == 0)
        return;
    // In reading order from the one corner to the other, as text is selected: Shift and arrows extend the same way.
    const auto nearest = [this](const QPoint& point) {
        const int x = isRightToLeft() ? viewport()->width() - 1 - point.x() : point.x();
        const int column = qBound(0, x / m_cell.width(), columns() - 1);
        const int line = qBound(0, (point.y() + verticalOffset()) / m_cell.height(), gridRows() - 1);
        return qMin(line * columns() + column, count() - 1);
    };
    const auto [first, last] = std::minmax({nearest(rect.topLeft()), nearest(rect.bottomRight())});
    selectionModel()->select(QItemSelection(model()->index(first, 0), model()->index(last, 0)), flags);
}

QRegion CharacterMapWidget::visualRegionForSelection(const QItemSelection& selection) const
{
    QRegion region;
    if (count() == 0)
        return region;
    const auto [first, last] = rowsIn(viewport()->rect());
    for (const QItemSelectionRange& range : selection) {
        for (int row = qMax(first, range.top()); row <= qMin(last, range.bottom()); ++row)
            region += visualRect(model()->index(row, 0));
    }
    return region;
}

QModelIndexList CharacterMapWidget::selectedInOrder() const
{
    QModelIndexList indexes = selectionModel() ? selectionModel()->selectedIndexes() : QModelIndexList();
    if (indexes.isEmpty() && currentIndex().isValid())
        indexes.append(currentIndex());
    std::sort(indexes.begin(), indexes.end());
    return indexes;
}

void CharacterMapWidget::copyCharacters()
{
    QString text;
    const QModelIndexList indexes = selectedInOrder();
    for (const QModelIndex& index : indexes)
        text += index.data(KrvCharacterMapModel::CharacterRole).toString();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void CharacterMapWidget::copyCodes()
{
    QStringList codes;
    const QModelIndexList indexes = selectedInOrder();
    for (const QModelIndex& index : indexes)
        codes.append(index.data(KrvCharacterMapModel::CharacterCodeRole).toString());
    if (!codes.isEmpty())
        QGuiApplication::clipboard()->setText(codes.join(QLatin1Char(' ')));
}

void CharacterMapWidget::contextMenuEvent(QContextMenuEvent* event)
{
    hidePreview();
    if (!currentIndex().isValid() && selectedInOrder().isEmpty())
        return;
    QMenu menu(this);
    menu.addActions(actions());
    menu.exec(event->reason() == QContextMenuEvent::Keyboard
                  ? viewport()->mapToGlobal(visualRect(currentIndex()).center())
                  : event->globalPos());
}
