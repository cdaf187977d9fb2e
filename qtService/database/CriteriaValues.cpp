#include "qtService/database/CriteriaValues.h"

#include <QSequentialIterable>
#include <QSet>
#include <QStringList>

#include <cmath>

namespace criteria {

namespace {

template <class Container>
QVariantList toVariants(const QVariant& value)
{
    QVariantList list;
    const auto container = value.value<Container>();
    list.reserve(container.size());
    for (const auto& element : container)
        list.append(QVariant::fromValue(element));
    return list;
}

bool isWholeNumberType(int type)
{
    switch (type) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

} // namespace

QVariantList elements(const QVariant& value)
{
    // The usual containers by hand: through the generic way each element costs a virtual call and a conversion.
    const int type = value.userType();
    if (type == qMetaTypeId<QList<int>>())
        return toVariants<QList<int>>(value);
    if (type == qMetaTypeId<QSet<int>>())
        return toVariants<QSet<int>>(value);
    if (type == QMetaType::QStringList)
        return toVariants<QStringList>(value);
    if (type == qMetaTypeId<QList<QString>>())
        return toVariants<QList<QString>>(value);
    if (type == qMetaTypeId<QSet<QString>>())
        return toVariants<QSet<QString>>(value);
    if (type == QMetaType::QVariantList || (type >= QMetaType::User && value.canConvert<QVariantList>()))
        return value.toList();
    return {};
}

std::optional<qint64> exactNumber(const QVariant& value, bool asFlag)
{
    const int type = value.userType();
    if (isWholeNumberType(type))
        return value.toLongLong();
    if (type == QMetaType::Double || type == QMetaType::Float) {
        const double number = value.toDouble();
        if (std::nearbyint(number) == number && std::fabs(number) < 1e15)
            return qint64(number);
        return std::nullopt;
    }
    if (type == QMetaType::QString || type == QMetaType::QByteArray) {
        if (asFlag)
            return qint64(value.toBool());
        bool isNumber = false;
        const int number = value.toInt(&isNumber);
        if (isNumber)
            return number;
    }
    return std::nullopt;
}

qint64 integer(const QVariant& value)
{
    if (value.userType() == QMetaType::QDateTime)
        return value.toDateTime().isValid() ? value.toDateTime().toSecsSinceEpoch() : 0;
    return value.toLongLong();
}

bool isNumberCollection(const QVariant& value)
{
    const int type = value.userType();
    return type == qMetaTypeId<QSet<int>>() || type == qMetaTypeId<QList<int>>();
}

fms::SubsetNumbers subsetNumbers(const QVariant& value)
{
    fms::SubsetNumbers numbers;
    const QVariantList list = elements(value);
    for (const QVariant& element : list)
        numbers.insert(element.toInt());
    if (list.isEmpty() && value.userType() == QMetaType::QString)
        numbers.setText(value.toString());
    else if (list.isEmpty() && isWholeNumberType(value.userType()))
        numbers.insert(value.toInt());
    return numbers;
}

} // namespace criteria
