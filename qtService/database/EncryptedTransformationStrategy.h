#pragma once

#include "qtService/database/ColumnDataTransformationStrategy.h"
#include "qtService/database/TextScrambler.h"

#include <QSet>
#include <QSharedPointer>

// Scrambles statements and the texts of columns that are not plain, on top of another strategy. Such columns hold texts
// only: numbers are stored by their digits, an absent value stays absent.
template <class Column>
class EncryptedTransformationStrategy : public ColumnDataTransformationStrategy<Column>
{
public:
    EncryptedTransformationStrategy(const QSet<Column>& plainColumns,
                                    const QSharedPointer<ColumnDataTransformationStrategy<Column>>& inner,
                                    const ScramblerTables& tables = {});

    QString transformStatement(const QString& statement) const override;
    QString restoreName(const QString& name) const override;
    QVariant toDatabase(Column column, const QVariant& value) const override;
    QVariant fromDatabase(Column column, const QVariant& value) const override;

    QString encodeValue(const QString& text) const;
    QString decodeValue(const QString& text) const;

private:
    const QSet<Column> m_plainColumns;
    const QSharedPointer<ColumnDataTransformationStrategy<Column>> m_inner;
    const StatementScrambler m_statements;
    const ValueScrambler m_values;
};
