#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "updates/ApplicationUpdateChecker.h"

// One check for a newer release, driven by the network reply in the thread that makes the command. Its description is
// readable once the state is Finished (a release or none), Failed or Cancelled.
class UpdateCheckCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    UpdateCheckCommand();
    ~UpdateCheckCommand() override;

    void start() override;
    // The state follows from what the checker says: Failed for the aborted request, then Cancelled.
    void cancel() override;
    ApplicationUpdateChecker::UpdateDescription updateDescription() const;

protected:
    void operator()() override;

private slots:
    void onUpdateCheckFinished(ApplicationUpdateChecker::UpdateDescription updateDescription);

private:
    ApplicationUpdateChecker::UpdateDescription m_description;
    ApplicationUpdateChecker m_checker;
};

using UpdateCheckCommandPtr = QSharedPointer<UpdateCheckCommand>;
