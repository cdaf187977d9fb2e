#include "qtService/ui/fonts/KrvPreviewDelegate.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QVector>

namespace {

constexpr int margin = 5; // at both sides
constexpr int fadeWidth = 28;

bool isGrey(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) > 0 && (qRed(pixel) != qGreen(pixel) || qGreen(pixel) != qBlue(pixel)))
                return false;
        }
    }
    return true;
}

// Previews are coverage in an indexed image whose palette is black; drawn in the text's colour they suit any palette
// and the selection. So do the messages written in black; others have a colour that means something.
QImage tinted(QImage image, const QColor& color)
{
    if (image.format() != QImage::Format_Indexed8) {
        if (!isGrey(image))
            return image;
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
        return image;
    }
    QVector<QRgb> palette = image.colorTable();
    for (QRgb& entry : palette)
        entry = qRgba(color.red(), color.green(), color.blue(), qAlpha(entry));
    image.setColorTable(palette);
    return image;
}

// A sample longer than its column fades where it ends rather than break off within a letter.
QImage faded(const QImage& image, int width)
{
    const double ratio = image.devicePixelRatio();
    QImage shown =
        image.copy(0, 0, int(width * ratio), image.height()).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    shown.setDevicePixelRatio(ratio);
    QLinearGradient fade(width - qMin(fadeWidth, width), 0, width, 0);
    fade.setColorAt(0, Qt::black);
    fade.setColorAt(1, Qt::transparent);
    QPainter painter(&shown);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRectF(QPointF(), QSizeF(shown.size()) / ratio), fade);
    return shown;
}

} // namespace

KrvPreviewDelegate::KrvPreviewDelegate(QObject* parent)
    : QStyledItemDelegate(parent)
{
}

void KrvPreviewDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    // The display value is the image itself, which is drawn below; the style must not draw it as a decoration or text.
    option->text.clear();
    option->icon = QIcon();
    option->features &=
        ~QStyleOptionViewItem::ViewItemFeatures(QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::HasDecoration);
}

void KrvPreviewDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const QImage image = index.data(Qt::DisplayRole).value<QImage>();
    const int room = option.rect.width() - 2 * margin;
    if (image.isNull() || room <= 0)
        return;
    const bool selected = option.state & QStyle::State_Selected;
    const QPalette::ColorGroup group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor color = option.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    const QSizeF size = QSizeF(image.size()) / image.devicePixelRatio();
    QImage sample = tinted(image, color);
    if (size.width() > room)
        sample = faded(sample, room);
    painter->save();
    painter->setClipRect(option.rect.adjusted(0, 0, -margin, 0));
    painter->drawImage(
        QPointF(option.rect.left() + margin, option.rect.top() + qRound((option.rect.height() - size.height()) / 2)),
        sample);
    painter->restore();
}

QSize KrvPreviewDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const
{
    return index.data(Qt::SizeHintRole).toSize();
}
