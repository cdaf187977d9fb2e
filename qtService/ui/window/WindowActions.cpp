#include "qtService/ui/window/WindowActions.h"

#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "qtService/ui/window/WindowIcons.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

WindowActions::WindowActions(QMainWindow* window)
    : QObject(window)
    , m_window(window)
{
    addFolders = make("actionAddFolders", KrvFontManagerWindow::tr("Add/Scan Folders"));
    addFiles = make("actionAddFiles", KrvFontManagerWindow::tr("Add/Scan Files"));
    closeWindow = make("actionCloseWindow", KrvFontManagerWindow::tr("Close Window"));
    addToGroups = make("actionAddToGroups", KrvFontManagerWindow::tr("Add To Groups"));
    removeFromGroup = make("actionRemoveFromCurrentGroup", KrvFontManagerWindow::tr("Remove From Current Group"));
    activatePermanently = makePair("ActivatePermanently", KrvFontManagerWindow::tr("Activate Permanently"),
                                   QStringLiteral(":/new_icons/permanently_active"));
    activateTemporarily = makePair("ActivateTemporarily", KrvFontManagerWindow::tr("Activate Temporarily"),
                                   QStringLiteral(":/new_icons/temporarily_active"));
    deactivate =
        makePair("Deactivate", KrvFontManagerWindow::tr("Deactivate"), QStringLiteral(":/new_icons/deactivate"));
    hide = make("actionHide", KrvFontManagerWindow::tr("Hide"));
    removeFromLibrary = make("actionRemoveFromLibrary", KrvFontManagerWindow::tr("Remove From Library"));
    markAsWebFont = make("actionMarkAsWebFont", KrvFontManagerWindow::tr("Mark as Web Font"));
    preferences = make("actionPreferences", KrvFontManagerWindow::tr("Preferences"));
    showDetails = make("actionShowFontDetails", KrvFontManagerWindow::tr("Show Font Details"));
    showDetails->setCheckable(true);
    showDetails->setChecked(true);
    resetFilters = make("actionResetFilters", KrvFontManagerWindow::tr("Reset Filters"));
    newGroup = make("actionNewGroup", KrvFontManagerWindow::tr("New Group"));
    newGroupWithFonts = make("actionNewGroupWithFonts", KrvFontManagerWindow::tr("New Group With Fonts"));
    duplicateGroup = make("actionDuplicateGroup", KrvFontManagerWindow::tr("Duplicate"));
    renameGroup = make("actionRenameGroup", KrvFontManagerWindow::tr("Rename"));
    clearGroup = make("actionClearGroup", KrvFontManagerWindow::tr("Clear"));
    deleteGroup = make("actionDeleteGroup", KrvFontManagerWindow::tr("Delete"));
    groupActivatePermanently = make("actionGroupActivatePermanently", KrvFontManagerWindow::tr("Activate Permanently"));
    groupActivateTemporarily = make("actionGroupActivateTemporarily", KrvFontManagerWindow::tr("Activate Temporarily"));
    groupDeactivate = make("actionGroupDeactivate", KrvFontManagerWindow::tr("Deactivate"));
    similarity =
        makePair("Similarity", KrvFontManagerWindow::tr("Similarity"), QStringLiteral(":/new_icons/similarity"));
    harmonyBody = make("actionHarmonyBody", KrvFontManagerWindow::tr("Harmony Body"));
    harmonyHeadline = make("actionHarmonyHeadline", KrvFontManagerWindow::tr("Harmony Headline"));
    harmonyContrast = make("actionContrastingStyle", KrvFontManagerWindow::tr("Contrasting Style"));
    harmonySameFamily = make("actionSameFamily", KrvFontManagerWindow::tr("Same Family"));
    smartChoiceMix = make("actionSmartChoiceMix", KrvFontManagerWindow::tr("Smart Choice Mix"));
    smartChoiceHeadline = make("actionSmartChoiceHeadline", KrvFontManagerWindow::tr("Smart Choice Headline"));
    smartChoiceBody = make("actionSmartChoiceBody", KrvFontManagerWindow::tr("Smart Choice Body"));
    listingOfAllFonts = make("actionListingOfAllFonts", KrvFontManagerWindow::tr("Create Font Listing of All Fonts"));
    listing = make("actionListing", KrvFontManagerWindow::tr("Create Font Listing"));
    sampleSheet = make("actionSampleSheet", KrvFontManagerWindow::tr("Create Sample Sheet"));
    exportAllFonts = make("actionExportAllFonts", KrvFontManagerWindow::tr("Export All Fonts"));
    exportFonts = make("actionExportFonts", KrvFontManagerWindow::tr("Export Fonts"));
    rescan = make("actionRescanFonts", KrvFontManagerWindow::tr("Rescan Fonts"));
    resetLibrary = make("actionResetFontLibrary", KrvFontManagerWindow::tr("Reset Font Library"));
    fontLens = makePair("FontLens", KrvFontManagerWindow::tr("FontLens"), QStringLiteral(":/new_icons/fontlens"));
    help = make("actionHelp", KrvFontManagerWindow::tr("Help"));
    checkForUpdates = make("actionCheckForUpdates", KrvFontManagerWindow::tr("Check for Updates"));
    about = make("actionAbout", KrvFontManagerWindow::tr("About"));
    showInFileManager = make("actionShowInFileManager", KrvFontManagerWindow::tr("Show in Windows Explorer"));
    copyText = make("actionCopyText", KrvFontManagerWindow::tr("Copy Text"));

    const QList<QAction*> harmony{harmonyBody, harmonyHeadline, harmonyContrast, harmonySameFamily};
    const QList<QAction*> smartChoice{smartChoiceMix, smartChoiceHeadline, smartChoiceBody};
    const QString harmonyIcon = QStringLiteral(":/new_icons/harmony");
    const QString smartChoiceIcon = QStringLiteral(":/new_icons/smart_choice");
    m_harmonyBarMenu = makeMenu("menuHarmonyToolBar", KrvFontManagerWindow::tr("Harmony"), harmonyIcon, harmony);
    m_harmonyMenu = makeMenu("menuHarmony", KrvFontManagerWindow::tr("Harmony"), harmonyIcon, harmony);
    m_smartChoiceBarMenu =
        makeMenu("menuSmartChoiceToolBar", KrvFontManagerWindow::tr("Smart Choice"), smartChoiceIcon, smartChoice);
    m_smartChoiceMenu =
        makeMenu("menuSmartChoice", KrvFontManagerWindow::tr("Smart Choice"), smartChoiceIcon, smartChoice);
}

