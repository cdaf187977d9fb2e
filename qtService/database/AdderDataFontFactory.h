#pragma once

#include "qtService/app/core/KrvSingletonObject.h"
#include "qtService/database/StaticFont.h"

#include <QHash>
#include <QObject>

// Makes records from what the adder program reports about a face: texts by the names of fms.db's columns.
class AdderDataFontFactory : public QObject, public KrvSingletonObject<AdderDataFontFactory>
{
    Q_OBJECT

public:
    explicit AdderDataFontFactory(QObject* parent = nullptr);

    // A missing key counts as an empty text. The record keeps StaticFont::NewId until it is stored.
    StaticFontPtr createFont(const QHash<QString, QString>& fontInfo) const;
};
