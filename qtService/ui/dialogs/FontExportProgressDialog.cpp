#include "qtService/ui/dialogs/FontExportProgressDialog.h"

FontExportProgressDialog::FontExportProgressDialog(ExportFontsCommandPtr command, const QString& title,
                                                   const QString& operationText, QWidget* parent)
    : FileProgressDialog(QStringLiteral("FontExportProgressDialog"), title, operationText, parent)
    , m_command(std::move(command))
{
    showProgress(m_command->progressTotal(), 0);
    connect(m_command.data(), &AbstractAsynchronousCommand::progressChanged, this,
            &FontExportProgressDialog::onProgressChanged);
    connect(m_command.data(), &AbstractAsynchronousCommand::stateChanged, this,
            &FontExportProgressDialog::onCommandStateChanged);
    connect(this, &QDialog::rejected, this, &FontExportProgressDialog::onRejected);
}

int FontExportProgressDialog::exec()
{
    m_command->start();
    return QDialog::exec();
}

void FontExportProgressDialog::onRejected()
{
    if (m_command->state() == AbstractAsynchronousCommand::Running ||
        m_command->state() == AbstractAsynchronousCommand::Idle)
        m_command->cancel();
}

void FontExportProgressDialog::onProgressChanged(int progressTotal, int progressCurrent)
{
    // A change of the total reports itself as the current value too; the command knows better.
    Q_UNUSED(progressCurrent)
    showProgress(progressTotal, m_command->progressCurrent());
}

void FontExportProgressDialog::onCommandStateChanged(AbstractAsynchronousCommand::State state)
{
    if (state == AbstractAsynchronousCommand::Finished)
        offerFile(m_command->archivePath());
    else if (state == AbstractAsynchronousCommand::Failed)
        showFailure(tr("The archive \"%1\" could not be written.").arg(m_command->archivePath()));
}
