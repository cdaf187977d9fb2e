#include "qtService/app/service/RemoveFontsCommand.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/database/FontFeatures.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"

RemoveFontsCommand::RemoveFontsCommand(const QList<int>& fontIdList, QSharedPointer<KrvFontRepository> repository,
                                       QSharedPointer<KrvFeatureRepository> featureRepository)
    : m_fontIdList(fontIdList)
    , m_repository(std::move(repository))
    , m_featureRepository(std::move(featureRepository))
{
}

RemoveFontsCommand::~RemoveFontsCommand()
{
    waitForFinished();
}

void RemoveFontsCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    const QList<StaticFontPtr> fonts = m_repository->findMatchingFonts(MatchingCriteria::idIn(m_fontIdList));
    if (fonts.isEmpty()) {
        setState(Finished);
        return;
    }
    if (!m_repository->removeFonts(fonts)) {
        setState(Failed);
        return;
    }
    if (m_featureRepository) {
        QList<FontFeaturesPtr> features;
        features.reserve(fonts.size());
        for (const StaticFontPtr& font : fonts) {
            features.append(FontFeaturesPtr::create());
            features.last()->setFontId(font->id());
        }
        if (!m_featureRepository->removeFeatures(features))
            qWarning("E_1_ The features of removed fonts could not be removed");
    }
    for (const StaticFontPtr& font : fonts)
        FMSLog::logEvent(FMSLog::FontRemoved, font->fileName());
    setState(Finished);
}
