#include "qtService/app/core/WebPaths.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/ui/dialogs/FontActivationDialog.h"
#include "qtService/ui/dialogs/FontArchiveImportDialog.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/messages/OpenOutside.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "qtService/ui/window/WindowActions.h"

#include <QAction>
#include <QClipboard>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QUrl>

// What the user does with fonts: adding, hiding, removing, activating, and searching by design.

using kerval::systemfm::ActivityType;

namespace {

// From this many fonts on a change of activity asks first.
constexpr int confirmationThreshold = 50;
constexpr int similarityResults = 100;
constexpr int webFontDialogWidth = 420;

QStringList localFiles(const QMimeData* data)
{
    QStringList paths;
    const QList<QUrl> urls = data->urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}

} // namespace

void KrvFontManagerWindow::addFiles(const QStringList& paths)
{
    if (!isStarted() || paths.isEmpty())
        return;
    QStringList archives;
    QStringList others;
    for (const QString& path : paths)
        (ImportFontArchivesCommand::isArchive(path) ? archives : others).append(path);
    if (!others.isEmpty())
        m_service->addFonts(others);
    if (!archives.isEmpty())
        importArchives(archives);
}

void KrvFontManagerWindow::importArchives(const QStringList& archives)
{
    const ImportFontArchivesCommandPtr command = m_service->importFontArchives(archives);
    FontArchiveImportDialog(command, titled(tr("Unpack Archives")), this).exec();
    QStringList folders;
    const QList<ImportFontArchivesCommand::Result> results = command->results();
    for (const ImportFontArchivesCommand::Result& result : results) {
        if (!result.folder.isEmpty())
            folders.append(result.folder);
    }
    // The service may have been stopped while the dialog was open.
    if (isStarted() && !folders.isEmpty())
        m_service->addFonts(folders);
    tellRefusedArchives(results);
}

void KrvFontManagerWindow::tellRefusedArchives(const QList<ImportFontArchivesCommand::Result>& results)
{
    constexpr int mostNamed = 8;
    QStringList lines;
    int refused = 0;
    for (const ImportFontArchivesCommand::Result& result : results) {
        if (result.error != ImportFontArchivesCommand::NoError && ++refused <= mostNamed)
            lines.append(QStringLiteral("%1: %2").arg(QFileInfo(result.archivePath).fileName(),
                                                      FontArchiveImportDialog::errorText(result.error)));
    }
    if (refused == 0)
        return;
    if (refused > mostNamed)
        lines.append(tr("... and %n more", nullptr, refused - mostNamed));
    QMessageBox box(QMessageBox::Warning, titled(tr("Unpack Archives")), QString(), QMessageBox::Ok, this);
    // File names are no markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(refused == 1 ? tr("One archive could not be added:")
                             : tr("%n archives could not be added:", "Not for one archive", refused));
    box.setInformativeText(lines.join(QLatin1Char('\n')));
    box.exec();
}

void KrvFontManagerWindow::addScanFiles()
{
    if (!isStarted())
        return;
    KrvUiSettings* settings = KrvUiSettings::instance();
    const QStringList files = QFileDialog::getOpenFileNames(
        this, tr("Add/Scan Files"), settings->value(KrvUiSettings::SidLastAddFilesPath, QDir::homePath()).toString());
    if (files.isEmpty())
        return;
    settings->setValue(KrvUiSettings::SidLastAddFilesPath, QFileInfo(files.first()).absolutePath());
    addFiles(files);
}

void KrvFontManagerWindow::addScanFolders()
{
    if (!isStarted())
        return;
    KrvUiSettings* settings = KrvUiSettings::instance();
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Add/Scan Folders"),
        settings->value(KrvUiSettings::SidLastAddFoldersPath, QDir::homePath()).toString());
    if (folder.isEmpty())
        return;
    settings->setValue(KrvUiSettings::SidLastAddFoldersPath, folder);
    addFiles({folder});
}

