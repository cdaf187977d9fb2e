#pragma once

#include <QString>
#include <QVariant>

// What happens to statements and values on their way into a database and out of it. Stateless after construction, so
// threads share one.
template <class Column>
class ColumnDataTransformationStrategy
{
public:
    virtual ~ColumnDataTransformationStrategy() = default;

    // Applied to the whole text of a statement before it is prepared.
    virtual QString transformStatement(const QString& statement) const = 0;
    // Makes the logical column name out of a field name of a result.
    virtual QString restoreName(const QString& name) const = 0;
    virtual QVariant toDatabase(Column column, const QVariant& value) const = 0;
    virtual QVariant fromDatabase(Column column, const QVariant& value) const = 0;
};
