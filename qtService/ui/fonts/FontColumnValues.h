#pragma once

#include "qtService/database/StaticFont.h"

#include <QString>
#include <QVariant>

// What the columns of the font list show of a record; shared by the list, the sort order and the details table.
namespace fonts {

// Header text of a column, translated.
QString columnTitle(int column);

// The value of the columns 3 to 27; null for the others.
QVariant columnValue(const StaticFontPtr& font, int column);

QString activityText(int activityType);

// How the source of a web font is named to the user.
QString onlineSourceText(const QString& onlineSource);

// The sample a row shows while the user has chosen no text of their own.
QString defaultSampleText(const StaticFontPtr& font, bool withStyle);

} // namespace fonts
