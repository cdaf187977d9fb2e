#pragma once

#include "qtService/database/StaticFont.h"

#include <QList>
#include <QString>

class QMimeData;
class QPixmap;
class QWidget;

// Fonts on their way from the list to a group, or to another program as files.
namespace fonts {

QString fontIdListMimeType();
QString hiddenFontIdListMimeType();

// The fonts' ids under the one type or the other, and their files for other programs. The caller owns the result.
QMimeData* createMimeData(const QList<StaticFontPtr>& fonts, bool hidden);
bool hasFontIds(const QMimeData* data);
// The ids of either type; empty when there are none or the data is broken.
QList<int> fontIdsOf(const QMimeData* data);
// A small label to follow the pointer, in the widget's font and colours.
QPixmap dragPixmap(const QString& label, const QWidget* widget);

} // namespace fonts
