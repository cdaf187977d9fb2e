#pragma once

#include "qtService/database/FindMathingFontsCommand.h"

// Puts criteria to records in memory: a snapshot taken when the command is made. Matches keep its order unless an
// ordering is set.
class CachedFindMathingFontsCommand : public FindMathingFontsCommand
{
    Q_OBJECT

public:
    CachedFindMathingFontsCommand(const QList<StaticFontPtr>& snapshot, const MatchingCriteriaPtr& criteria,
                                  bool idsOnly);
    ~CachedFindMathingFontsCommand() override;

protected:
    void operator()() override;

private:
    const QList<StaticFontPtr> m_snapshot;
};
