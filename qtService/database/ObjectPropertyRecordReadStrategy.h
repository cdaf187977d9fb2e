#pragma once

#include "qtService/database/PropertyReader.h"
#include "qtService/database/RecordReadStrategyInterface.h"

#include <QHash>
#include <QSharedPointer>
#include <QVector>

// Rows over objects: each column is a property, looked up once. A null object, a column without a property name and a
// name that is no property give an invalid value.
template <class Column, class T>
class ObjectPropertyRecordReadStrategy : public RecordReadStrategyInterface<Column>
{
public:
    ObjectPropertyRecordReadStrategy(const QList<QSharedPointer<T>>& objects, const QList<Column>& columns,
                                     const QHash<Column, QString>& propertyNames)
        : m_objects(objects)
        , m_columns(columns)
    {
        for (auto it = propertyNames.cbegin(); it != propertyNames.cend(); ++it)
            m_properties.insert(it.key(), PropertyReader<T>(it.value()));
        for (Column column : columns)
            m_columnProperties.append(m_properties.value(column));
    }

    QVariant value(int row, Column column) override { return read(row, m_properties.value(column)); }

    QVariant value(int row, int columnIndex) override
    {
        return columnIndex >= 0 && columnIndex < m_columnProperties.size()
                   ? read(row, m_columnProperties.at(columnIndex))
                   : QVariant();
    }

    int rowCount() override { return m_objects.size(); }
    int columnCount() override { return m_columns.size(); }
    QList<Column> columns() override { return m_columns; }

private:
    QVariant read(int row, const PropertyReader<T>& property) const
    {
        const T* const object = row >= 0 && row < m_objects.size() ? m_objects.at(row).data() : nullptr;
        return object ? property.value(*object) : QVariant();
    }

    const QList<QSharedPointer<T>> m_objects;
    const QList<Column> m_columns;
    QHash<Column, PropertyReader<T>> m_properties;
    QVector<PropertyReader<T>> m_columnProperties;
};
