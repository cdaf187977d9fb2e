#include "qtService/ui/fonts/FontDrag.h"

#include <QDataStream>
#include <QMimeData>
#include <QUrl>

namespace fonts {

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
    for (const StaticFontPtr& font : fonts) {
        stream << font->id();
        const QUrl url = QUrl::fromLocalFile(font->fileName());
        if (!files.contains(url))
            files.append(url);
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

} // namespace fonts
