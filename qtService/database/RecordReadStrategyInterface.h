#pragma once

#include <QList>
#include <QVariant>

// Rows of values, addressed by row number and column.
template <class Column>
class RecordReadStrategyInterface
{
public:
    virtual ~RecordReadStrategyInterface() = default;

    virtual QVariant value(int row, Column column) = 0;
    // The column at a position of columns(); an invalid value when there is none.
    virtual QVariant value(int row, int columnIndex) = 0;
    virtual int rowCount() = 0;
    virtual int columnCount() = 0;
    virtual QList<Column> columns() = 0;
};
