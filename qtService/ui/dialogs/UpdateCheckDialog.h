#pragma once

#include "updates/UpdateCheckCommand.h"

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

// Checks for a newer release before the user's eyes, or shows what a check has found already.
class UpdateCheckDialog : public QDialog
{
    Q_OBJECT

public:
    // exec() starts the command.
    UpdateCheckDialog(UpdateCheckCommandPtr command, QWidget* parent);
    UpdateCheckDialog(ApplicationUpdateChecker::UpdateDescription description, QWidget* parent);

    int exec() override;

private slots:
    void onUpdateCheckCommandStateChanged(AbstractAsynchronousCommand::State state);
    void onRejected();
    void openUrl(QString url);

private:
    void setupUi(const QString& title);
    void showOutcome();

    UpdateCheckCommandPtr m_command;
    ApplicationUpdateChecker::UpdateDescription m_description;
    QLabel* m_label;
    QProgressBar* m_bar;
    QPushButton* m_cancel;
    QPushButton* m_close;
};
