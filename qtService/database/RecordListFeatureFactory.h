#pragma once

#include "qtService/app/core/KrvSingletonObject.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/FontFeatures.h"
#include "qtService/database/SqlRecordReadStrategy.h"

#include <QObject>

// Makes features from rows of table "feature".
class RecordListFeatureFactory : public QObject, public KrvSingletonObject<RecordListFeatureFactory>
{
    Q_OBJECT

public:
    explicit RecordListFeatureFactory(QObject* parent = nullptr);

    // One object for each row.
    QList<FontFeaturesPtr> createFeatures(SqlRecordReadStrategy<FontDatabase::FeatureTableColumn>& rows) const;

    // The vectors of a blob. Reading takes it for a key and the vectors of the whole alphabet, repeated, and keeps the
    // first 15 values of each vector: what reads features in earnest is the helper programs, which know the layout the
    // writer gives the blob.
    static FontFeaturesPtr fromBlob(const QByteArray& blob);
};
