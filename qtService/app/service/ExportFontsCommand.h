#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/management/ZipArchive.h"

#include <QStringList>

// Packs files into a new zip archive under their bare names; of files with one name, compared without regard to case
// because archives travel, the second and later get " (2)", " (3)" ... before their suffix. A file that cannot be
// packed ends the command as Failed; the archive then holds what came before, as it does after a cancellation.
class ExportFontsCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    ExportFontsCommand(const ZipArchive& archive, const QStringList& filePaths);
    ~ExportFontsCommand() override;

    QString archivePath() const { return m_archive.archivePath(); }

protected:
    void operator()() override;

private:
    ZipArchive m_archive;
    const QStringList m_filePaths;
};

using ExportFontsCommandPtr = QSharedPointer<ExportFontsCommand>;
