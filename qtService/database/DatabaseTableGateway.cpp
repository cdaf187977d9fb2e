#include "qtService/database/DatabaseTableGateway.h"

#include "qtService/database/DatabaseTransaction.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/FontDatabaseFile.h"

#include <QDebug>
#include <QSqlError>

#include <algorithm>

namespace {

// A delete with more placeholders than this is split; SQLite's own bound is a build option.
constexpr int MostPlaceholders = 1000;

const char* gatewayName(FontDatabase::FontTableColumn)
{
    return "DatabaseTableGateway<enum FontDatabase::FontTableColumn>::execute";
}

const char* gatewayName(FontDatabase::FeatureTableColumn)
{
    return "DatabaseTableGateway<enum FontDatabase::FeatureTableColumn>::execute";
}

// An error of the file, not of the row. SQLite takes the whole transaction back upon most of them, and what followed
// would be stored outside of any.
bool endsTransaction(const QSqlError& error)
{
    const int primary = error.nativeErrorCode().toInt() & 0xff;
    const auto ends = {5 /* busy */,
                       7 /* memory */,
                       8 /* read-only */,
                       9 /* interrupted */,
                       10 /* input or output */,
                       11 /* corrupt */,
                       13 /* full */,
                       26 /* no database */};
    return std::find(ends.begin(), ends.end(), primary) != ends.end();
}

QString placeholders(int count)
{
    QString text;
    text.reserve(2 * count);
    for (int i = 0; i < count; ++i)
        text += i ? QLatin1String(",?") : QLatin1String("?");
    return text;
}

} // namespace

template <class Column>
DatabaseTableGateway<Column>::DatabaseTableGateway(const QSharedPointer<DatabaseConnectionFactory>& connectionFactory,
                                                   const QString& tableName, Column identityColumn,
                                                   const QHash<QString, Column>& columns,
                                                   const Transformation& transformation)
    : m_connectionFactory(connectionFactory)
    , m_tableName(tableName)
    , m_identityColumn(identityColumn)
    , m_columns(columns)
    , m_transformation(transformation)
{
}

template <class Column>
DatabaseTableGateway<Column>::~DatabaseTableGateway() = default;

template <class Column>
QString DatabaseTableGateway<Column>::columnName(Column column) const
{
    return m_columns.key(column);
}

template <class Column>
QStringList DatabaseTableGateway<Column>::columnNames(const QList<Column>& columns) const
{
    QStringList names;
    for (Column column : columns)
        names.append(columnName(column));
    return names;
}

template <class Column>
QSqlQuery DatabaseTableGateway<Column>::prepare(const QSqlDatabase& database, const QString& statement,
                                                Reading reading) const
{
    QSqlQuery query(database);
    query.setForwardOnly(reading == ForwardOnly);
    // What cannot be prepared fails and is logged when it is executed.
    query.prepare(m_transformation->transformStatement(statement));
    return query;
}

template <class Column>
bool DatabaseTableGateway<Column>::execute(QSqlQuery& query) const
{
    if (query.exec())
        return true;
    const QSqlError error = query.lastError();
    if (fontdatabasefile::isDamage(error.nativeErrorCode()))
        fontdatabasefile::suspect(m_connectionFactory->parameters().databaseName);
    qDebug().noquote() << gatewayName(Column(0)) << error.text() << "error type:" << int(error.type())
                       << query.lastQuery();
    const QMap<QString, QVariant> values = query.boundValues();
    qDebug() << "placeHolderCount:" << query.lastQuery().count(QLatin1Char('?')) << "valueCount:" << values.count();
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        qDebug() << it.key() << it.value();
    return false;
}

template <class Column>
typename DatabaseTableGateway<Column>::Rows DatabaseTableGateway<Column>::read(QSqlQuery& query,
                                                                               const QSqlDatabase& database) const
{
    execute(query);
    return Rows::create(query, database, m_transformation, m_columns);
}

template <class Column>
QList<QVariant> DatabaseTableGateway<Column>::insert(RecordReadStrategyInterface<Column>& rows)
{
    const QList<Column> columns = rows.columns();
    QMutexLocker turn(&m_connectionFactory->writeMutex());
    const QSqlDatabase database = m_connectionFactory->database();
    DatabaseTransaction transaction(database);
    if (!transaction.isActive())
        return {};

    QList<QVariant> ids;
    {
        QSqlQuery query = prepare(
            database, QStringLiteral("INSERT INTO %1 (%2) VALUES(%3)")
                          .arg(m_tableName, columnNames(columns).join(QLatin1Char(',')), placeholders(columns.size())));
        const int rowCount = rows.rowCount();
        for (int row = 0; row < rowCount; ++row) {
            for (int i = 0; i < columns.size(); ++i)
                query.bindValue(i, m_transformation->toDatabase(columns.at(i), rows.value(row, i)));
            const bool stored = execute(query);
            if (!stored && endsTransaction(query.lastError()))
                return {};
            // A refused row must not report the id of the one before it.
            ids.append(stored ? query.lastInsertId() : QVariant());
        }
    }
    if (!transaction.commit())
        return {};
    return ids;
}

