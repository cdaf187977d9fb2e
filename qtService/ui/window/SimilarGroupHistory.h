#pragma once

#include "qtService/management/FontGroup.h"

#include <QString>
#include <QVector>

// The similarity results the user has looked at and the groups between them, in the order of a browser's back and
// forward. Of groups visited one after the other only the last is an entry.
class SimilarGroupHistory
{
public:
    struct Entry
    {
        FontGroupPtr group;
        QString title;
        int groupId = 0; // 0: a similarity result
        int fontId = 0;  // the font that was current when the user went on; 0: none
    };

    // A new entry drops whatever lay ahead.
    void push(const Entry& entry);
    // The user is at this group of the side bar now.
    void visit(const Entry& group);
    // The user goes on from the entry he is at, where this font is current.
    void leave(int fontId);
    bool hasPrevious() const { return m_current > 0; }
    bool hasNext() const { return m_current + 1 < m_entries.size(); }
    // Null when there is none.
    const Entry* previous();
    const Entry* next();

private:
    QVector<Entry> m_entries;
    int m_current = -1;
};
