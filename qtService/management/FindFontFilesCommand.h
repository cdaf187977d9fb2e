#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QList>
#include <QPair>
#include <QSet>
#include <QStringList>

class KrvFontFile;

// Walks files and folders and reports every font file that can be catalogued with the number of its faces, and fonts
// that must not be catalogued with the reason. Signals come from the pool thread, one for each file, no lock held.
//
// Entries come sorted by name. Symbolic links inside a folder are followed after everything else, and only to what the
// search has not met: a folder that is linked to several times, or from inside itself, is searched once, and a file is
// reported under its real name rather than under a link's. Pipes, sockets and devices are never opened. Our own
// activation folders hold copies of catalogued fonts and are passed over.
//
// Archives stay packed: what a folder holds may be a backup of the user's that nobody asked to have unpacked. Only an
// archive that the user names is imported (ImportFontArchivesCommand).
//
// What cannot be read (a folder, a broken font file, a name that is no valid text) is told in the service's log window
// and passed over; the search never fails as a whole.
class FindFontFilesCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    enum Error
    {
        NoError = 0,
        BrokenNameTable = 1,
        EmptyPostScriptName = 2,
        HiddenFontName = 3
    };
    Q_ENUM(Error)

    // maxDepth 0 or less searches without limit; 1 is the folder itself and its direct subfolders.
    FindFontFilesCommand(const QStringList& paths, int maxDepth);
    ~FindFontFilesCommand() override;

    // True for a font that can be catalogued. `error` is changed only for a font that must not be.
    static bool isFontFile(const QString& path, int* faces, int* error);
    // Of an open font. A name with blanks counts, which some well-known fonts have and the font reader rejects.
    static bool hasPostScriptName(const KrvFontFile& font);

signals:
    void fontFilesFound(QList<QPair<QString, int>> fontFileFaceIndexList);
    void failedFontFileFound(QString fileName, int error);

protected:
    void operator()() override;

private:
    enum class Reached
    {
        Directly,
        ThroughLink
    };
    struct Link
    {
        QString path;
        int depth = 0;
    };

    void searchPath(const QString& path, int depth, Reached reached);
    void searchFolder(const QString& path, int depth, Reached reached);
    void followLinks();
    void findFile(const QString& path, Reached reached);
    void processFile(const QString& path);
    bool isOwnFolder(const QString& path) const;

    const QStringList m_paths;
    const int m_maxDepth;
    QStringList m_ownFolders;
    QList<Link> m_links;
    QSet<QPair<quint64, quint64>> m_seenFolders;
    QSet<QPair<quint64, quint64>> m_seenFiles;
};
