#pragma once

#include "qtService/app/core/KrvSingletonObject.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/SqlRecordReadStrategy.h"
#include "qtService/database/StaticFont.h"

#include <QObject>

// Makes records from rows of table "font". Their activity is unknown (-1) until the repository fills it in.
class RecordListFontFactory : public QObject, public KrvSingletonObject<RecordListFontFactory>
{
    Q_OBJECT

public:
    using Rows = SqlRecordReadStrategy<FontDatabase::FontTableColumn>;

    explicit RecordListFontFactory(QObject* parent = nullptr);

    // One record for each row.
    QList<StaticFontPtr> createFonts(Rows& rows) const;
    // The record of an existing row.
    StaticFontPtr createFont(Rows& rows, int row) const;
};