QAction* WindowActions::make(const char* objectName, const QString& text)
{
    auto* action = new QAction(text, m_window);
    action->setObjectName(QLatin1String(objectName));
    return action;
}

WindowActions::Pair WindowActions::makePair(const char* objectName, const QString& text, const QString& iconBase)
{
    Pair pair{make(objectName, text), make(objectName, text)};
    pair.bar->setObjectName(QStringLiteral("action%1ToolBar").arg(QLatin1String(objectName)));
    pair.menu->setObjectName(QStringLiteral("action%1").arg(QLatin1String(objectName)));
    for (QAction* action : pair.both())
        action->setIcon(ui::icon(iconBase));
    return pair;
}

QMenu* WindowActions::makeMenu(const char* objectName, const QString& title, const QString& iconBase,
                               const QList<QAction*>& actions)
{
    auto* menu = new QMenu(title, m_window);
    menu->setObjectName(QLatin1String(objectName));
    menu->setIcon(ui::icon(iconBase));
    menu->addActions(actions);
    return menu;
}

void WindowActions::fillMenuBar(QMenuBar* bar, QMenu* columnsMenu)
{
    QMenu* file = bar->addMenu(KrvFontManagerWindow::tr("&File"));
    file->addActions({addFolders, addFiles});
    file->addSeparator();
    file->addAction(closeWindow);

    QMenu* edit = bar->addMenu(KrvFontManagerWindow::tr("&Edit"));
    edit->addActions({addToGroups, removeFromGroup});
    edit->addSeparator();
    edit->addActions({activatePermanently.menu, activateTemporarily.menu, deactivate.menu});
    edit->addSeparator();
    edit->addActions({hide, removeFromLibrary, markAsWebFont});
    edit->addSeparator();
    edit->addAction(preferences);

    QMenu* view = bar->addMenu(KrvFontManagerWindow::tr("&View"));
    view->addActions({showDetails, resetFilters});
    view->addMenu(columnsMenu);

    QMenu* groups = bar->addMenu(KrvFontManagerWindow::tr("&Groups"));
    groups->addActions({newGroup, newGroupWithFonts, duplicateGroup, renameGroup});
    groups->addSeparator();
    groups->addActions({clearGroup, deleteGroup});
    groups->addSeparator();
    groups->addActions({groupActivatePermanently, groupActivateTemporarily, groupDeactivate});

    QMenu* kerval = bar->addMenu(KrvFontManagerWindow::tr("Ker&val"));
    kerval->addAction(similarity.menu);
    kerval->addMenu(m_harmonyMenu);
    kerval->addMenu(m_smartChoiceMenu);

    QMenu* tools = bar->addMenu(KrvFontManagerWindow::tr("&Tools"));
    QMenu* listings = tools->addMenu(KrvFontManagerWindow::tr("Font Listing"));
    listings->addActions({listingOfAllFonts, listing});
    tools->addAction(sampleSheet);
    QMenu* exports = tools->addMenu(KrvFontManagerWindow::tr("Export"));
    exports->addActions({exportAllFonts, exportFonts});
    tools->addSeparator();
    tools->addActions({rescan, resetLibrary});
    tools->addSeparator();
    tools->addAction(fontLens.menu);

    QMenu* helpMenu = bar->addMenu(KrvFontManagerWindow::tr("&Help"));
    helpMenu->addAction(help);
    helpMenu->addSeparator();
    helpMenu->addAction(checkForUpdates);
    helpMenu->addSeparator();
    helpMenu->addAction(about);
}

