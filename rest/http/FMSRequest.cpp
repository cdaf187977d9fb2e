#include "rest/http/FMSRequest.h"

#include <QByteArray>

namespace fms {

FMSRequest FMSRequest::fromFields(const QByteArray& text)
{
    FMSRequest request;
    const QList<QByteArray> items = text.split('&');
    for (const QByteArray& item : items) {
        if (item.isEmpty())
            continue;
        const int sign = item.indexOf('=');
        const QByteArray value = sign < 0 ? QByteArray() : item.mid(sign + 1);
        request.fieldNames.append(QString::fromUtf8(QByteArray::fromPercentEncoding(item.left(sign))));
        request.fieldValues.append(QString::fromUtf8(QByteArray::fromPercentEncoding(value)));
    }
    request.type = request.fieldValues.value(request.fieldNames.indexOf(QStringLiteral("type")));
    request.order = request.fieldValues.value(request.fieldNames.indexOf(QStringLiteral("order")));
    return request;
}

} // namespace fms