template <class Column>
bool DatabaseTableGateway<Column>::update(RecordReadStrategyInterface<Column>& rows)
{
    const QList<Column> columns = rows.columns();
    QStringList assignments;
    for (Column column : columns)
        assignments.append(QStringLiteral("%1 = ?").arg(columnName(column)));

    QMutexLocker turn(&m_connectionFactory->writeMutex());
    const QSqlDatabase database = m_connectionFactory->database();
    DatabaseTransaction transaction(database);
    if (!transaction.isActive())
        return false;
    {
        QSqlQuery query =
            prepare(database, QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
                                  .arg(m_tableName, assignments.join(QLatin1Char(',')), columnName(m_identityColumn)));
        const int rowCount = rows.rowCount();
        for (int row = 0; row < rowCount; ++row) {
            for (int i = 0; i < columns.size(); ++i)
                query.bindValue(i, m_transformation->toDatabase(columns.at(i), rows.value(row, i)));
            query.bindValue(columns.size(),
                            m_transformation->toDatabase(m_identityColumn, rows.value(row, m_identityColumn)));
            if (!execute(query))
                return false;
        }
    }
    return transaction.commit();
}

template <class Column>
bool DatabaseTableGateway<Column>::removeIn(const QVariantList& values)
{
    QMutexLocker turn(&m_connectionFactory->writeMutex());
    const QSqlDatabase database = m_connectionFactory->database();
    DatabaseTransaction transaction(database);
    if (!transaction.isActive())
        return false;
    int done = 0;
    while (done < values.size()) {
        const int part = qMin(MostPlaceholders, values.size() - done);
        QSqlQuery query = prepare(database, QStringLiteral("DELETE FROM %1 WHERE %2 IN(%3)")
                                                .arg(m_tableName, columnName(m_identityColumn), placeholders(part)));
        for (; values.size() - done >= part; done += part) {
            for (int i = 0; i < part; ++i)
                query.bindValue(i, m_transformation->toDatabase(m_identityColumn, values.at(done + i)));
            if (!execute(query))
                return false;
        }
    }
    return transaction.commit();
}

template <class Column>
bool DatabaseTableGateway<Column>::removeAll()
{
    QMutexLocker turn(&m_connectionFactory->writeMutex());
    QSqlQuery query = prepare(m_connectionFactory->database(), QStringLiteral("DELETE FROM %1").arg(m_tableName));
    return execute(query);
}

template <class Column>
int DatabaseTableGateway<Column>::count()
{
    QSqlQuery query =
        prepare(m_connectionFactory->database(), QStringLiteral("SELECT COUNT(*) FROM %1").arg(m_tableName));
    return execute(query) && query.next() ? query.value(0).toInt() : -1;
}

template <class Column>
QString DatabaseTableGateway<Column>::selectStatement(const QList<Column>& columns) const
{
    return QStringLiteral("SELECT %1 FROM %2")
        .arg(columns.isEmpty() ? QStringLiteral("*") : columnNames(columns).join(QLatin1Char(',')), m_tableName);
}

template <class Column>
QString DatabaseTableGateway<Column>::orderText(const Order& order) const
{
    QString text;
    if (order.column) {
        text = QStringLiteral(" ORDER BY %1 %2")
                   .arg(columnName(*order.column),
                        order.order == Qt::AscendingOrder ? QStringLiteral("ASC") : QStringLiteral("DESC"));
    }
    if (order.limit >= 0)
        text += QStringLiteral(" LIMIT %1").arg(order.limit);
    return text;
}

template <class Column>
typename DatabaseTableGateway<Column>::Rows DatabaseTableGateway<Column>::select(const QList<Column>& columns,
                                                                                 const Order& order, Reading reading)
{
    const QSqlDatabase database = m_connectionFactory->database();
    QSqlQuery query = prepare(database, selectStatement(columns) + orderText(order), reading);
    return read(query, database);
}

template <class Column>
typename DatabaseTableGateway<Column>::Rows DatabaseTableGateway<Column>::selectOne(const QVariant& value,
                                                                                    const QList<Column>& columns)
{
    const QSqlDatabase database = m_connectionFactory->database();
    QSqlQuery query =
        prepare(database, QStringLiteral("%1 WHERE %2 = %3")
                              .arg(selectStatement(columns), columnName(m_identityColumn), value.toString()));
    return read(query, database);
}

template <class Column>
typename DatabaseTableGateway<Column>::Rows
DatabaseTableGateway<Column>::selectWhere(const QString& condition, const QList<QPair<Column, QVariant>>& values,
                                          const QList<Column>& columns, const Order& order, Reading reading)
{
    const QSqlDatabase database = m_connectionFactory->database();
    const QString where = condition.isEmpty() ? QString() : QStringLiteral(" WHERE ") + condition;
    QSqlQuery query = prepare(database, selectStatement(columns) + where + orderText(order), reading);
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, m_transformation->toDatabase(values.at(i).first, values.at(i).second));
    return read(query, database);
}

template <class Column>
const QString& DatabaseTableGateway<Column>::tableName() const
{
    return m_tableName;
}

template <class Column>
Column DatabaseTableGateway<Column>::identityColumn() const
{
    return m_identityColumn;
}

template <class Column>
const QSharedPointer<DatabaseConnectionFactory>& DatabaseTableGateway<Column>::connectionFactory() const
{
    return m_connectionFactory;
}

template <class Column>
const typename DatabaseTableGateway<Column>::Transformation& DatabaseTableGateway<Column>::transformation() const
{
    return m_transformation;
}

template class DatabaseTableGateway<FontDatabase::FontTableColumn>;
template class DatabaseTableGateway<FontDatabase::FeatureTableColumn>;
