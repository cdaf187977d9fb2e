#include "qtService/ui/dialogs/AsynchronousCommandWaitIndicatorDialog.h"

#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

AsynchronousCommandWaitIndicatorDialog::AsynchronousCommandWaitIndicatorDialog(
    QSharedPointer<AbstractAsynchronousCommand> command, const QString& title, const QString& description,
    QWidget* parent)
    : QDialog(parent)
    , m_command(std::move(command))
{
    setObjectName(QStringLiteral("AsynchronousCommandWaitIndicatorDialog"));
    resize(318, 58);
    auto* label = new QLabel(description, this);
    label->setObjectName(QStringLiteral("lblDescription"));
    auto* bar = new QProgressBar(this);
    bar->setObjectName(QStringLiteral("progressBar"));
    bar->setMinimumWidth(300);
    bar->setMaximum(0);
    bar->setValue(0);
    bar->setAlignment(Qt::AlignCenter);
    bar->setAccessibleName(description);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addWidget(label);
    layout->addWidget(bar);

    setWindowTitle(title);
    connect(m_command.data(), &AbstractAsynchronousCommand::stateChanged, this,
            &AsynchronousCommandWaitIndicatorDialog::onCommandStateChanged);
    setWindowModality(Qt::WindowModal);
    adjustSize();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setWindowFlags(Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
}

AsynchronousCommandWaitIndicatorDialog::~AsynchronousCommandWaitIndicatorDialog() = default;

int AsynchronousCommandWaitIndicatorDialog::exec()
{
    m_command->start();
    return QDialog::exec();
}

bool AsynchronousCommandWaitIndicatorDialog::wait(const QSharedPointer<AbstractAsynchronousCommand>& command,
                                                  const QString& title, const QString& description, QWidget* parent)
{
    if (!command)
        return false;
    AsynchronousCommandWaitIndicatorDialog dialog(command, title, description, parent);
    return dialog.exec() == QDialog::Accepted;
}

void AsynchronousCommandWaitIndicatorDialog::keyPressEvent(QKeyEvent* event)
{
    // There is no way to stop the command here, so Escape must not pretend one.
    if (event->key() != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
}

void AsynchronousCommandWaitIndicatorDialog::onCommandStateChanged(AbstractAsynchronousCommand::State state)
{
    switch (state) {
    case AbstractAsynchronousCommand::Finished:
        accept();
        break;
    case AbstractAsynchronousCommand::Failed:
    case AbstractAsynchronousCommand::Cancelled:
        reject();
        break;
    case AbstractAsynchronousCommand::Idle:
    case AbstractAsynchronousCommand::Running:
        break;
    }
}
