#include "qtService/app/service/RemoveFontsFromGroupsCommand.h"

#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

RemoveFontsFromGroupsCommand::RemoveFontsFromGroupsCommand(QSharedPointer<KrvFontRepository> repository,
                                                           KrvUserDatabase* userDatabase, const QList<int>& groupIdList,
                                                           const QList<int>& fontIdList)
    : m_repository(std::move(repository))
    , m_userDatabase(userDatabase)
    , m_groupIdList(groupIdList)
    , m_fontIdList(fontIdList)
{
}

RemoveFontsFromGroupsCommand::~RemoveFontsFromGroupsCommand()
{
    waitForFinished();
}

bool RemoveFontsFromGroupsCommand::succeeded() const
{
    QReadLocker locker(&m_lock);
    return m_succeeded;
}

void RemoveFontsFromGroupsCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    QList<KrvUserDatabase::FontHash> hashes;
    const QList<StaticFontPtr> fonts = m_repository->findMatchingFonts(MatchingCriteria::idIn(m_fontIdList));
    hashes.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        hashes.append(font->fontHash());

    for (const int groupId : m_groupIdList) {
        if (hashes.isEmpty())
            break;
        if (state() == Cancelled)
            return;
        if (!m_userDatabase->removeFontsFromGroup(hashes, groupId)) {
            setState(Failed);
            return;
        }
    }
    {
        QWriteLocker locker(&m_lock);
        m_succeeded = true;
    }
    setState(Finished);
}
