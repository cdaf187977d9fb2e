#include "qtService/app/service/SetOnlineSourceCommand.h"

#include "qtService/app/core/OnlineInfo.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

SetOnlineSourceCommand::SetOnlineSourceCommand(const QList<int>& fontIdList, const QString& onlineSource, int onlineId,
                                               QSharedPointer<KrvFontRepository> repository)
    : m_fontIdList(fontIdList)
    , m_onlineSource(onlineSource)
    , m_onlineId(onlineId)
    , m_repository(std::move(repository))
{
}

SetOnlineSourceCommand::~SetOnlineSourceCommand()
{
    waitForFinished();
}

void SetOnlineSourceCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    const QList<StaticFontPtr> fonts = m_repository->findMatchingFonts(MatchingCriteria::idIn(m_fontIdList));
    for (const StaticFontPtr& font : fonts) {
        if (state() == Cancelled)
            return;
        if (!krv::writeOnlineInfo(font->fileName(), m_onlineId, m_onlineSource, QDateTime(), false)) {
            setState(Failed);
            return;
        }
    }
    // Records are live: they change only once every file is written.
    for (const StaticFontPtr& font : fonts) {
        font->setOnlineId(m_onlineId);
        font->setOnlineSource(m_onlineSource);
    }
    const bool updated = m_repository->updateFonts(fonts, {QStringLiteral("onlineId"), QStringLiteral("onlineSource")});
    setState(updated ? Finished : Failed);
}
