#include "qtService/database/CompiledCriteria.h"

#include "qtService/database/CriteriaCondition.h"

#include <vector>

// A group or a leaf. Groups that ask for nothing are left out while compiling, so an empty group never decides.
struct CompiledCriteria::Node
{
    bool isAnyOf = false;
    std::vector<std::unique_ptr<CriteriaCondition>> conditions;
    std::vector<std::unique_ptr<Node>> groups;

    bool isEmpty() const { return conditions.empty() && groups.empty(); }

    // Leaves first: they are cheaper than the groups, among which are the searches for words.
    bool matches(const fms::StaticFontData& data) const
    {
        for (const auto& condition : conditions) {
            if (condition->holds(data) == isAnyOf)
                return isAnyOf;
        }
        for (const auto& group : groups) {
            if (group->matches(data) == isAnyOf)
                return isAnyOf;
        }
        return !isAnyOf;
    }
};

namespace {

void addLeaf(CompiledCriteria::Node& node, const MatchingCriteria& leaf, bool& readsFontHash)
{
    readsFontHash = readsFontHash || leaf.propertyName() == QLatin1String("fontHash");
    if (auto condition = CriteriaCondition::compile(leaf))
        node.conditions.push_back(std::move(condition));
}

std::unique_ptr<CompiledCriteria::Node> compileGroup(const MatchingCriteria& group, bool& readsFontHash)
{
    auto node = std::make_unique<CompiledCriteria::Node>();
    node->isAnyOf = group.groupKind() == MatchingCriteria::AnyOf;
    const QList<MatchingCriteriaPtr> children = group.children();
    for (const MatchingCriteriaPtr& child : children) {
        if (!child)
            continue;
        if (child->groupKind() == MatchingCriteria::Leaf) {
            addLeaf(*node, *child, readsFontHash);
            continue;
        }
        auto inner = compileGroup(*child, readsFontHash);
        if (!inner->isEmpty())
            node->groups.push_back(std::move(inner));
    }
    return node;
}

} // namespace

CompiledCriteria::CompiledCriteria(const MatchingCriteriaPtr& criteria)
    : m_root(std::make_unique<Node>())
{
    if (!criteria)
        return;
    if (criteria->groupKind() == MatchingCriteria::Leaf)
        addLeaf(*m_root, *criteria, m_readsFontHash);
    else
        m_root = compileGroup(*criteria, m_readsFontHash);
}

CompiledCriteria::~CompiledCriteria() = default;

bool CompiledCriteria::matchesEverything() const
{
    return m_root->isEmpty();
}

bool CompiledCriteria::matches(const fms::StaticFont& font) const
{
    if (m_root->isEmpty())
        return true;
    if (m_readsFontHash)
        font.fontHash(); // computes and keeps it, which the reading below cannot
    return fms::StaticFontAccess::read(font, [this](const fms::StaticFontData& data) { return m_root->matches(data); });
}
