#include "qtService/app/core/Version.h"
#include "qtService/app/core/WebPaths.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/ui/dialogs/AboutDialog.h"
#include "qtService/ui/dialogs/UpdateCheckDialog.h"
#include "qtService/ui/messages/OpenOutside.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"

#include <QLocale>
#include <QUrl>

// What the window says of the program itself.

namespace {

// The compiler writes "Nov  1 2026": two blanks before a single digit.
QDate buildDate()
{
    return QLocale::c().toDate(QStringLiteral(__DATE__).simplified(), QStringLiteral("MMM d yyyy"));
}

} // namespace

void KrvFontManagerWindow::showHelp()
{
    ui::openAddress(QUrl(krv::web::supportTicketPath()));
}

void KrvFontManagerWindow::showAboutDialog()
{
    AboutDialog dialog(titled(tr("About")), krv::versionString(), buildDate(), this);
    dialog.exec();
}

void KrvFontManagerWindow::startSilentUpdateCheck()
{
    m_updateCheck = m_service->createUpdateCheckCommand();
    if (!m_updateCheck)
        return;
    connect(m_updateCheck.data(), &AbstractAsynchronousCommand::stateChanged, this,
            &KrvFontManagerWindow::onUpdateCheckCommandStateChanged);
    m_updateCheck->start();
}

void KrvFontManagerWindow::onUpdateCheckCommandStateChanged(AbstractAsynchronousCommand::State state)
{
    if (state != AbstractAsynchronousCommand::Finished || !m_updateCheck)
        return;
    const ApplicationUpdateChecker::UpdateDescription description = m_updateCheck->updateDescription();
    if (description.status != ApplicationUpdateChecker::UpdateAvailable)
        return;
    UpdateCheckDialog dialog(description, nullptr);
    dialog.exec();
}
