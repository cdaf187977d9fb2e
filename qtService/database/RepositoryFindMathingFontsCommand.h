#pragma once

#include "qtService/database/FindMathingFontsCommand.h"

class FontRepositoryStrategy;

// A matching query over the repository: what the strategy's own query can know is asked of it; conditions on activity,
// duplicates and the hidden flag, which no database column holds, are put to the records it finds.
class RepositoryFindMathingFontsCommand : public FindMathingFontsCommand
{
    Q_OBJECT

public:
    RepositoryFindMathingFontsCommand(const QSharedPointer<FontRepositoryStrategy>& strategy,
                                      const MatchingCriteriaPtr& criteria, bool idsOnly);
    ~RepositoryFindMathingFontsCommand() override;

protected:
    void operator()() override;

private:
    QSharedPointer<FontRepositoryStrategy> m_strategy;
};
