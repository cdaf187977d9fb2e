#include "qtService/app/service/CloneGroupCommand.h"

#include "qtService/database/KrvUserDatabase.h"

CloneGroupCommand::CloneGroupCommand(KrvUserDatabase* userDatabase, int groupId, const QString& groupName)
    : m_userDatabase(userDatabase)
    , m_groupId(groupId)
    , m_groupName(groupName)
{
}

CloneGroupCommand::~CloneGroupCommand()
{
    waitForFinished();
}

int CloneGroupCommand::newGroupId() const
{
    QReadLocker locker(&m_lock);
    return m_newGroupId;
}

void CloneGroupCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    if (m_groupId >= 1 && !m_groupName.isEmpty()) {
        const QList<KrvUserDatabase::FontHash> hashes = m_userDatabase->groupFontHashes({m_groupId});
        int newGroupId = m_userDatabase->addGroup(m_groupName, 0);
        if (newGroupId > 0 && !hashes.isEmpty() && !m_userDatabase->addFontsToGroup(hashes, newGroupId))
            newGroupId = 0;
        QWriteLocker locker(&m_lock);
        m_newGroupId = newGroupId;
    }
    setState(Finished);
}
