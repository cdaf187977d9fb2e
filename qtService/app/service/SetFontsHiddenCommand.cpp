#include "qtService/app/service/SetFontsHiddenCommand.h"

#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/StaticFont.h"

SetFontsHiddenCommand::SetFontsHiddenCommand(const QList<int>& fontIdList, bool hidden,
                                             QSharedPointer<KrvFontRepository> repository)
    : m_fontIdList(fontIdList)
    , m_hidden(hidden)
    , m_repository(std::move(repository))
{
}

SetFontsHiddenCommand::~SetFontsHiddenCommand()
{
    waitForFinished();
}

void SetFontsHiddenCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    QList<StaticFontPtr> fonts;
    fonts.reserve(m_fontIdList.size());
    for (const int id : m_fontIdList) {
        const StaticFontPtr font = m_repository->font(id);
        if (!font)
            continue;
        font->setIsHidden(m_hidden);
        fonts.append(font);
    }
    setState(m_repository->updateFonts(fonts, {QStringLiteral("isHidden")}) ? Finished : Failed);
}
