#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QString>

class KrvUserDatabase;

// Copies a user group with its members to a new group at the top level. Always ends Finished: a caller learns of a
// failure from newGroupId() being 0.
class CloneGroupCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    CloneGroupCommand(KrvUserDatabase* userDatabase, int groupId, const QString& groupName);
    ~CloneGroupCommand() override;

    int newGroupId() const;

protected:
    void operator()() override;

private:
    KrvUserDatabase* const m_userDatabase;
    const int m_groupId;
    const QString m_groupName;
    int m_newGroupId = 0;
};

using CloneGroupCommandPtr = QSharedPointer<CloneGroupCommand>;
