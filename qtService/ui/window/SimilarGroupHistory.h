#pragma once

#include "qtService/management/FontGroup.h"

#include <QString>
#include <QVector>

// The similarity results the user has looked at, in the order of a browser's back and forward.
class SimilarGroupHistory
{
public:
    struct Entry
    {
        FontGroupPtr group;
        QString title;
    };

    // A new entry drops whatever lay ahead.
    void push(const Entry& entry);
    bool hasPrevious() const { return m_current > 0; }
    bool hasNext() const { return m_current + 1 < m_entries.size(); }
    // Null when there is none.
    const Entry* previous();
    const Entry* next();
    void clear();

private:
    QVector<Entry> m_entries;
    int m_current = -1;
};
