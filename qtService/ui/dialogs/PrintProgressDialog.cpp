#include "qtService/ui/dialogs/PrintProgressDialog.h"

#include <QFileInfo>

PrintProgressDialog::PrintProgressDialog(FontSampleJobPtr job, const QString& title, const QString& operationText,
                                         QWidget* parent)
    : FileProgressDialog(QStringLiteral("PrintProgressDialog"), title, operationText, parent)
    , m_job(std::move(job))
{
    showProgress(m_job->progressTotal(), 0);
    connect(m_job.data(), &FontSampleJob::progressCurrentChanged, this, &PrintProgressDialog::onProgressChanged);
    connect(m_job.data(), &FontSampleJob::stateChanged, this, &PrintProgressDialog::onJobStateChanged);
    connect(this, &QDialog::rejected, this, &PrintProgressDialog::onRejected);
    // The job runs since before this dialog was made and may have ended meanwhile.
    onJobStateChanged(m_job->state());
}

void PrintProgressDialog::onProgressChanged(int progressTotal, int progressCurrent)
{
    showProgress(progressTotal, progressCurrent);
}

void PrintProgressDialog::onRejected()
{
    if (m_job->state() == FontSampleJob::Running || m_job->state() == FontSampleJob::NotStarted)
        m_job->cancelJob();
}

void PrintProgressDialog::onJobStateChanged(FontSampleJob::State state)
{
    const bool ended = state == FontSampleJob::Finished || state == FontSampleJob::Cancelled;
    if (!ended || !m_job)
        return;
    m_job->disconnect(this);
    if (state == FontSampleJob::Finished && QFileInfo::exists(m_job->saveFileName()))
        offerFile(m_job->saveFileName());
    else
        showFailure(tr("The file \"%1\" could not be written.").arg(m_job->saveFileName()));
}
