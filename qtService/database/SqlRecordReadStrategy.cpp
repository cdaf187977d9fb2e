#include "qtService/database/SqlRecordReadStrategy.h"

#include "qtService/database/FontDatabase.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlRecord>

template <class Column>
SqlRecordReadStrategy<Column>::SqlRecordReadStrategy(
    const QSqlQuery& query, const QSqlDatabase& database,
    const QSharedPointer<ColumnDataTransformationStrategy<Column>>& transformation,
    const QHash<QString, Column>& columns)
    : m_query(query)
    , m_database(database)
    , m_transformation(transformation)
{
    m_query.first();
    const QSqlRecord record = m_query.record();
    for (int i = 0; i < record.count(); ++i) {
        const Column column = columns.value(m_transformation->restoreName(record.fieldName(i)), Column(0));
        m_fields.insert(column, i);
        m_columns.append(column);
    }
}

template <class Column>
bool SqlRecordReadStrategy<Column>::hasRow(int row)
{
    return row >= 0 && (m_query.at() == row || m_query.seek(row));
}

template <class Column>
QVariant SqlRecordReadStrategy<Column>::field(int row, int index)
{
    return index >= 0 && hasRow(row) ? m_query.value(index) : QVariant();
}

template <class Column>
QVariant SqlRecordReadStrategy<Column>::storedValue(int row, Column column)
{
    return field(row, m_fields.value(column, -1));
}

template <class Column>
QVariant SqlRecordReadStrategy<Column>::value(int row, Column column)
{
    const QVariant stored = storedValue(row, column);
    // Bytes are no text: they may hold anything, and reading them as text would end them at the first NUL.
    if (stored.type() == QVariant::ByteArray)
        return m_transformation->fromDatabase(column, stored);
    return m_transformation->fromDatabase(column, QVariant(stored.toString()));
}

template <class Column>
QVariant SqlRecordReadStrategy<Column>::value(int row, int columnIndex)
{
    return columnIndex >= 0 && columnIndex < m_columns.size() ? value(row, m_columns.at(columnIndex)) : QVariant();
}

template <class Column>
int SqlRecordReadStrategy<Column>::rowCount()
{
    if (m_database.driver()->hasFeature(QSqlDriver::QuerySize))
        return m_query.size();
    if (m_query.isForwardOnly())
        return -1;
    const int position = m_query.at();
    const int count = m_query.last() ? m_query.at() + 1 : 0;
    if (position >= 0)
        m_query.seek(position);
    return count;
}

template <class Column>
int SqlRecordReadStrategy<Column>::columnCount()
{
    return m_columns.size();
}

template <class Column>
QList<Column> SqlRecordReadStrategy<Column>::columns()
{
    return m_columns;
}

template <class Column>
bool SqlRecordReadStrategy<Column>::hasFailed() const
{
    return !m_query.isActive() || m_query.lastError().isValid();
}

template class SqlRecordReadStrategy<FontDatabase::FontTableColumn>;
template class SqlRecordReadStrategy<FontDatabase::FeatureTableColumn>;