void KrvFontManagerWindow::dragEnterEvent(QDragEnterEvent* event)
{
    // Fonts dragged out of the list carry their files too; dropped back they would only be scanned again.
    if (event->source() == nullptr && !localFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void KrvFontManagerWindow::dropEvent(QDropEvent* event)
{
    // Later, because the program that the files come from waits for the drop to end.
    const QStringList paths = localFiles(event->mimeData());
    QMetaObject::invokeMethod(
        this, [this, paths] { addFiles(paths); }, Qt::QueuedConnection);
    event->acceptProposedAction();
    activateWindow();
    raise();
}

void KrvFontManagerWindow::rescanFonts()
{
    if (isStarted() &&
        confirm(titled(tr("Rescan Fonts")),
                tr("Kerval will try to find new fonts amongst the fonts installed on your operating system, and in "
                   "your custom scan paths, and add/scan the ones which are not yet added.\nThis might take a while. "
                   "Are you sure you want to continue?")))
        m_service->rescanFonts();
}

void KrvFontManagerWindow::resetDatabase()
{
    if (!isStarted() ||
        !confirm(titled(tr("Reset Font Library")),
                 tr("Kerval will re-add/scan the fonts installed on your operating system, and in your custom scan "
                    "paths.\nThis might take a while. Are you sure you want to continue?")))
        return;
    waitFor(m_service->clearDatabase(), tr("Resetting font library..."));
    m_service->rescanFonts();
}

void KrvFontManagerWindow::setSelectedFontsHidden()
{
    if (const StaticFontPtr font = currentFont())
        setFontsHidden(selectedFontIds(), !font->isHidden());
}

void KrvFontManagerWindow::setFontsHidden(QList<int> fontIdList, bool hidden)
{
    if (isStarted())
        waitFor(m_service->setFontsHidden(fontIdList, hidden),
                hidden ? tr("Hiding fonts...") : tr("Unhiding fonts..."));
}

void KrvFontManagerWindow::removeSelectedFonts()
{
    if (!isStarted())
        return;
    const QList<int> fontIds = selectedFontIds();
    if (confirm(windowTitle(), tr("Are you sure you want to remove the selected fonts?")))
        waitFor(m_service->removeFonts(fontIds), tr("Removing fonts..."));
}

void KrvFontManagerWindow::markSelectedFontsWebfonts()
{
    const StaticFontPtr font = currentFont();
    if (!isStarted() || !font)
        return;
    const QList<int> fontIds = selectedFontIds();
    if (!font->onlineSource().isEmpty()) {
        waitFor(m_service->clearFontsOnlineSource(fontIds), tr("Unarking fonts as Web Fonts..."));
    } else {
        QInputDialog dialog(this);
        dialog.setWindowTitle(titled(m_actions->markAsWebFont->text()));
        dialog.setLabelText(tr("Enter web font data:"));
        // The dialog's own width is too little for an address, and for its title.
        dialog.resize(webFontDialogWidth, dialog.sizeHint().height());
        if (dialog.exec() == QDialog::Accepted)
            waitFor(m_service->setFontsOnlineSource(fontIds, dialog.textValue(), 0),
                    tr("Marking fonts as Web Fonts..."));
    }
    updateActionsState();
}

void KrvFontManagerWindow::locateSelectedFontFile()
{
    if (const StaticFontPtr font = currentFont())
        ui::showFile(font->fileName());
}

void KrvFontManagerWindow::copySelectionText()
{
    const QModelIndex index = m_view->currentIndex();
    QString text = index.column() == fonts::ActivityImageColumn ? QString() : m_model->data(index).toString();
    if (text.isEmpty()) {
        // On one of the images: the font's name says more than nothing.
        if (const StaticFontPtr font = currentFont())
            text = QStringLiteral("%1 %2").arg(font->familyName(), font->styleName());
    }
    QGuiApplication::clipboard()->setText(text);
}

void KrvFontManagerWindow::changeActivity(const QList<int>& fontIds, ActivityType type)
{
    if (!isStarted() || fontIds.isEmpty())
        return;
    const bool activating = type != ActivityType::Inactive;
    if (fontIds.size() >= confirmationThreshold) {
        const QString text = tr("Are you sure you want to %1 %2 fonts?")
                                 .arg(activating ? tr("activate") : tr("deactivate"))
                                 .arg(fontIds.size());
        if (!confirm(windowTitle(), text))
            return;
    }
    FontActivationDialog dialog(m_service, fontIds, type,
                                titled(activating ? tr("Font Activation") : tr("Font Deactivation")), this);
    dialog.exec();
}

void KrvFontManagerWindow::activateSelectedFontsTemporarily()
{
    changeActivity(selectedFontIds(), ActivityType::TemporarilyActive);
}

void KrvFontManagerWindow::activateSelectedFontsPermanently()
{
    changeActivity(selectedFontIds(), ActivityType::PermanentlyActive);
}

void KrvFontManagerWindow::deactivateSelectedFonts()
{
    changeActivity(selectedFontIds(), ActivityType::Inactive);
}

void KrvFontManagerWindow::showSimilarFonts(SimilarFontsGroup::SimilarityMethod method, const QString& titlePattern)
{
    if (!isStarted())
        return;
    const StaticFontPtr font = currentFont();
    const bool needsFont = titlePattern.contains(QLatin1String("%1"));
    if (needsFont && !font)
        return;
    const QString title = needsFont ? titlePattern.arg(font->familyName(), font->styleName()) : titlePattern;
    m_history.leave(font ? font->id() : 0);
    m_view->resetState(KrvFontsView::ResetSelection);
    const SimilarFontsGroupPtr group =
        m_service->similarFontsGroup(font ? font->id() : 0, similarityResults, {}, method);
    if (!group)
        return;
    m_history.push({group, title});
    showSimilarGroup(group, title);
}

void KrvFontManagerWindow::showSimilarGroup(const FontGroupPtr& group, const QString& title)
{
    m_sideBar->clearSelection();
    m_fontToShow = 0;
    m_showsSimilarGroup = true;
    // Best first: the order of the result is its meaning.
    m_view->sortByGroup();
    showGroup(group, title);
}

void KrvFontManagerWindow::showHistoryEntry(const SimilarGroupHistory::Entry* entry)
{
    if (!entry)
        return;
    m_view->resetState(KrvFontsView::ResetSelection);
    // Choosing a group makes it the current entry.
    const int fontId = entry->fontId;
    if (entry->groupId == 0) {
        showSimilarGroup(entry->group, entry->title);
    } else {
        // The group may have been deleted since.
        m_sideBar->selectGroup(entry->groupId);
        if (m_sideBar->selectedGroupId() == 0)
            m_sideBar->selectGroup(SystemFontGroupList::AllFonts);
    }
    m_fontToShow = fontId;
}

void KrvFontManagerWindow::setPreviousSimilarFontGroup()
{
    m_history.leave(m_view->currentFontId());
    showHistoryEntry(m_history.previous());
}

void KrvFontManagerWindow::setNextSimilarFontGroup()
{
    m_history.leave(m_view->currentFontId());
    showHistoryEntry(m_history.next());
}

void KrvFontManagerWindow::findSimilarFonts()
{
    showSimilarFonts(SimilarFontsGroup::Similar, tr("Similar fonts to %1 %2"));
}

void KrvFontManagerWindow::findHarmonyBody()
{
    showSimilarFonts(SimilarFontsGroup::HarmonyBody, tr("Body harmony for %1 %2"));
}

void KrvFontManagerWindow::findHarmonyHeadline()
{
    showSimilarFonts(SimilarFontsGroup::HarmonyHeadline, tr("Headline harmony for %1 %2"));
}

void KrvFontManagerWindow::findHarmonyContrastingStyle()
{
    showSimilarFonts(SimilarFontsGroup::HarmonyContrast, tr("Fonts with contrasting style to %1 %2"));
}

void KrvFontManagerWindow::findHarmonySameFamily()
{
    showSimilarFonts(SimilarFontsGroup::HarmonySameFamily, tr("Same family harmony for %1 %2"));
}

void KrvFontManagerWindow::findSmartChoiceMix()
{
    showSimilarFonts(SimilarFontsGroup::SmartChoiceAll, tr("Smart Choice Mix"));
}

void KrvFontManagerWindow::findSmartChoiceHeadline()
{
    showSimilarFonts(SimilarFontsGroup::SmartChoiceHeadline, tr("Smart Choice Headline"));
}

void KrvFontManagerWindow::findSmartChoiceBody()
{
    showSimilarFonts(SimilarFontsGroup::SmartChoiceBody, tr("Smart Choice Body"));
}

void KrvFontManagerWindow::updateFileExists()
{
    if (!isStarted())
        return;
    QMessageBox::information(this, windowTitle(),
                             tr("Some of your font files doesn't exist anymore.\nKerval will now find and remove the "
                                "nonexistent fonts from your library."));
    waitFor(m_service->updateFileExistance(), tr("Finding/Removing nonexistent fonts..."));
}