void WindowActions::fillToolBar(QToolBar* bar)
{
    bar->addActions({activatePermanently.bar, activateTemporarily.bar, deactivate.bar});
    bar->addSeparator();
    bar->addActions({similarity.bar, m_harmonyBarMenu->menuAction(), m_smartChoiceBarMenu->menuAction()});
    bar->addSeparator();
    bar->addAction(fontLens.bar);
    for (QMenu* menu : {m_harmonyBarMenu, m_smartChoiceBarMenu}) {
        if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(menu->menuAction())))
            button->setPopupMode(QToolButton::InstantPopup);
    }
}

QMenu* WindowActions::createFontContextMenu(QWidget* parent)
{
    auto* menu = new QMenu(parent);
    menu->addAction(similarity.bar);
    menu->addMenu(m_harmonyBarMenu);
    menu->addSeparator();
    menu->addActions({showDetails, showInFileManager, copyText});
    menu->addSeparator();
    menu->addActions({newGroupWithFonts, addToGroups, removeFromGroup});
    menu->addSeparator();
    menu->addActions({activatePermanently.bar, activateTemporarily.bar, deactivate.bar});
    menu->addSeparator();
    menu->addActions({hide, removeFromLibrary, markAsWebFont});
    return menu;
}

QMenu* WindowActions::createGroupContextMenu(int groupId, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    if (groupId > 0) {
        menu->addActions({newGroup, duplicateGroup, renameGroup});
        menu->addSeparator();
        menu->addActions({clearGroup, deleteGroup});
        menu->addSeparator();
        menu->addActions({groupActivatePermanently, groupActivateTemporarily, groupDeactivate});
    } else {
        menu->addAction(newGroup);
        menu->addSeparator();
        menu->addAction(rescan);
    }
    return menu;
}

QList<QAction*> WindowActions::currentFontActions() const
{
    QList<QAction*> actions{copyText,        showInFileManager, harmonyBody,
                            harmonyHeadline, harmonyContrast,   harmonySameFamily};
    actions += similarity.both();
    for (const QMenu* menu : harmonyMenus())
        actions.append(menu->menuAction());
    return actions;
}

QList<QAction*> WindowActions::selectionActions() const
{
    const QList<QAction*> actions{removeFromLibrary, hide,    markAsWebFont, newGroupWithFonts,
                                  addToGroups,       listing, sampleSheet,   exportFonts};
    return actions + activatePermanently.both() + activateTemporarily.both() + deactivate.both();
}

QList<QAction*> WindowActions::userGroupActions() const
{
    return {duplicateGroup,           renameGroup,    clearGroup, deleteGroup, groupActivatePermanently,
            groupActivateTemporarily, groupDeactivate};
}

QList<QAction*> WindowActions::libraryActions() const
{
    QList<QAction*> actions{listingOfAllFonts, exportAllFonts, smartChoiceMix, smartChoiceHeadline, smartChoiceBody};
    for (const QMenu* menu : smartChoiceMenus())
        actions.append(menu->menuAction());
    return actions;
}
