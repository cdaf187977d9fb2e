#pragma once

#include "qtService/database/DatabaseConnectionFactory.h"
#include "qtService/database/RecordReadStrategyInterface.h"
#include "qtService/database/SqlRecordReadStrategy.h"

#include <optional>

class MatchingCriteria;

// All SQL against one table. Statements pass through the transformation and are prepared once for each call; values
// are bound through the transformation of their column. Any thread may call, each on its own connection; writers take
// turns, and every write is one transaction. Failures are logged and told by the result.
template <class Column>
class DatabaseTableGateway
{
public:
    enum Reading
    {
        AnyOrder,   // rows may be read in any order, which keeps those read in memory
        ForwardOnly // rows stream from the file
    };

    struct Order
    {
        std::optional<Column> column;
        Qt::SortOrder order = Qt::AscendingOrder;
        int limit = -1;
    };

    using Rows = QSharedPointer<SqlRecordReadStrategy<Column>>;
    using Transformation = QSharedPointer<ColumnDataTransformationStrategy<Column>>;

    DatabaseTableGateway(const QSharedPointer<DatabaseConnectionFactory>& connectionFactory, const QString& tableName,
                         Column identityColumn, const QHash<QString, Column>& columns,
                         const Transformation& transformation);
    virtual ~DatabaseTableGateway();

    virtual QStringList columnNames(const QList<Column>& columns) const;

    // The new ids in the order of the rows; an invalid one for a row that was refused. Empty when nothing was stored.
    QList<QVariant> insert(RecordReadStrategyInterface<Column>& rows);
    // All rows or none.
    bool update(RecordReadStrategyInterface<Column>& rows);
    bool removeIn(const QVariantList& values);
    bool removeAll();
    // -1 when the table cannot be read.
    int count();

    // An empty list of columns reads all.
    Rows select(const QList<Column>& columns = {}, const Order& order = {}, Reading reading = AnyOrder);
    // The value stands in the statement itself: integers only.
    Rows selectOne(const QVariant& value, const QList<Column>& columns = {});
    // The condition's values, in its order, belong to the given columns.
    Rows selectWhere(const QString& condition, const QList<QPair<Column, QVariant>>& values,
                     const QList<Column>& columns = {}, const Order& order = {}, Reading reading = AnyOrder);

    const QString& tableName() const;
    QString columnName(Column column) const;
    Column identityColumn() const;
    const QSharedPointer<DatabaseConnectionFactory>& connectionFactory() const;
    const Transformation& transformation() const;

private:
    QSqlQuery prepare(const QSqlDatabase& database, const QString& statement, Reading reading = AnyOrder) const;
    bool execute(QSqlQuery& query) const;
    Rows read(QSqlQuery& query, const QSqlDatabase& database) const;
    QString selectStatement(const QList<Column>& columns) const;
    QString orderText(const Order& order) const;

    const QSharedPointer<DatabaseConnectionFactory> m_connectionFactory;
    const QString m_tableName;
    const Column m_identityColumn;
    const QHash<QString, Column> m_columns;
    const Transformation m_transformation;
};
