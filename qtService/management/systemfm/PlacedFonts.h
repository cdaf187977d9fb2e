#pragma once

#include "qtService/management/systemfm/BoundedFolders.h"
#include "qtService/management/systemfm/FontPlaces.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QVector>

namespace kerval::systemfm {

// The permanently active fonts that the system would not find by itself: real files in folders of ours, and
// permactive.ini, which maps each to the font file it stands for.
//
// The map is written before the files are made and after they are removed, so that after a crash at any moment
// reconcile() can tell ours from strays. It grows by appended lines (the last one of a key counts, an empty value takes
// the key away), because rewriting fifty thousand entries for one font would make every switch slow; it is rewritten
// when most of its lines are stale.
//
// Not synchronised: the strategy serialises its changes.
class PlacedFonts
{
public:
    explicit PlacedFonts(const FontPlaces& places);

    void load();
    // Clears what points nowhere and what belongs to nobody, renews copies whose font has changed.
    void reconcile();

    struct Placed
    {
        QString folder;
        QString outline; // file name within the folder
        bool isCopy = false;
    };
    // Every font with its place, quick to copy; path() below makes a path of a place.
    QVector<QPair<QString, Placed>> all() const;
    QString path(const Placed& placed) const;

    bool contains(const QString& fileName) const { return m_fonts.contains(fileName); }
    // The full path of our file that programs read; empty for a font that is not placed.
    QString path(const QString& fileName) const;
    QString root() const { return m_folders.root(); }

    // Notes the fonts as ours, before any file is made. False when that cannot be stored; then none is noted.
    bool note(const QStringList& fileNames);
    // Makes the files of a noted font. On failure nothing of it is left.
    bool place(const QString& fileName);
    // Removes the files, then forgets the fonts. Folders left empty are removed too.
    void remove(const QStringList& fileNames);

    // Folders whose content changed since the last call.
    QSet<QString> takeTouched();

private:
    bool append(const QByteArray& lines);
    void rewrite();
    QByteArray line(const QString& fileName, const Placed& placed) const;
    static QByteArray removalLine(const Placed& placed);
    QStringList ownFiles(const QString& fileName, const Placed& placed) const;
    bool stillStandsFor(const QString& fileName, const Placed& placed) const;
    void clearStrays();

    QString m_indexFile;
    QString m_strayFolder;
    BoundedFolders m_folders;
    QHash<QString, Placed> m_fonts;
    QSet<QString> m_touched;
    int m_lines = 0;
};

} // namespace kerval::systemfm
