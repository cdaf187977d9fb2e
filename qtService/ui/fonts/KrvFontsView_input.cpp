#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/FontDrag.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"

#include <QApplication>
#include <QDrag>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

// What the list does with keys, the mouse held still and rows pulled out of it.

namespace {

// Licences are pages long.
constexpr int longestToolTip = 600;
// Beside the pointer rather than under it: the group below must stay readable.
const QPoint dragHotSpot(-14, -8);

} // namespace

void KrvFontsView::keyPressEvent(QKeyEvent* event)
{
    // Left and right would collapse and expand in a tree; in this list they scroll.
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        QScrollBar* bar = horizontalScrollBar();
        bar->triggerAction(event->key() == Qt::Key_Left ? QAbstractSlider::SliderSingleStepSub
                                                        : QAbstractSlider::SliderSingleStepAdd);
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void KrvFontsView::keyboardSearch(const QString& search)
{
    if (!m_typedAt.isValid() || m_typedAt.hasExpired(QApplication::keyboardInputInterval()))
        m_typed.clear();
    m_typedAt.start();
    // Blanks inside a name count, the one that selects a row does not.
    if (m_typed.isEmpty() && search.trimmed().isEmpty())
        return;
    m_typed += search;
    const int rows = m_model ? m_model->rowCount() : 0;
    if (rows == 0)
        return;
    // One letter again and again walks through its fonts; a growing word may stay where it is.
    const bool walking = m_typed.count(m_typed.at(0), Qt::CaseInsensitive) == m_typed.size();
    const QString wanted = walking ? m_typed.left(1) : m_typed;
    const int first = currentIndex().isValid() ? currentIndex().row() + (walking ? 1 : 0) : 0;
    for (int i = 0; i < rows; ++i) {
        const int row = (first + i) % rows;
        const QString name = m_model->index(row, fonts::FamilyNameColumn).data().toString();
        if (!name.startsWith(wanted, Qt::CaseInsensitive))
            continue;
        const int column = currentIndex().isValid() ? currentIndex().column() : int(fonts::FamilyNameColumn);
        const QModelIndex index = m_model->index(row, column);
        selectRow(index);
        scrollTo(index);
        return;
    }
}

bool KrvFontsView::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || !m_model)
        return QTreeView::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex index = indexAt(help->pos());
    QString text = index.data(Qt::ToolTipRole).toString();
    // A text that its column cuts is shown whole.
    if (text.isEmpty() && index.isValid() && index.column() >= fonts::FamilyNameColumn &&
        sizeHintForIndex(index).width() > visualRect(index).width())
        text = index.data().toString();
    if (text.size() > longestToolTip)
        text = text.left(longestToolTip) + QChar(0x2026);
    // What a font says of itself is no markup; in paragraph tags it is wrapped.
    const QString shown = text.isEmpty() ? text : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
    QToolTip::showText(help->globalPos(), shown, viewport(), visualRect(index));
    return true;
}

void KrvFontsView::startDrag(Qt::DropActions supportedActions)
{
    QModelIndexList indexes;
    const QList<int> rows = selectedRows();
    for (const int row : rows)
        indexes.append(m_model->index(row, 0));
    if (indexes.isEmpty())
        return;
    const StaticFontPtr first = m_model->font(indexes.first());
    const QString label = indexes.size() == 1 ? QStringLiteral("%1 %2").arg(first->familyName(), first->styleName())
                                              : tr("%n fonts", "Never one", indexes.size());
    auto* drag = new QDrag(this);
    drag->setMimeData(m_model->mimeData(indexes));
    drag->setPixmap(fonts::dragPixmap(label, this));
    drag->setHotSpot(dragHotSpot);
    drag->exec(supportedActions, Qt::CopyAction);
}
