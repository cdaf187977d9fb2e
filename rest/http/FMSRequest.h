#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>

namespace fms {

// A request of the legacy server, from either of its two forms. Names and values run in parallel; a name may repeat.
struct FMSRequest
{
    QString type;
    QString order;
    QStringList fieldNames;
    QStringList fieldValues;

    // "name=value&name=value", percent-encoded; a value without its sign is empty.
    static FMSRequest fromFields(const QByteArray& text);
};

} // namespace fms

Q_DECLARE_METATYPE(fms::FMSRequest)
