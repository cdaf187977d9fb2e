#include "qtService/management/ExtractFontArchiveCommand.h"

#include "fontfile/KrvFontFile.h"
#include "qtService/app/core/OnlineInfo.h"

#include <QDateTime>
#include <QDirIterator>

ExtractFontArchiveCommand::ExtractFontArchiveCommand(const ZipArchive& archive, const QString& destinationFolder,
                                                     bool markAsDownloaded)
    : m_archive(archive)
    , m_destinationFolder(destinationFolder)
    , m_markAsDownloaded(markAsDownloaded)
{
}

ExtractFontArchiveCommand::~ExtractFontArchiveCommand()
{
    waitForFinished();
}

void ExtractFontArchiveCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    if (!m_archive.open(ZipArchive::Read)) {
        qWarning("E_0_ \"%s\" cannot be opened as an archive", qUtf8Printable(m_archive.archivePath()));
        setState(Failed);
        return;
    }
    const QStringList entries = m_archive.entries();
    setProgressTotal(entries.size());
    for (const QString& entry : entries) {
        if (!m_archive.extract(entry, m_destinationFolder, false)) {
            setState(Failed);
            return;
        }
        setProgressCurrent(progressCurrent() + 1);
        if (state() == Cancelled)
            return;
    }
    m_archive.close();
    if (m_markAsDownloaded)
        markFontsAsDownloaded(m_destinationFolder);
    setState(Finished);
}

int ExtractFontArchiveCommand::markFontsAsDownloaded(const QString& folder)
{
    const QDateTime now = QDateTime::currentDateTime();
    int fonts = 0;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        if (!KrvFontFile(file).open(0))
            continue;
        ++fonts;
        // One that came along in the archive says what its maker wanted.
        krv::removeOnlineInfo(file);
        if (!krv::writeOnlineInfo(file, 0, QString(), now, true))
            qWarning("E_1_ The online information of \"%s\" could not be written", qUtf8Printable(file));
    }
    return fonts;
}
