#include "qtService/ui/details/CharacterMapItemDelegate.h"

#include "qtService/ui/details/DetailsStyle.h"
#include "qtService/ui/details/KrvCharacterMapModel.h"
#include "qtService/ui/window/Palette.h"

#include <QPainter>

#include <cmath>

namespace {

// Between frame and contents.
constexpr int padding = 3;

} // namespace

CharacterMapItemDelegate::CharacterMapItemDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{
}

void CharacterMapItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    paintCell(painter, option, index, index.data(KrvCharacterMapModel::NormalImageRole).value<QImage>());
}

void CharacterMapItemDelegate::paintKept(QPainter* painter, const QStyleOptionViewItem& option,
                                         const QModelIndex& index) const
{
    paintCell(painter, option, index, index.data(KrvCharacterMapModel::KeptImageRole).value<QImage>());
}

void CharacterMapItemDelegate::paintCell(QPainter* painter, const QStyleOptionViewItem& option,
                                         const QModelIndex& index, const QImage& image) const
{
    const bool selected = option.state & QStyle::State_Selected;
    const bool focused = option.state & QStyle::State_HasFocus;
    const QPalette::ColorGroup group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QPalette& palette = option.palette;
    const QColor text = selected              ? palette.color(group, QPalette::HighlightedText)
                        : ui::isDark(palette) ? palette.color(group, QPalette::Text)
                                              : QColor(Qt::black);
    painter->save();
    painter->setClipRect(option.rect);
    painter->fillRect(option.rect, palette.color(group, selected ? QPalette::Highlight : QPalette::Base));

    // Cells share their frames: each draws its right and lower edge, and its neighbours draw the others.
    const QColor grid = ui::gridColor(palette);
    painter->fillRect(QRect(option.rect.right(), option.rect.top(), 1, option.rect.height()), grid);
    painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), grid);
    if (focused) {
        painter->setPen(QPen(text, 2));
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    }

    painter->setPen(text);
    painter->setFont(option.font);
    const int textHeight = option.fontMetrics.height();
    painter->drawText(QRect(option.rect.left(), option.rect.top() + padding, option.rect.width(), textHeight),
                      Qt::AlignCenter, index.data(KrvCharacterMapModel::CharacterCodeRole).toString());
    if (!image.isNull()) {
        const double ratio = image.devicePixelRatio();
        const double side = image.width() / ratio;
        // On whole pixels of the screen, or the picture would blur.
        const double left = std::round((option.rect.left() + (option.rect.width() - side) / 2) * ratio) / ratio;
        const double top = option.rect.top() + padding + textHeight;
        painter->drawImage(QPointF(left, std::round(top * ratio) / ratio), ui::tinted(image, text));
    }
    painter->restore();
}

QSize CharacterMapItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    // As wide as the longest of the codes up to this one: "0x####", or a "#" or two more above U+FFFF.
    const int digits = index.data(KrvCharacterMapModel::CharacterCodeRole).toString().length();
    const QString widest = QStringLiteral("0x") + QString(qMax(4, digits - 2), QLatin1Char('#'));
    const int image = index.data(KrvCharacterMapModel::NormalImageSizeRole).toInt();
    return QSize(qMax(option.fontMetrics.horizontalAdvance(widest), image) + 2 * padding + 1,
                 option.fontMetrics.height() + image + 2 * padding + 1);
}
