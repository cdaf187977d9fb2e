#pragma once

#include <QString>

// The folder of the library in which imported archives of fonts lie, each in a folder of its own that is named after
// the archive. A hidden record in that folder says which archive it came from, by the hash of the archive's content: so
// the same archive is found again under any name, and another archive of the same name gets a number.
//
// An archive is unpacked beside its place, in a hidden folder, and moved there when it is whole. One thread at a time
// changes the folder.
class ArchivesFolder
{
public:
    explicit ArchivesFolder(const QString& path);
    // In the per-user data folder.
    static QString userPath();

    QString path() const { return m_path; }
    // The folder of the archive with this content; empty when it has none.
    QString folderOf(const QByteArray& contentHash) const;
    // A new hidden folder to unpack into; empty when it cannot be made.
    QString createUnpackingFolder() const;
    // Gives an unpacked folder its record and its place: among what is there already when the archive has a folder. The
    // place; empty when it could not be moved.
    QString adopt(const QString& unpacked, const QString& archivePath, const QByteArray& contentHash) const;
    // What an import that was killed has left.
    void removeLeftovers() const;

private:
    QString freeFolder(const QString& archivePath) const;

    const QString m_path;
};
