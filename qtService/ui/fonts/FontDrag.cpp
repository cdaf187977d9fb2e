#include "qtService/ui/fonts/FontDrag.h"

#include <QDataStream>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>
#include <QSet>
#include <QUrl>
#include <QWidget>

namespace fonts {

namespace {

constexpr int widestDragLabel = 260;
constexpr int dragLabelMargin = 8;

} // namespace

QString fontIdListMimeType()
{
    return QStringLiteral("application/x-qt-windows-mime;value=\"FontIdList\"");
}

QString hiddenFontIdListMimeType()
{
    return QStringLiteral("application/x-qt-windows-mime;value=\"HiddenFontIdList\"");
}

QMimeData* createMimeData(const QList<StaticFontPtr>& fonts, bool hidden)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << int(fonts.size());
    QList<QUrl> files;
    QSet<QString> seen;
    for (const StaticFontPtr& font : fonts) {
        stream << font->id();
        const QString file = font->fileName();
        if (seen.contains(file))
            continue;
        seen.insert(file);
        files.append(QUrl::fromLocalFile(file));
    }
    auto* data = new QMimeData;
    data->setData(hidden ? hiddenFontIdListMimeType() : fontIdListMimeType(), bytes);
    if (!files.isEmpty())
        data->setUrls(files);
    return data;
}

bool hasFontIds(const QMimeData* data)
{
    return data && (data->hasFormat(fontIdListMimeType()) || data->hasFormat(hiddenFontIdListMimeType()));
}

QList<int> fontIdsOf(const QMimeData* data)
{
    if (!data)
        return {};
    QByteArray bytes = data->data(fontIdListMimeType());
    if (bytes.isEmpty())
        bytes = data->data(hiddenFontIdListMimeType());
    QDataStream stream(bytes);
    int count = 0;
    stream >> count;
    QList<int> ids;
    for (int i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        int id = 0;
        stream >> id;
        if (stream.status() == QDataStream::Ok)
            ids.append(id);
    }
    return ids;
}

QPixmap dragPixmap(const QString& label, const QWidget* widget)
{
    const QFontMetrics metrics = widget->fontMetrics();
    const QString text = metrics.elidedText(label, Qt::ElideRight, widestDragLabel);
    const QSize size(metrics.horizontalAdvance(text) + 2 * dragLabelMargin, metrics.height() + dragLabelMargin);
    QPixmap pixmap(size * widget->devicePixelRatioF());
    pixmap.setDevicePixelRatio(widget->devicePixelRatioF());
    pixmap.fill(Qt::transparent);
    const QRect area(QPoint(), size);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(widget->palette().color(QPalette::Active, QPalette::Highlight));
    painter.drawRoundedRect(area, size.height() / 2.0, size.height() / 2.0);
    painter.setFont(widget->font());
    painter.setPen(widget->palette().color(QPalette::Active, QPalette::HighlightedText));
    painter.drawText(area, Qt::AlignCenter, text);
    return pixmap;
}

} // namespace fonts
