#pragma once

#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/FontCollectionInterface.h"
#include "qtService/management/FontMembers.h"

// A matching query over the members that a group has when the command is made. It asks the collection at the root of
// the group's sources, so that a group of groups costs one query, and a font that has left the catalogue meanwhile is
// not found. Matches come in the group's order unless another is asked for.
class FontGroupFindMathingFontsCommand : public FindMathingFontsCommand
{
    Q_OBJECT

public:
    FontGroupFindMathingFontsCommand(const QSharedPointer<FontCollectionInterface>& source, const FontMembers& members,
                                     const MatchingCriteriaPtr& criteria, bool idsOnly);
    ~FontGroupFindMathingFontsCommand() override;

protected:
    void operator()() override;

private:
    MatchingCriteriaPtr criteriaAmongMembers() const;
    QList<int> membersAmong(QList<int> fontIds) const;
    QList<StaticFontPtr> membersAmong(QList<StaticFontPtr> fonts) const;
    QList<StaticFontPtr> inGroupOrder(const QList<StaticFontPtr>& fonts) const;

    QSharedPointer<FontCollectionInterface> m_root;
    FontMembers m_members;
};
