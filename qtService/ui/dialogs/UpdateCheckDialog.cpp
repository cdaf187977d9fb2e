#include "qtService/ui/dialogs/UpdateCheckDialog.h"

#include "qtService/ui/messages/OpenOutside.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

UpdateCheckDialog::UpdateCheckDialog(UpdateCheckCommandPtr command, QWidget* parent)
    : QDialog(parent)
    , m_command(std::move(command))
{
    setupUi(tr("Kerval - Check for Updates"));
    m_label->setText(tr("Checking for updates..."));
    if (m_command)
        connect(m_command.data(), &AbstractAsynchronousCommand::stateChanged, this,
                &UpdateCheckDialog::onUpdateCheckCommandStateChanged);
}

UpdateCheckDialog::UpdateCheckDialog(ApplicationUpdateChecker::UpdateDescription description, QWidget* parent)
    : QDialog(parent)
    , m_description(std::move(description))
{
    setupUi(tr("Kerval - Check for updates"));
}

void UpdateCheckDialog::setupUi(const QString& title)
{
    setObjectName(QStringLiteral("UpdateCheckDialog"));
    setWindowTitle(title);
    resize(318, 89);
    m_label = new QLabel(this);
    m_label->setObjectName(QStringLiteral("lblDescription"));
    m_label->setTextFormat(Qt::RichText);
    m_label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::MinimumExpanding);
    m_label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("progressBar"));
    m_bar->setMinimumSize(300, 0);
    m_bar->setMaximum(0);
    m_bar->setValue(-1);
    m_bar->setAlignment(Qt::AlignCenter);
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("btnCancel"));
    m_close = new QPushButton(tr("Close"), this);
    m_close->setObjectName(QStringLiteral("btnClose"));
    auto* buttons = new QHBoxLayout;
    buttons->setObjectName(QStringLiteral("horizontalLayout"));
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_close);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addWidget(m_label);
    layout->addWidget(m_bar);
    layout->addLayout(buttons);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::rejected, this, &UpdateCheckDialog::onRejected);
    connect(m_label, &QLabel::linkActivated, this, &UpdateCheckDialog::openUrl);
}

void UpdateCheckDialog::showOutcome()
{
    switch (m_description.status) {
    case ApplicationUpdateChecker::NoUpdate:
        m_label->setText(tr("No updates are available.<br />You have the latest version of Kerval installed."));
        break;
    case ApplicationUpdateChecker::UpdateAvailable:
        // Both come from the network and must not bring markup of their own.
        m_label->setText(tr("A new version of Kerval is available.<br />Click on the following link to download "
                            "<a href=\"%1\">Kerval %2</a>!")
                             .arg(m_description.url.toString().toHtmlEscaped(), m_description.version.toHtmlEscaped()));
        break;
    case ApplicationUpdateChecker::CheckFailed:
        m_label->setText(tr("Failed to check for updates.<br />Please check your Internet connection!"));
        break;
    default:
        m_label->clear();
        break;
    }
    m_bar->hide();
    m_close->show();
    m_cancel->hide();
}

int UpdateCheckDialog::exec()
{
    const bool known = !m_description.version.isEmpty() && !m_description.url.isEmpty() &&
                       m_description.status != ApplicationUpdateChecker::CheckFailed;
    if (known || !m_command) {
        showOutcome();
        return QDialog::exec();
    }
    m_bar->show();
    m_close->hide();
    m_cancel->show();
    adjustSize();
    m_command->start();
    return QDialog::exec();
}

void UpdateCheckDialog::onUpdateCheckCommandStateChanged(AbstractAsynchronousCommand::State state)
{
    switch (state) {
    case AbstractAsynchronousCommand::Finished:
    case AbstractAsynchronousCommand::Failed:
        m_description = m_command->updateDescription();
        showOutcome();
        break;
    case AbstractAsynchronousCommand::Cancelled:
        m_description = m_command->updateDescription();
        reject();
        break;
    default:
        break;
    }
}

void UpdateCheckDialog::onRejected()
{
    if (m_command && m_command->state() == AbstractAsynchronousCommand::Running) {
        m_command->disconnect(this);
        m_command->cancel();
    }
}

void UpdateCheckDialog::openUrl(QString url)
{
    ui::openAddress(QUrl(url, QUrl::TolerantMode));
    accept();
}
