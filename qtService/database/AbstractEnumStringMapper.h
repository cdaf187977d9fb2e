#pragma once

#include <QHash>
#include <QReadLocker>
#include <QReadWriteLock>
#include <QString>
#include <algorithm>

// A table of texts for the values of an enumeration; Derived fills m_texts in its constructor, under the write lock.
// Texts compare exactly. Any thread may read.
template <class Derived, class Enum>
class AbstractEnumStringMapper
{
public:
    virtual ~AbstractEnumStringMapper() = default;

    // Empty when the value has no text.
    virtual QString toString(Enum value) const
    {
        QReadLocker locker(&m_lock);
        return m_texts.value(value);
    }

    // The value 0 when no value has the text.
    virtual Enum fromString(const QString& text) const
    {
        QReadLocker locker(&m_lock);
        return m_texts.key(text, Enum(0));
    }

    virtual bool contains(const QString& text) const
    {
        QReadLocker locker(&m_lock);
        return std::find(m_texts.cbegin(), m_texts.cend(), text) != m_texts.cend();
    }

    virtual bool contains(Enum value) const
    {
        QReadLocker locker(&m_lock);
        return m_texts.contains(value);
    }

protected:
    mutable QReadWriteLock m_lock;
    QHash<Enum, QString> m_texts;
};
