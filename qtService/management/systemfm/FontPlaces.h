#pragma once

#include <QString>

namespace kerval::systemfm {

// Where the files lie through which fonts are switched for fontconfig. No path ends in "/".
struct FontPlaces
{
    QString userFonts;   // the user's own font folder
    QString placed;      // permanently active fonts: real files in small numbered folders
    QString sessionLink; // a link to the session's folder of font links
    QString rulesFile;   // our one fontconfig file
    QString dataFolder;  // permactive.ini, tempactive.ini

    // $XDG_DATA_HOME/fonts, or ~/.fonts where only that exists: making the first would hide the second from sandboxed
    // programs.
    static FontPlaces ofUser();
    static FontPlaces at(const QString& userFonts, const QString& configHome, const QString& dataFolder);
};

} // namespace kerval::systemfm
