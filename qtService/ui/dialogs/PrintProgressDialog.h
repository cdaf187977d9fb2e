#pragma once

#include "fontfile/sheets/FontSampleJob.h"
#include "qtService/ui/dialogs/FileProgressDialog.h"

// Follows a job that makes a PDF; closing it while the job runs cancels the job.
class PrintProgressDialog : public FileProgressDialog
{
    Q_OBJECT

public:
    PrintProgressDialog(FontSampleJobPtr job, const QString& title, const QString& operationText,
                        QWidget* parent = nullptr);

private slots:
    void onProgressChanged(int progressTotal, int progressCurrent);
    void onRejected();
    void onJobStateChanged(FontSampleJob::State state);

private:
    FontSampleJobPtr m_job;
};
