#include "qtService/app/core/PathCodec.h"

namespace krv {

QByteArray encodePath(const QString& path)
{
    return QByteArrayLiteral("0x") + path.toUtf8().toHex();
}

QString decodePath(const QByteArray& text)
{
    if (!text.startsWith("0x"))
        return QString::fromUtf8(text);
    return QString::fromUtf8(QByteArray::fromHex(text.mid(2)));
}

} // namespace krv
