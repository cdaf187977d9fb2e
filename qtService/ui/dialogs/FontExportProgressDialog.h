#pragma once

#include "qtService/app/service/ExportFontsCommand.h"
#include "qtService/ui/dialogs/FileProgressDialog.h"

// Starts an export and follows it; closing it while the command runs cancels the command.
class FontExportProgressDialog : public FileProgressDialog
{
    Q_OBJECT

public:
    FontExportProgressDialog(ExportFontsCommandPtr command, const QString& title, const QString& operationText,
                             QWidget* parent = nullptr);

    int exec() override;

private slots:
    void onRejected();
    void onProgressChanged(int progressTotal, int progressCurrent);
    void onCommandStateChanged(AbstractAsynchronousCommand::State state);

private:
    ExportFontsCommandPtr m_command;
};
