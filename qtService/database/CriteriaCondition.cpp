#include "qtService/database/CriteriaCondition.h"

#include "qtService/database/CriteriaTextConditions.h"
#include "qtService/database/CriteriaValues.h"
#include "qtService/database/FontField.h"

#include <QSet>

#include <functional>

using fms::FontField;
using fms::StaticFontData;

namespace {

using ConditionPtr = std::unique_ptr<CriteriaCondition>;

// A condition made of a function object, so that the kinds of test below stay one line each.
template <class Test>
class Condition : public CriteriaCondition
{
public:
    explicit Condition(Test test)
        : m_test(std::move(test))
    {
    }
    bool holds(const StaticFontData& data) const override { return m_test(data); }

private:
    const Test m_test;
};

template <class Test>
ConditionPtr condition(Test test)
{
    return std::make_unique<Condition<Test>>(std::move(test));
}

ConditionPtr constant(bool value)
{
    return condition([value](const StaticFontData&) { return value; });
}

// What a property that the record does not have compares as.
QVariant valueOf(const FontField* field, const StaticFontData& data)
{
    return field ? field->value(data) : QVariant();
}

ConditionPtr compileEqual(const FontField* field, const QVariant& value)
{
    if (field && field->isNumber()) {
        if (const auto number = criteria::exactNumber(value, field->kind == FontField::Flag))
            return condition([get = field->number, n = *number](const StaticFontData& d) { return get(d) == n; });
    } else if (field && field->isText()) {
        QVariant text = value;
        if (text.canConvert(QMetaType::QString) && text.convert(QMetaType::QString))
            return criteria::textEquals(*field, text.toString());
    } else if (field && field->kind == FontField::Subsets && criteria::isNumberCollection(value)) {
        return condition(
            [asked = criteria::subsetNumbers(value)](const StaticFontData& d) { return d.supportedSubsets == asked; });
    }
    return condition([field, value](const StaticFontData& data) { return valueOf(field, data) == value; });
}

ConditionPtr compileInList(const FontField* field, const QVariant& value)
{
    const QVariantList elements = criteria::elements(value);
    if (elements.isEmpty())
        return constant(false);
    if (field && field->isNumber()) {
        QSet<int> numbers;
        numbers.reserve(elements.size());
        for (const QVariant& element : elements) {
            if (const auto number = criteria::exactNumber(element, field->kind == FontField::Flag))
                numbers.insert(int(*number));
        }
        return condition([get = field->number, numbers](const StaticFontData& d) { return numbers.contains(get(d)); });
    }
    if (field && field->isText()) {
        QSet<QString> texts;
        texts.reserve(elements.size());
        for (QVariant element : elements) {
            if (element.convert(QMetaType::QString))
                texts.insert(element.toString());
        }
        return condition([get = field->text, texts](const StaticFontData& d) { return texts.contains(get(d)); });
    }
    if (field && field->kind == FontField::Subsets) {
        return condition([asked = criteria::subsetNumbers(value)](const StaticFontData& d) {
            return d.supportedSubsets.sharesOne(asked);
        });
    }
    return condition([field, elements](const StaticFontData& data) { return elements.contains(valueOf(field, data)); });
}

// The property as the integer that comparisons and bit operations take; moments count as Unix seconds.
std::function<qint64(const StaticFontData&)> integerReader(const FontField* field)
{
    if (field && field->isNumber())
        return [get = field->number](const StaticFontData& d) { return qint64(get(d)); };
    if (field && field->kind == FontField::Time)
        return field->seconds;
    if (field && field->isText())
        return [get = field->text](const StaticFontData& d) { return qint64(get(d).toInt()); };
    return [](const StaticFontData&) { return qint64(0); };
}

template <class Compare>
ConditionPtr compileCompare(const FontField* field, const QVariant& value, Compare compare)
{
    const qint64 operand = criteria::integer(value);
    if (field && field->isNumber()) {
        return condition([get = field->number, operand, compare](const StaticFontData& d) {
            return compare(qint64(get(d)), operand);
        });
    }
    return condition(
        [get = integerReader(field), operand, compare](const StaticFontData& d) { return compare(get(d), operand); });
}

ConditionPtr compileText(const FontField* field, criteria::TextPlace place, const MatchingCriteria& leaf)
{
    const QVariant value = leaf.value();
    if (field && field->kind == FontField::Subsets) {
        if (place != criteria::TextPlace::Anywhere)
            return constant(false);
        return condition([asked = criteria::subsetNumbers(value)](const StaticFontData& d) {
            return d.supportedSubsets.containsAll(asked);
        });
    }
    if (field && field->text)
        return criteria::textSearch(*field, place, value.toString(), leaf.caseSensitivity());
    return condition([field, place, word = value.toString(), cs = leaf.caseSensitivity()](const StaticFontData& data) {
        return criteria::isAt(place, valueOf(field, data).toString(), word, cs);
    });
}

ConditionPtr compilePositive(const MatchingCriteria& leaf)
{
    const FontField* const field = FontField::find(leaf.propertyName());
    const QVariant value = leaf.value();
    const int flags = leaf.operatorFlags();
    if (flags & MatchingCriteria::Equal)
        return compileEqual(field, value);
    if (flags & MatchingCriteria::InList)
        return compileInList(field, value);
    if (flags & MatchingCriteria::Less)
        return compileCompare(field, value, std::less<>());
    if (flags & MatchingCriteria::LessOrEqual)
        return compileCompare(field, value, std::less_equal<>());
    if (flags & MatchingCriteria::Greater)
        return compileCompare(field, value, std::greater<>());
    if (flags & MatchingCriteria::GreaterOrEqual)
        return compileCompare(field, value, std::greater_equal<>());
    if (flags & MatchingCriteria::BitwiseAnd)
        return compileCompare(field, value, [](qint64 a, qint64 b) { return (a & b) != 0; });
    if (flags & MatchingCriteria::BitwiseOr)
        return compileCompare(field, value, [](qint64 a, qint64 b) { return (a | b) != 0; });
    if (flags & MatchingCriteria::BitwiseNot)
        return compileCompare(field, value, [](qint64 a, qint64) { return ~a != 0; });
    if (flags & MatchingCriteria::BitwiseXor)
        return compileCompare(field, value, [](qint64 a, qint64 b) { return (a ^ b) != 0; });
    if (flags & MatchingCriteria::Contains)
        return compileText(field, criteria::TextPlace::Anywhere, leaf);
    if (flags & MatchingCriteria::StartsWith)
        return compileText(field, criteria::TextPlace::Start, leaf);
    if (flags & MatchingCriteria::EndsWith)
        return compileText(field, criteria::TextPlace::End, leaf);
    return nullptr;
}

} // namespace

std::unique_ptr<CriteriaCondition> CriteriaCondition::compile(const MatchingCriteria& leaf)
{
    ConditionPtr positive = compilePositive(leaf);
    if (!positive || !(leaf.operatorFlags() & MatchingCriteria::Not))
        return positive;
    return condition([inner = std::shared_ptr<CriteriaCondition>(std::move(positive))](const StaticFontData& data) {
        return !inner->holds(data);
    });
}
