#pragma once

#include "qtService/management/ImportFontArchivesCommand.h"
#include "qtService/ui/dialogs/FileProgressDialog.h"

// Follows the unpacking of archives and closes when it has ended; Cancel waits until nothing half done is left.
class FontArchiveImportDialog : public FileProgressDialog
{
    Q_OBJECT

public:
    FontArchiveImportDialog(ImportFontArchivesCommandPtr command, const QString& title, QWidget* parent = nullptr);

    // Why an archive was refused, in a sentence.
    static QString errorText(ImportFontArchivesCommand::Error error);

public slots:
    int exec() override;
    void reject() override;

private:
    ImportFontArchivesCommandPtr m_command;
};
