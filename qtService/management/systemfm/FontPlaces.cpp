#include "qtService/management/systemfm/FontPlaces.h"

#include "qtService/app/core/SettingsFolders.h"

#include <QDir>
#include <QStandardPaths>

namespace kerval::systemfm {

FontPlaces FontPlaces::ofUser()
{
    QString fonts = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/fonts");
    const QString oldFonts = QDir::homePath() + QStringLiteral("/.fonts");
    if (!QDir(fonts).exists() && QDir(oldFonts).exists())
        fonts = oldFonts;
    return at(fonts, QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
              QDir::cleanPath(krv::userSettingsFolder()));
}

FontPlaces FontPlaces::at(const QString& userFonts, const QString& configHome, const QString& dataFolder)
{
    FontPlaces places;
    places.userFonts = QDir::cleanPath(userFonts);
    places.placed = places.userFonts + QStringLiteral("/kerval");
    places.sessionLink = places.userFonts + QStringLiteral("/kerval-session");
    places.rulesFile = QDir::cleanPath(configHome) + QStringLiteral("/fontconfig/conf.d/60-kerval.conf");
    places.dataFolder = dataFolder;
    return places;
}

} // namespace kerval::systemfm
