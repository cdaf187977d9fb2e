#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/management/ArchivesFolder.h"
#include "qtService/management/ZipArchive.h"

// Unpacks zip archives of fonts into folders of the library and marks their fonts as downloaded. Each archive comes in
// whole or leaves nothing behind; one that is in the library already is not unpacked again, only what has been deleted
// from its folder comes back. Archives that are built to fill the disk are refused. The caller adds the folders to the
// catalogue.
//
// Progress counts kibibytes of content. Failed when no archive could be imported, with the reasons in results().
// Cancelled keeps the archives that were whole by then; ended() tells when the worker has cleaned up behind itself.
class ImportFontArchivesCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    enum Error
    {
        NoError = 0,
        NoArchive, // cannot be read as one
        Unsafe,    // writes outside its folder, or one entry over the other
        Encrypted,
        Damaged,
        TooLarge, // unpacks to more than fonts ever do
        NoRoom,
        NotWritten,
        NoFonts
    };
    Q_ENUM(Error)

    struct Result
    {
        QString archivePath;
        QString folder; // empty when it was refused
        Error error = NoError;
    };

    ImportFontArchivesCommand(const QStringList& archivePaths, const QString& archivesFolder);
    ~ImportFontArchivesCommand() override;

    // By its name; what is in it shows when it is imported.
    static bool isArchive(const QString& path);

    QList<Result> results() const;

signals:
    void currentArchiveChanged(QString archivePath);
    void ended();

protected:
    void operator()() override;

private:
    void run();
    bool import(const QString& archivePath, Result* result);
    Error unpack(ZipArchive* archive, const QString& folder);
    void count(qint64 bytes);

    const QStringList m_archivePaths;
    const ArchivesFolder m_folder;
    QList<Result> m_results;
    qint64 m_bytesDone = 0;
};

using ImportFontArchivesCommandPtr = QSharedPointer<ImportFontArchivesCommand>;
