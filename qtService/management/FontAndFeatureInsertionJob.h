#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/database/StaticFont.h"

#include <QHash>
#include <QPair>

class KrvFeatureRepository;
class KrvFontRepository;
class KrvUserDatabase;

// Stores one batch of analysed faces: the records in the catalogue, their features beside them, and a row in the user's
// own database for each. Runs on the thread pool; what it is given outlives it.
class FontAndFeatureInsertionJob : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    // What the adder program said about one face: its information and its features.
    using Record = QPair<QHash<QString, QString>, QHash<int, QList<float>>>;

    FontAndFeatureInsertionJob(const QList<Record>& records, KrvUserDatabase* userDatabase,
                               QSharedPointer<KrvFontRepository> repository,
                               QSharedPointer<KrvFeatureRepository> featureRepository);
    ~FontAndFeatureInsertionJob() override;

    // Those that stayed in the catalogue; fewer than there were records after a failure.
    QList<StaticFontPtr> insertedFonts() const;

protected:
    void operator()() override;

private:
    const QList<Record> m_records;
    KrvUserDatabase* const m_userDatabase;
    const QSharedPointer<KrvFontRepository> m_repository;
    const QSharedPointer<KrvFeatureRepository> m_featureRepository;
    QList<StaticFontPtr> m_insertedFonts;
};
