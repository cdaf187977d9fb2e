#include "qtService/ui/sidebar/SideBarDelegate.h"

#include "qtService/ui/sidebar/SideBarModel.h"
#include "qtService/ui/window/Palette.h"

#include <QFontMetrics>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int textPixelSize = 11;
constexpr int leftMargin = 10;
constexpr int gap = 8;
constexpr int badgeHeight = 13;
constexpr int badgeMargin = 5;
constexpr qreal badgeRadius = 6.5;

// The frame of the selected row from top to bottom: edge, light line, bottom edge, and the gradient's two ends.
struct SelectionColors
{
    QColor topEdge;
    QColor topLine;
    QColor bottomEdge;
    QColor gradientStart;
    QColor gradientEnd;
    QColor fill;
};

const SelectionColors unfocused = {{176, 188, 211}, {196, 205, 223}, {147, 161, 189},
                                   {187, 197, 218}, {158, 172, 198}, {241, 241, 241}};
// The same row on a dark ground, where the light one would be the brightest spot of the window.
const SelectionColors unfocusedDark = {{84, 97, 120}, {92, 106, 130}, {62, 73, 92},
                                       {84, 97, 120}, {70, 82, 103},  {42, 45, 50}};
const SelectionColors focused = {{93, 161, 218},  {124, 185, 229}, {54, 125, 202},
                                 {107, 174, 225}, {66, 139, 209},  {230, 233, 239}};

QFont rowFont(const QStyleOptionViewItem& option, bool bold)
{
    QFont font = option.font;
    font.setPixelSize(textPixelSize);
    font.setBold(bold);
    return font;
}

// The row is laid out from left to right; this is where a part of it comes in the direction of the interface.
QRect mirrored(const QStyleOptionViewItem& option, const QRect& rect)
{
    return QStyle::visualRect(option.direction, option.rect, rect);
}

void paintSelection(QPainter* painter, const QRect& rect, bool hasFocus, bool isDark)
{
    const SelectionColors& colors = hasFocus ? focused : isDark ? unfocusedDark : unfocused;
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, colors.gradientStart);
    gradient.setColorAt(1, colors.gradientEnd);
    painter->setBrush(QColor(182, 187, 193));
    painter->fillRect(rect, colors.fill);
    painter->fillRect(rect, gradient);
    painter->fillRect(QRect(rect.left(), rect.top(), rect.width(), 1), colors.topEdge);
    painter->fillRect(QRect(rect.left(), rect.top() + 1, rect.width(), 1), colors.topLine);
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), colors.bottomEdge);
}

void paintDropTarget(QPainter* painter, const QRect& rect)
{
    QColor fill = focused.gradientEnd;
    fill.setAlpha(50);
    painter->setPen(QPen(focused.gradientEnd, 2));
    painter->setBrush(fill);
    painter->drawRoundedRect(QRectF(rect).adjusted(3, 1, -3, -1), 5, 5);
}

} // namespace

SideBarDelegate::SideBarDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{
}

QSize SideBarDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    // Text grows with the user's font settings where these ask for more than the design's eleven pixels.
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (!index.parent().isValid())
        return QSize(size.width(), index.row() == 0 ? 24 : 32);
    return QSize(2, 24);
}

void SideBarDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (index.parent().isValid())
        paintGroup(painter, option, index);
    else
        paintHeader(painter, option, index);
    painter->restore();
}

void SideBarDelegate::paintHeader(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    painter->setFont(rowFont(option, true));
    painter->setPen(ui::isDark(option.palette) ? QColor(150, 162, 175) : QColor(112, 126, 140));
    const Qt::Alignment vertical = index.row() == 0 ? Qt::AlignVCenter : Qt::AlignBottom;
    const QRect nameRect = mirrored(option, option.rect.adjusted(leftMargin, 0, 0, -3));
    painter->drawText(nameRect, int(Qt::AlignLeft | vertical), index.data(SideBarModel::NameRole).toString());
}

void SideBarDelegate::paintGroup(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QRect rect = option.rect;
    const bool selected = option.state & QStyle::State_Selected;
    const bool isDark = ui::isDark(option.palette);
    const bool hasFocus = option.state & QStyle::State_Active && option.state & QStyle::State_HasFocus;
    if (selected) {
        QStyledItemDelegate::paint(painter, option, index);
        painter->setRenderHint(QPainter::Antialiasing, false);
        paintSelection(painter, rect, hasFocus, isDark);
        painter->setRenderHint(QPainter::Antialiasing);
    }

    if (index == m_dropTarget)
        paintDropTarget(painter, rect);

    int left = rect.left() + leftMargin;
    const QImage icon = index.data(selected ? SideBarModel::SelectedIconRole : SideBarModel::IconRole).value<QImage>();
    if (!icon.isNull()) {
        const QSize size = icon.size() / icon.devicePixelRatio();
        const QRect place(QPoint(left, rect.top() + (rect.height() - size.height()) / 2), size);
        painter->drawImage(mirrored(option, place), icon);
        left += size.width() + gap;
    }

    int right = rect.right() - badgeMargin;
    const int count = index.data(SideBarModel::FontCountRole).toInt();
    if (count > 0) {
        const QString text = QString::number(count);
        QFont font(QStringLiteral("Arial"));
        font.setPixelSize(textPixelSize);
        font.setBold(true);
        const int width = qMax(13, QFontMetrics(font).horizontalAdvance(text)) + 8;
        const QRect badge(rect.right() - badgeMargin - width, rect.top() + (rect.height() - badgeHeight) / 2, width,
                          badgeHeight);
        painter->setPen(Qt::NoPen);
        painter->setBrush(selected ? QColor(Qt::white) : QColor(151, 165, 179));
        painter->drawRoundedRect(mirrored(option, badge), badgeRadius, badgeRadius);
        painter->setFont(font);
        const QColor unfocusedText = isDark ? QColor(70, 82, 103) : QColor(170, 182, 207);
        painter->setPen(!selected ? QColor(Qt::white) : hasFocus ? QColor(81, 157, 220) : unfocusedText);
        painter->drawText(mirrored(option, badge), Qt::AlignCenter, text);
        right = badge.left() - badgeMargin;
    }

    painter->setFont(rowFont(option, false));
    const QColor plain = isDark ? option.palette.color(QPalette::Text) : QColor(65, 65, 65);
    painter->setPen(selected ? QColor(Qt::white) : plain);
    const QRect nameRect(left, rect.top(), right - left, rect.height());
    const QString name = painter->fontMetrics().elidedText(index.data(SideBarModel::NameRole).toString(),
                                                           Qt::ElideRight, nameRect.width());
    painter->drawText(mirrored(option, nameRect), Qt::AlignLeft | Qt::AlignVCenter, name);
}
