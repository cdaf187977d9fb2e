#include "qtService/app/service/AddFontsToGroupsCommand.h"

#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

AddFontsToGroupsCommand::AddFontsToGroupsCommand(QSharedPointer<KrvFontRepository> repository,
                                                 KrvUserDatabase* userDatabase, const QList<int>& groupIdList,
                                                 const QList<int>& fontIdList)
    : m_repository(std::move(repository))
    , m_userDatabase(userDatabase)
    , m_groupIdList(groupIdList)
    , m_fontIdList(fontIdList)
{
}

AddFontsToGroupsCommand::~AddFontsToGroupsCommand()
{
    waitForFinished();
}

bool AddFontsToGroupsCommand::succeeded() const
{
    QReadLocker locker(&m_lock);
    return m_succeeded;
}

void AddFontsToGroupsCommand::operator()()
{
    const char* const place = "AddFontsToGroupsCommand::operator () qtService/app/addfontstogroupscommand";
    qDebug("M_3_ %s", place);
    if (state() == Cancelled)
        return;
    setState(Running);

    QList<KrvUserDatabase::FontHash> hashes;
    const QList<StaticFontPtr> fonts = m_repository->findMatchingFonts(MatchingCriteria::idIn(m_fontIdList));
    hashes.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        hashes.append(font->fontHash());
    qDebug("M_3_ %s %d fonts, %d asked for, %d groups", place, hashes.size(), m_fontIdList.size(),
           m_groupIdList.size());

    for (const int groupId : m_groupIdList) {
        if (hashes.isEmpty())
            break;
        if (state() == Cancelled)
            return;
        if (!m_userDatabase->addFontsToGroup(hashes, groupId)) {
            qWarning("E_1_ %s group %d FAILED", place, groupId);
            setState(Failed);
            return;
        }
        qDebug("M_3_ %s group %d SUCCEDED", place, groupId);
    }
    {
        QWriteLocker locker(&m_lock);
        m_succeeded = true;
    }
    setState(Finished);
}
