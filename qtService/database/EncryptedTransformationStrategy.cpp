#include "qtService/database/EncryptedTransformationStrategy.h"

#include "qtService/database/FontDatabase.h"

template <class Column>
EncryptedTransformationStrategy<Column>::EncryptedTransformationStrategy(
    const QSet<Column>& plainColumns, const QSharedPointer<ColumnDataTransformationStrategy<Column>>& inner,
    const ScramblerTables& tables)
    : m_plainColumns(plainColumns)
    , m_inner(inner)
    , m_statements(tables)
    , m_values(tables)
{
}

template <class Column>
QString EncryptedTransformationStrategy<Column>::transformStatement(const QString& statement) const
{
    return m_statements.encode(m_inner->transformStatement(statement));
}

template <class Column>
QString EncryptedTransformationStrategy<Column>::restoreName(const QString& name) const
{
    return m_statements.decode(m_inner->restoreName(name));
}

template <class Column>
QVariant EncryptedTransformationStrategy<Column>::toDatabase(Column column, const QVariant& value) const
{
    const QVariant stored = m_inner->toDatabase(column, value);
    if (m_plainColumns.contains(column))
        return stored;
    const bool isText = stored.type() == QVariant::String;
    if (!isText && stored.isNull())
        return QVariant();
    if (isText && m_values.changesNothing() && !stored.isNull())
        return stored;
    const QString text = encodeValue(stored.toString());
    // A null text is an empty one, or SQL would compare it as unknown where the record compares it as empty.
    return text.isNull() ? QString(QLatin1String("")) : text;
}

template <class Column>
QVariant EncryptedTransformationStrategy<Column>::fromDatabase(Column column, const QVariant& value) const
{
    if (m_plainColumns.contains(column) || m_values.changesNothing())
        return m_inner->fromDatabase(column, value);
    return m_inner->fromDatabase(column, QVariant(decodeValue(value.toString())));
}

template <class Column>
QString EncryptedTransformationStrategy<Column>::encodeValue(const QString& text) const
{
    return m_values.encode(text);
}

template <class Column>
QString EncryptedTransformationStrategy<Column>::decodeValue(const QString& text) const
{
    return m_values.decode(text);
}

template class EncryptedTransformationStrategy<FontDatabase::FontTableColumn>;
template class EncryptedTransformationStrategy<FontDatabase::FeatureTableColumn>;
