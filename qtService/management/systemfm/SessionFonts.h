#pragma once

#include "qtService/management/systemfm/BoundedFolders.h"
#include "qtService/management/systemfm/FontPlaces.h"
#include "qtService/management/systemfm/LogonSession.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace kerval::systemfm {

// The fonts that are active until the logon session ends: links in the session's folder, which vanish with it, reached
// through one link in the user's font folder. The links themselves say what is active, so a crash leaves nothing to
// repair but links that point nowhere.
//
// Not synchronised: the strategy serialises its changes.
class SessionFonts
{
public:
    SessionFonts(const FontPlaces& places, const LogonSession& session);

    // Reads the links of this session, clearing those whose font is gone.
    void load();
    // Makes the session's folder and the way to it; false when that cannot be had.
    bool prepare();

    bool contains(const QString& fileName) const { return m_fonts.contains(fileName); }
    QStringList fileNames() const { return m_fonts.keys(); }
    // The path under which programs see the font; empty for a font that is not linked.
    QString path(const QString& fileName) const;
    // The folder as programs see it.
    QString root() const { return m_folders.root(); }

    bool link(const QString& fileName);
    void remove(const QString& fileName);

    // Folders, as programs see them, whose content changed since the last call.
    QSet<QString> takeTouched();

private:
    struct Linked
    {
        QString folder;
        QString outline;
    };

    QStringList ownFiles(const QString& fileName, const Linked& linked) const;

    QString m_sessionFolder; // empty without a session
    BoundedFolders m_folders;
    QHash<QString, Linked> m_fonts;
    QSet<QString> m_touched;
};

} // namespace kerval::systemfm
