#include "qtService/database/FontSerializedTransformationStrategy.h"

#include "qtService/database/StaticFontData.h"

FontSerializedTransformationStrategy::FontSerializedTransformationStrategy()
{
    qRegisterMetaType<QList<int>>("QList<int>");
    qRegisterMetaType<QSet<int>>("QSet<int>");
}

QString FontSerializedTransformationStrategy::transformStatement(const QString& statement) const
{
    return statement;
}

QString FontSerializedTransformationStrategy::restoreName(const QString& name) const
{
    return name;
}

QVariant FontSerializedTransformationStrategy::toDatabase(FontDatabase::FontTableColumn column,
                                                          const QVariant& value) const
{
    switch (column) {
    case FontDatabase::supported_subsets: {
        fms::SubsetNumbers numbers;
        numbers.set(value.value<QSet<int>>());
        return numbers.text();
    }
    case FontDatabase::bold:
    case FontDatabase::italic:
    case FontDatabase::deleted:
    case FontDatabase::mono:
    case FontDatabase::smallcaps:
    case FontDatabase::ligature:
    case FontDatabase::is_purchased:
        return value.toInt();
    case FontDatabase::active: // what is active is asked of the system at every start
        return 0;
    case FontDatabase::added:
    case FontDatabase::used:
    case FontDatabase::downloaded:
    case FontDatabase::activated:
    case FontDatabase::deactivated:
    case FontDatabase::last_seen: {
        const quint32 seconds = fms::toUnixSeconds(value.toDateTime());
        return seconds ? QVariant(seconds) : QVariant();
    }
    case FontDatabase::style_field:
    case FontDatabase::serif_style:
        return QString::number(value.toInt());
    default:
        return value;
    }
}

QVariant FontSerializedTransformationStrategy::fromDatabase(FontDatabase::FontTableColumn column,
                                                            const QVariant& value) const
{
    switch (column) {
    case FontDatabase::supported_subsets: {
        fms::SubsetNumbers numbers;
        numbers.setText(value.toString());
        return QVariant::fromValue(numbers.numbers());
    }
    case FontDatabase::bold:
    case FontDatabase::italic:
    case FontDatabase::deleted:
    case FontDatabase::mono:
    case FontDatabase::smallcaps:
    case FontDatabase::ligature:
    case FontDatabase::is_purchased:
        return value.toBool();
    case FontDatabase::added:
    case FontDatabase::used:
    case FontDatabase::downloaded:
    case FontDatabase::activated:
    case FontDatabase::deactivated:
    case FontDatabase::last_seen:
        return fms::fromUnixSeconds(value.toInt());
    case FontDatabase::style_field:
    case FontDatabase::serif_style:
        return int(uchar(value.toInt()));
    default:
        return value;
    }
}
