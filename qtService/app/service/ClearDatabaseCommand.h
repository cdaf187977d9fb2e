#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

class FontAdder;
class KrvFeatureRepository;
class KrvFontRepository;

// Empties the catalogue and its features; the user's own data stays. Asks the adder to stop and does not wait for it.
class ClearDatabaseCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    ClearDatabaseCommand(QSharedPointer<FontAdder> fontAdder, QSharedPointer<KrvFontRepository> repository,
                         QSharedPointer<KrvFeatureRepository> featureRepository);
    ~ClearDatabaseCommand() override;

protected:
    void operator()() override;

private:
    const QSharedPointer<FontAdder> m_fontAdder;
    const QSharedPointer<KrvFontRepository> m_repository;
    const QSharedPointer<KrvFeatureRepository> m_featureRepository;
};

using ClearDatabaseCommandPtr = QSharedPointer<ClearDatabaseCommand>;
