#include "qtService/database/SqlCriteria.h"

#include "qtService/database/CriteriaValues.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"

namespace {

class Builder
{
public:
    explicit Builder(const FontDatabase& database)
        : m_database(database)
    {
    }

    QString group(const MatchingCriteria& criteria)
    {
        QStringList parts;
        const QList<MatchingCriteriaPtr> children = criteria.children();
        for (const MatchingCriteriaPtr& child : children) {
            if (!child)
                continue;
            QString part;
            if (child->groupKind() == MatchingCriteria::Leaf)
                part = leaf(*child);
            else if (part = group(*child); !part.isEmpty())
                part = QLatin1Char('(') + part + QLatin1Char(')');
            if (!part.isEmpty())
                parts.append(part);
        }
        return parts.join(criteria.groupKind() == MatchingCriteria::AnyOf ? QLatin1String(" OR ")
                                                                          : QLatin1String(" AND "));
    }

    QString leaf(const MatchingCriteria& leaf)
    {
        const auto column =
            RelationalFontRepositoryStrategy::propertyColumns().value(leaf.propertyName(), FontDatabase::id);
        const QString text = condition(leaf.operatorFlags(), column, leaf.value());
        const bool negated = leaf.operatorFlags() & MatchingCriteria::Not;
        return negated && !text.isEmpty() ? QStringLiteral("NOT ") + text : text;
    }

    QList<QPair<FontDatabase::FontTableColumn, QVariant>> values;

private:
    QString condition(int flags, FontDatabase::FontTableColumn column, const QVariant& value)
    {
        if (column == FontDatabase::supported_subsets &&
            (flags & (MatchingCriteria::InList | MatchingCriteria::Contains)))
            return subsets(flags & MatchingCriteria::InList, value);
        if (flags & MatchingCriteria::Equal)
            return equal(column, value);
        if (flags & MatchingCriteria::InList)
            return inList(column, value);
        if (flags & MatchingCriteria::Less)
            return bound("%1 < ?", column, value);
        if (flags & MatchingCriteria::LessOrEqual)
            return bound("%1 <= ?", column, value);
        if (flags & MatchingCriteria::Greater)
            return bound("%1 > ?", column, value);
        if (flags & MatchingCriteria::GreaterOrEqual)
            return bound("%1 >= ?", column, value);
        if (flags & MatchingCriteria::BitwiseAnd)
            return bound("%1 & ?", column, value);
        if (flags & MatchingCriteria::BitwiseOr)
            return bound("%1 | ?", column, value);
        if (flags & MatchingCriteria::BitwiseNot)
            return QStringLiteral("~%1").arg(m_database.fontColumnName(column));
        if (flags & MatchingCriteria::BitwiseXor)
            return exclusiveOr(column, value);
        const QString percent = QStringLiteral("%");
        if (flags & MatchingCriteria::Contains)
            return bound("%1 LIKE ?", column, QString(percent + value.toString() + percent));
        if (flags & MatchingCriteria::StartsWith)
            return bound("%1 LIKE ?", column, QString(value.toString() + percent));
        if (flags & MatchingCriteria::EndsWith)
            return bound("%1 LIKE ?", column, QString(percent + value.toString()));
        return QString();
    }

    QString bound(const char* text, FontDatabase::FontTableColumn column, const QVariant& value)
    {
        values.append({column, value});
        return QString::fromLatin1(text).arg(m_database.fontColumnName(column));
    }

    // A moment that is stored as absent is equal to none but by IS.
    QString equal(FontDatabase::FontTableColumn column, const QVariant& value)
    {
        const bool absent = m_database.fontTransformation()->toDatabase(column, value).isNull();
        return bound(absent ? "%1 IS ?" : "%1 = ?", column, value);
    }

    QString inList(FontDatabase::FontTableColumn column, const QVariant& value)
    {
        const QVariantList elements = criteria::elements(value);
        QStringList marks;
        for (const QVariant& element : elements) {
            values.append({column, element});
            marks.append(QStringLiteral("?"));
        }
        return QStringLiteral("%1 IN(%2)").arg(m_database.fontColumnName(column), marks.join(QLatin1Char(',')));
    }

    // SQLite has no such operator; a ^ b is (a | b) - (a & b).
    QString exclusiveOr(FontDatabase::FontTableColumn column, const QVariant& value)
    {
        values.append({column, value});
        values.append({column, value});
        return QStringLiteral("((%1 | ?) - (%1 & ?))").arg(m_database.fontColumnName(column));
    }

    // Numbers of a set are found in its text between commas.
    QString subsets(bool sharesOne, const QVariant& value)
    {
        QStringList parts;
        const QSet<int> numbers = criteria::subsetNumbers(value).numbers();
        for (int number : numbers) {
            parts.append(QStringLiteral("',' || %1 || ',' LIKE '%,%2,%'")
                             .arg(m_database.fontColumnName(FontDatabase::supported_subsets), QString::number(number)));
        }
        if (parts.isEmpty())
            return sharesOne ? QStringLiteral("(0)") : QStringLiteral("(1)");
        return QLatin1Char('(') + parts.join(sharesOne ? QLatin1String(" OR ") : QLatin1String(" AND ")) +
               QLatin1Char(')');
    }

    const FontDatabase& m_database;
};

} // namespace

SqlCriteria SqlCriteria::build(const MatchingCriteriaPtr& criteria, const FontDatabase& database)
{
    SqlCriteria result;
    if (!criteria)
        return result;
    Builder builder(database);
    result.condition =
        criteria->groupKind() == MatchingCriteria::Leaf ? builder.leaf(*criteria) : builder.group(*criteria);
    result.values = builder.values;
    return result;
}
