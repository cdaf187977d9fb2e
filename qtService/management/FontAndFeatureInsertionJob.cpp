#include "qtService/management/FontAndFeatureInsertionJob.h"

#include "qtService/database/AdderDataFeatureFactory.h"
#include "qtService/database/AdderDataFontFactory.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/KrvUserDatabase.h"

FontAndFeatureInsertionJob::FontAndFeatureInsertionJob(const QList<Record>& records, KrvUserDatabase* userDatabase,
                                                       QSharedPointer<KrvFontRepository> repository,
                                                       QSharedPointer<KrvFeatureRepository> featureRepository)
    : m_records(records)
    , m_userDatabase(userDatabase)
    , m_repository(std::move(repository))
    , m_featureRepository(std::move(featureRepository))
{
}

FontAndFeatureInsertionJob::~FontAndFeatureInsertionJob()
{
    waitForFinished();
}

void FontAndFeatureInsertionJob::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    QList<StaticFontPtr> fonts;
    fonts.reserve(m_records.size());
    for (const Record& record : m_records)
        fonts.append(AdderDataFontFactory::instance()->createFont(record.first));
    QList<StaticFontPtr> stored;
    QList<KrvUserDatabase::FontHash> hashes;
    const auto storeFeatures = [&] {
        QList<FontFeaturesPtr> features;
        features.reserve(fonts.size());
        for (int i = 0; i < fonts.size(); ++i) {
            if (fonts.at(i)->id() == fms::StaticFont::NewId)
                continue;
            const FontFeaturesPtr record = AdderDataFeatureFactory::instance()->createFeatures(m_records.at(i).second);
            record->setFontId(fonts.at(i)->id());
            features.append(record);
        }
        return m_featureRepository->addFeatures(features);
    };
    // A font without features would stay without for ever, because no scan looks at what is catalogued.
    const bool complete = m_repository->addFonts(fonts, storeFeatures);
    for (const StaticFontPtr& font : qAsConst(fonts)) {
        if (font->id() == fms::StaticFont::NewId)
            continue;
        hashes.append(font->fontHash());
        stored.append(font);
    }
    // What the user said about a font that was catalogued before is in user.db already, and the repository has put it
    // into the record; only a row for those that have none is missing.
    bool known = stored.isEmpty() || m_userDatabase->beginTransaction();
    if (known && !stored.isEmpty()) {
        known = m_userDatabase->ensureFonts(hashes);
        known = m_userDatabase->endTransaction(known) && known;
    }
    {
        QWriteLocker locker(&m_lock);
        m_insertedFonts = stored;
    }
    setState(complete && known ? Finished : Failed);
}

QList<StaticFontPtr> FontAndFeatureInsertionJob::insertedFonts() const
{
    QReadLocker locker(&m_lock);
    return m_insertedFonts;
}
