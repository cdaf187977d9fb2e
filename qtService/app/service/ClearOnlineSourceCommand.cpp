#include "qtService/app/service/ClearOnlineSourceCommand.h"

#include "qtService/app/core/OnlineInfo.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

#include <QSet>

ClearOnlineSourceCommand::ClearOnlineSourceCommand(const QList<int>& fontIdList,
                                                   QSharedPointer<KrvFontRepository> repository)
    : m_fontIdList(fontIdList)
    , m_repository(std::move(repository))
{
}

ClearOnlineSourceCommand::~ClearOnlineSourceCommand()
{
    waitForFinished();
}

void ClearOnlineSourceCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    const QList<StaticFontPtr> fonts = m_repository->findMatchingFonts(MatchingCriteria::idIn(m_fontIdList));
    QSet<QString> cleared; // faces of one collection share their file
    for (const StaticFontPtr& font : fonts) {
        if (state() == Cancelled)
            return;
        const QString fileName = font->fileName();
        if (!cleared.contains(fileName) && !krv::removeOnlineInfo(fileName)) {
            setState(Failed);
            return;
        }
        cleared.insert(fileName);
    }
    for (const StaticFontPtr& font : fonts) {
        font->setOnlineId(0);
        font->setOnlineSource(QString());
    }
    const bool updated = m_repository->updateFonts(fonts, {QStringLiteral("onlineSource"), QStringLiteral("onlineId")});
    setState(updated ? Finished : Failed);
}
