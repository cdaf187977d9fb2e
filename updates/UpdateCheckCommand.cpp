#include "updates/UpdateCheckCommand.h"

UpdateCheckCommand::UpdateCheckCommand()
{
    connect(&m_checker, &ApplicationUpdateChecker::updateCheckFinished, this,
            &UpdateCheckCommand::onUpdateCheckFinished);
}

UpdateCheckCommand::~UpdateCheckCommand()
{
    // Destroying the checker aborts its request, which would report to a command that is half gone.
    m_checker.disconnect(this);
}

void UpdateCheckCommand::start()
{
    if (state() == Cancelled)
        return;
    setState(Running);
    m_checker.checkForUpdates();
}

void UpdateCheckCommand::cancel()
{
    m_checker.cancel();
}

void UpdateCheckCommand::operator()() {}

void UpdateCheckCommand::onUpdateCheckFinished(ApplicationUpdateChecker::UpdateDescription updateDescription)
{
    {
        QWriteLocker locker(&m_lock);
        m_description = updateDescription;
    }
    switch (updateDescription.status) {
    case ApplicationUpdateChecker::CheckFailed:
        setState(Failed);
        return;
    case ApplicationUpdateChecker::CheckCancelled:
        setState(Cancelled);
        return;
    default:
        setState(Finished);
    }
}

ApplicationUpdateChecker::UpdateDescription UpdateCheckCommand::updateDescription() const
{
    QReadLocker locker(&m_lock);
    return m_description;
}
