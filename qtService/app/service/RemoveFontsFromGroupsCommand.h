#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QList>

class KrvFontRepository;
class KrvUserDatabase;

// Takes catalogued fonts out of user groups, group by group, and ends as Failed at the first group that refuses; groups
// that came earlier stay changed.
class RemoveFontsFromGroupsCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    RemoveFontsFromGroupsCommand(QSharedPointer<KrvFontRepository> repository, KrvUserDatabase* userDatabase,
                                 const QList<int>& groupIdList, const QList<int>& fontIdList);
    ~RemoveFontsFromGroupsCommand() override;

    bool succeeded() const;

protected:
    void operator()() override;

private:
    const QSharedPointer<KrvFontRepository> m_repository;
    KrvUserDatabase* const m_userDatabase;
    const QList<int> m_groupIdList;
    const QList<int> m_fontIdList;
    bool m_succeeded = false;
};

using RemoveFontsFromGroupsCommandPtr = QSharedPointer<RemoveFontsFromGroupsCommand>;
