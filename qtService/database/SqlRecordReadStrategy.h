#pragma once

#include "qtService/database/ColumnDataTransformationStrategy.h"
#include "qtService/database/RecordReadStrategyInterface.h"

#include <QHash>
#include <QSharedPointer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVector>

// Rows of an executed query, with values as the transformation makes them. Rows may be read in any order unless the
// query only runs forward; then each row is read before the next, and rowCount() is not known (-1). Lives on the thread
// that ran the query, and no longer than that thread's connection.
template <class Column>
class SqlRecordReadStrategy : public RecordReadStrategyInterface<Column>
{
public:
    SqlRecordReadStrategy(const QSqlQuery& query, const QSqlDatabase& database,
                          const QSharedPointer<ColumnDataTransformationStrategy<Column>>& transformation,
                          const QHash<QString, Column>& columns);

    QVariant value(int row, Column column) override;
    QVariant value(int row, int columnIndex) override;
    int rowCount() override;
    int columnCount() override;
    QList<Column> columns() override;

    // Whether the row exists; the way to walk a result without counting it first.
    bool hasRow(int row);
    // The value as it is stored.
    QVariant storedValue(int row, Column column);
    // True when reading stopped for an error rather than at the end.
    bool hasFailed() const;

private:
    QVariant field(int row, int index);

    QSqlQuery m_query;
    const QSqlDatabase m_database;
    const QSharedPointer<ColumnDataTransformationStrategy<Column>> m_transformation;
    QHash<Column, int> m_fields;
    QList<Column> m_columns;
};
