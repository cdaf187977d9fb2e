#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/ui/filter/FilterButtonsWidget.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "qtService/ui/window/WindowActions.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QMenu>

#include <memory>

// Which action does what, and when it can.

void KrvFontManagerWindow::connectActions()
{
    using Window = KrvFontManagerWindow;
    const WindowActions& a = *m_actions;
    const auto connectTo = [this](QAction* action, void (Window::*slot)()) {
        connect(action, &QAction::triggered, this, slot);
    };
    const auto connectBoth = [&connectTo](const WindowActions::Pair& pair, void (Window::*slot)()) {
        connectTo(pair.bar, slot);
        connectTo(pair.menu, slot);
    };
    connectTo(a.addFolders, &Window::addScanFolders);
    connectTo(a.addFiles, &Window::addScanFiles);
    connect(a.closeWindow, &QAction::triggered, this, &QWidget::close);
    connectTo(a.rescan, &Window::rescanFonts);
    connectTo(a.resetLibrary, &Window::resetDatabase);
    connectTo(a.hide, &Window::setSelectedFontsHidden);
    connectTo(a.removeFromLibrary, &Window::removeSelectedFonts);
    connectTo(a.markAsWebFont, &Window::markSelectedFontsWebfonts);
    connectTo(a.newGroup, &Window::addGroup);
    connectTo(a.renameGroup, &Window::renameSelectedGroup);
    connectTo(a.deleteGroup, &Window::removeSelectedGroup);
    connectTo(a.duplicateGroup, &Window::cloneSelectedGroup);
    connectTo(a.addToGroups, &Window::addSelectedFontsToGroups);
    connectTo(a.newGroupWithFonts, &Window::addGroupWithSelectedFonts);
    connectTo(a.clearGroup, &Window::clearGroup);
    connectTo(a.removeFromGroup, &Window::removeSelectedFontsFromSelectedGroup);
    connectBoth(a.similarity, &Window::findSimilarFonts);
    connectTo(a.harmonyBody, &Window::findHarmonyBody);
    connectTo(a.harmonyHeadline, &Window::findHarmonyHeadline);
    connectTo(a.harmonyContrast, &Window::findHarmonyContrastingStyle);
    connectTo(a.harmonySameFamily, &Window::findHarmonySameFamily);
    connectTo(a.smartChoiceMix, &Window::findSmartChoiceMix);
    connectTo(a.smartChoiceHeadline, &Window::findSmartChoiceHeadline);
    connectTo(a.smartChoiceBody, &Window::findSmartChoiceBody);
    connectBoth(a.activateTemporarily, &Window::activateSelectedFontsTemporarily);
    connectBoth(a.activatePermanently, &Window::activateSelectedFontsPermanently);
    connectBoth(a.deactivate, &Window::deactivateSelectedFonts);
    connectTo(a.groupActivatePermanently, &Window::activatePermanentlySelectedGroup);
    connectTo(a.groupActivateTemporarily, &Window::activateTemporarilySelectedGroup);
    connectTo(a.groupDeactivate, &Window::deactivateSelectedGroup);
    connectTo(a.listingOfAllFonts, &Window::printAllFonts);
    connectTo(a.listing, &Window::printChosenFonts);
    connectTo(a.sampleSheet, &Window::printSampleOfChosenFonts);
    connectTo(a.exportAllFonts, &Window::zipAllFonts);
    connectTo(a.exportFonts, &Window::zipChosenFonts);
    connectBoth(a.fontLens, &Window::fontLens);
    connectTo(a.help, &Window::showHelp);
    connectTo(a.about, &Window::showAboutDialog);
    connect(a.preferences, &QAction::triggered, this, &Window::showPreferences);
    connect(a.checkForUpdates, &QAction::triggered, this, &Window::checkForUpdates);
    connectTo(a.showInFileManager, &Window::locateSelectedFontFile);
    connectTo(a.copyText, &Window::copySelectionText);
}

void KrvFontManagerWindow::updateActionsState()
{
    const bool started = isStarted();
    const StaticFontPtr font = started ? currentFont() : StaticFontPtr();
    const bool userGroup = started && m_sideBar->selectedUserGroupId() > 0;
    const bool hasFonts = started && m_service->repository()->hasFonts();

    // A click with Ctrl leaves a current font that is not selected: what acts on the selection would do nothing then.
    const bool selected = font && m_view->selectionModel()->hasSelection();
    const QList<QAction*> currentFontActions = m_actions->currentFontActions();
    for (QAction* action : currentFontActions)
        action->setEnabled(!font.isNull());
    const QList<QAction*> selectionActions = m_actions->selectionActions();
    for (QAction* action : selectionActions)
        action->setEnabled(selected);
    const QList<QAction*> groupActions = m_actions->userGroupActions();
    for (QAction* action : groupActions)
        action->setEnabled(userGroup);
    const QList<QAction*> libraryActions = m_actions->libraryActions();
    for (QAction* action : libraryActions)
        action->setEnabled(hasFonts);
    m_actions->removeFromGroup->setEnabled(userGroup && selected);
    m_actions->resetFilters->setEnabled(!m_filters.isCleared());
    m_filterButtons->setResetButtonVisible(!m_filters.isCleared());
    for (QAction* action :
         {m_actions->addFolders, m_actions->addFiles, m_actions->newGroup, m_actions->rescan, m_actions->resetLibrary})
        action->setEnabled(started);
    for (QAction* action : m_actions->fontLens.both())
        action->setEnabled(started);
    if (font) {
        m_actions->hide->setText(font->isHidden() ? tr("Unhide") : tr("Hide"));
        m_actions->markAsWebFont->setText(font->onlineSource().isEmpty() ? tr("Mark as Web Font")
                                                                         : tr("Unmark Web Font"));
    }
}

void KrvFontManagerWindow::showFontsViewContextMenu(QPoint pos)
{
    const std::unique_ptr<QMenu> menu(m_actions->createFontContextMenu(this));
    menu->exec(m_view->viewport()->mapToGlobal(pos));
}

void KrvFontManagerWindow::showSideBarContextMenu(int groupId, QPoint pos)
{
    // The actions speak of the selected group, so the one under the mouse becomes it.
    m_sideBar->selectGroup(groupId);
    const std::unique_ptr<QMenu> menu(m_actions->createGroupContextMenu(groupId, this));
    menu->exec(m_sideBar->mapToGlobal(pos));
}
