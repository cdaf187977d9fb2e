#pragma once

#include "qtService/database/StaticFont.h"

// Sorts records by the values of a property: numbers and moments by size, texts by their characters as QString compares
// them. Each value is read once, so records that change meanwhile do no harm; equal ones keep their order.
class FontOrder
{
public:
    explicit FontOrder(const QString& propertyName, Qt::SortOrder order = Qt::AscendingOrder);

    // False when the record has no such property, or it has no order; nothing is sorted then.
    bool isValid() const;
    void sort(QList<StaticFontPtr>& fonts) const;

private:
    const QString m_propertyName;
    const Qt::SortOrder m_order;
};
