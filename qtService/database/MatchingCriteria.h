#pragma once

#include <QList>
#include <QReadWriteLock>
#include <QSharedPointer>
#include <QString>
#include <QVariant>

class MatchingCriteria;
using MatchingCriteriaPtr = QSharedPointer<MatchingCriteria>;

// A tree of conditions on fonts: leaves compare one property of fms::StaticFont with a value, groups join their
// children. Every collection of fonts is queried through it. A tree may be shared between threads; it is read when a
// command compiles it, changes after that do not reach the command.
class MatchingCriteria
{
public:
    // Operators of a leaf. They combine; when several are given, the first of this list decides, and Not negates it.
    enum Operator
    {
        Equal = 1,
        Not = 2,
        NotEqual = Equal | Not,
        InList = 8,
        Less = 16,
        LessOrEqual = 32,
        Greater = 64,
        GreaterOrEqual = 128,
        BitwiseAnd = 256,
        BitwiseOr = 512,
        BitwiseNot = 1024,
        BitwiseXor = 2048,
        Contains = 4096, // on a set: every asked number is in it
        StartsWith = 8192,
        EndsWith = 16384
    };

    enum GroupKind
    {
        Leaf = 0,
        AnyOf = 32768,
        AllOf = 65536
    };

    // An empty group.
    explicit MatchingCriteria(GroupKind kind = AllOf);
    // A condition. The case sensitivity concerns Contains, StartsWith and EndsWith evaluated in memory; SQLite's LIKE
    // ignores the case of ASCII letters whatever is asked.
    MatchingCriteria(int operatorFlags, const QString& propertyName, const QVariant& value,
                     Qt::CaseSensitivity caseSensitivity = Qt::CaseSensitive);

    static MatchingCriteriaPtr allOf(const QList<MatchingCriteriaPtr>& children = {});
    static MatchingCriteriaPtr anyOf(const QList<MatchingCriteriaPtr>& children = {});
    static MatchingCriteriaPtr leaf(int operatorFlags, const QString& propertyName, const QVariant& value,
                                    Qt::CaseSensitivity caseSensitivity = Qt::CaseSensitive);
    // The condition that nearly every caller adds: "id" in list.
    static MatchingCriteriaPtr idIn(const QList<int>& ids);

    void append(const MatchingCriteriaPtr& child);
    int count() const;
    // Null when there is no such child.
    MatchingCriteriaPtr child(int index) const;
    QList<MatchingCriteriaPtr> children() const;
    // True for a group without children.
    bool isEmpty() const;

    int operatorFlags() const;
    int groupKind() const;
    QString propertyName() const;
    QVariant value() const;
    Qt::CaseSensitivity caseSensitivity() const;

private:
    mutable QReadWriteLock m_lock;
    QList<MatchingCriteriaPtr> m_children;
    int m_operatorFlags = 0;
    int m_groupKind = Leaf;
    QString m_propertyName;
    QVariant m_value;
    int m_caseSensitivity = Qt::CaseSensitive;
};

Q_DECLARE_METATYPE(MatchingCriteriaPtr)
