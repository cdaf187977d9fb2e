#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QList>

class KrvFeatureRepository;
class KrvFontRepository;

// Takes fonts out of the catalogue, and their features with them; files and the user's own data stay.
class RemoveFontsCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    RemoveFontsCommand(const QList<int>& fontIdList, QSharedPointer<KrvFontRepository> repository,
                       QSharedPointer<KrvFeatureRepository> featureRepository = {});
    ~RemoveFontsCommand() override;

protected:
    void operator()() override;

private:
    const QList<int> m_fontIdList;
    const QSharedPointer<KrvFontRepository> m_repository;
    const QSharedPointer<KrvFeatureRepository> m_featureRepository;
};

using RemoveFontsCommandPtr = QSharedPointer<RemoveFontsCommand>;
