#pragma once

#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/FontDatabase.h"

// Answers criteria with one statement on fms.db. Fails when the statement does.
class RelationalFindMathingFontsCommand : public FindMathingFontsCommand
{
    Q_OBJECT

public:
    RelationalFindMathingFontsCommand(const QSharedPointer<FontDatabase>& database, const MatchingCriteriaPtr& criteria,
                                      bool idsOnly);
    ~RelationalFindMathingFontsCommand() override;

protected:
    void operator()() override;

private:
    const QSharedPointer<FontDatabase> m_database;
};
