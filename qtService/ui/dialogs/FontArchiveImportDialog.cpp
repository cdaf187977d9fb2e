#include "qtService/ui/dialogs/FontArchiveImportDialog.h"

#include <QFileInfo>

FontArchiveImportDialog::FontArchiveImportDialog(ImportFontArchivesCommandPtr command, const QString& title,
                                                 QWidget* parent)
    : FileProgressDialog(QStringLiteral("FontArchiveImportDialog"), title, tr("Unpacking archives..."), parent)
    , m_command(std::move(command))
{
    showProgress(0, 0);
    connect(m_command.data(), &ImportFontArchivesCommand::currentArchiveChanged, this, [this](const QString& path) {
        if (m_command->state() != AbstractAsynchronousCommand::Cancelled)
            setOperationText(tr("Unpacking \"%1\"...").arg(QFileInfo(path).fileName()));
    });
    connect(m_command.data(), &AbstractAsynchronousCommand::progressChanged, this,
            [this] { showProgress(m_command->progressTotal(), m_command->progressCurrent()); });
    connect(m_command.data(), &ImportFontArchivesCommand::ended, this, &QDialog::accept);
}

int FontArchiveImportDialog::exec()
{
    m_command->start();
    const int result = QDialog::exec();
    // The program may be ending under the open dialog.
    if (m_command->state() == AbstractAsynchronousCommand::Running)
        m_command->cancel();
    return result;
}

void FontArchiveImportDialog::reject()
{
    m_command->cancel();
    setOperationText(tr("Cancelling..."));
    disableCancel();
}

QString FontArchiveImportDialog::errorText(ImportFontArchivesCommand::Error error)
{
    switch (error) {
    case ImportFontArchivesCommand::NoError:
        return QString();
    case ImportFontArchivesCommand::NoArchive:
        return tr("It is no zip archive, or it is damaged.");
    case ImportFontArchivesCommand::Unsafe:
        return tr("It would write outside its own folder, or one of its files over another.");
    case ImportFontArchivesCommand::Encrypted:
        return tr("It is protected by a password.");
    case ImportFontArchivesCommand::Damaged:
        return tr("Its content is damaged.");
    case ImportFontArchivesCommand::TooLarge:
        return tr("It would unpack to more than fonts ever do.");
    case ImportFontArchivesCommand::NoRoom:
        return tr("There is not enough room on the disk.");
    case ImportFontArchivesCommand::NotWritten:
        return tr("Its files could not be written.");
    case ImportFontArchivesCommand::NoFonts:
        return tr("It holds no fonts.");
    }
    return QString();
}
