#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QDialog>

// Starts a command and waits for it behind a small modal window with a busy bar; accepted when the command finished,
// rejected when it failed or was cancelled. Keeps the command alive while it is open. Main thread.
class AsynchronousCommandWaitIndicatorDialog : public QDialog
{
    Q_OBJECT

public:
    AsynchronousCommandWaitIndicatorDialog(QSharedPointer<AbstractAsynchronousCommand> command, const QString& title,
                                           const QString& description, QWidget* parent = nullptr);
    ~AsynchronousCommandWaitIndicatorDialog() override;

    int exec() override;

    // Waits for a command that may be null (the service has stopped): then the answer is false at once.
    static bool wait(const QSharedPointer<AbstractAsynchronousCommand>& command, const QString& title,
                     const QString& description, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void onCommandStateChanged(AbstractAsynchronousCommand::State state);

private:
    QSharedPointer<AbstractAsynchronousCommand> m_command;
};
