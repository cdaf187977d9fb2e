#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QList>

class KrvFontRepository;
class KrvUserDatabase;

// Makes catalogued fonts members of user groups, group by group. A group that refuses ends the command as Failed;
// groups that came earlier keep their new members. Ids that are not in the catalogue are passed over.
class AddFontsToGroupsCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    AddFontsToGroupsCommand(QSharedPointer<KrvFontRepository> repository, KrvUserDatabase* userDatabase,
                            const QList<int>& groupIdList, const QList<int>& fontIdList);
    ~AddFontsToGroupsCommand() override;

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

using AddFontsToGroupsCommandPtr = QSharedPointer<AddFontsToGroupsCommand>;
