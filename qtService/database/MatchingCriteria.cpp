#include "qtService/database/MatchingCriteria.h"

#include <QSet>

MatchingCriteria::MatchingCriteria(GroupKind kind)
    : m_groupKind(kind)
{
}

MatchingCriteria::MatchingCriteria(int operatorFlags, const QString& propertyName, const QVariant& value,
                                   Qt::CaseSensitivity caseSensitivity)
    : m_operatorFlags(operatorFlags)
    , m_propertyName(propertyName)
    , m_value(value)
    , m_caseSensitivity(caseSensitivity)
{
    static const int registered = qRegisterMetaType<QSet<int>>("QSet<int>");
    Q_UNUSED(registered)
}

MatchingCriteriaPtr MatchingCriteria::allOf(const QList<MatchingCriteriaPtr>& children)
{
    auto group = MatchingCriteriaPtr::create(AllOf);
    group->m_children = children;
    return group;
}

MatchingCriteriaPtr MatchingCriteria::anyOf(const QList<MatchingCriteriaPtr>& children)
{
    auto group = MatchingCriteriaPtr::create(AnyOf);
    group->m_children = children;
    return group;
}

MatchingCriteriaPtr MatchingCriteria::leaf(int operatorFlags, const QString& propertyName, const QVariant& value,
                                           Qt::CaseSensitivity caseSensitivity)
{
    return MatchingCriteriaPtr::create(operatorFlags, propertyName, value, caseSensitivity);
}

MatchingCriteriaPtr MatchingCriteria::idIn(const QList<int>& ids)
{
    return leaf(InList, QStringLiteral("id"), QVariant::fromValue(ids));
}

void MatchingCriteria::append(const MatchingCriteriaPtr& child)
{
    QWriteLocker locker(&m_lock);
    m_children.append(child);
}

int MatchingCriteria::count() const
{
    QReadLocker locker(&m_lock);
    return m_children.count();
}

MatchingCriteriaPtr MatchingCriteria::child(int index) const
{
    QReadLocker locker(&m_lock);
    return m_children.value(index);
}

QList<MatchingCriteriaPtr> MatchingCriteria::children() const
{
    QReadLocker locker(&m_lock);
    return m_children;
}

bool MatchingCriteria::isEmpty() const
{
    QReadLocker locker(&m_lock);
    return m_groupKind != Leaf && m_children.isEmpty();
}

int MatchingCriteria::operatorFlags() const
{
    QReadLocker locker(&m_lock);
    return m_operatorFlags;
}

int MatchingCriteria::groupKind() const
{
    QReadLocker locker(&m_lock);
    return m_groupKind;
}

QString MatchingCriteria::propertyName() const
{
    QReadLocker locker(&m_lock);
    return m_propertyName;
}

QVariant MatchingCriteria::value() const
{
    QReadLocker locker(&m_lock);
    return m_value;
}

Qt::CaseSensitivity MatchingCriteria::caseSensitivity() const
{
    QReadLocker locker(&m_lock);
    return Qt::CaseSensitivity(m_caseSensitivity);
}
