#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/management/ZipArchive.h"

// Unpacks a zip archive of fonts into a folder. Failed when the archive cannot be opened or an entry cannot be written;
// what was written before stays. With `markAsDownloaded` every font below the folder gets an online information file
// that says it was bought and downloaded now.
class ExtractFontArchiveCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    ExtractFontArchiveCommand(const ZipArchive& archive, const QString& destinationFolder, bool markAsDownloaded);
    ~ExtractFontArchiveCommand() override;

    // Every font below the folder; how many there are.
    static int markFontsAsDownloaded(const QString& folder);

protected:
    void operator()() override;

private:
    ZipArchive m_archive;
    const QString m_destinationFolder;
    const bool m_markAsDownloaded;
};

using ExtractFontArchiveCommandPtr = QSharedPointer<ExtractFontArchiveCommand>;
