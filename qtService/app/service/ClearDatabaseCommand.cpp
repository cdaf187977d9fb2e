#include "qtService/app/service/ClearDatabaseCommand.h"

#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/FontAdder.h"

ClearDatabaseCommand::ClearDatabaseCommand(QSharedPointer<FontAdder> fontAdder,
                                           QSharedPointer<KrvFontRepository> repository,
                                           QSharedPointer<KrvFeatureRepository> featureRepository)
    : m_fontAdder(std::move(fontAdder))
    , m_repository(std::move(repository))
    , m_featureRepository(std::move(featureRepository))
{
}

ClearDatabaseCommand::~ClearDatabaseCommand()
{
    waitForFinished();
}

void ClearDatabaseCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    emit m_fontAdder->shouldStop();
    m_repository->removeAll();
    m_featureRepository->removeAllFeatures();
    setState(Finished);
}
