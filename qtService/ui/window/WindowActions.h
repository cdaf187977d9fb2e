#pragma once

#include <QList>
#include <QObject>

class QAction;
class QMainWindow;
class QMenu;
class QMenuBar;
class QToolBar;

// Every action and menu of the font manager window. The actions that stand in the toolbar or the context menu as well
// as in the menu bar exist twice, because the two copies carry different icons.
class WindowActions : public QObject
{
    Q_OBJECT

public:
    explicit WindowActions(QMainWindow* window);

    void fillMenuBar(QMenuBar* bar, QMenu* columnsMenu);
    // The expanding spacer and the search box are the window's to add.
    void fillToolBar(QToolBar* bar);
    QMenu* createFontContextMenu(QWidget* parent);
    // Empty for a group that offers nothing.
    QMenu* createGroupContextMenu(int groupId, QWidget* parent);

    // Both copies of an action that exists twice.
    struct Pair
    {
        QAction* bar = nullptr;  // toolbar and context menu
        QAction* menu = nullptr; // menu bar
        QList<QAction*> both() const { return {bar, menu}; }
    };

    QAction* addFolders;
    QAction* addFiles;
    QAction* closeWindow;
    QAction* addToGroups;
    QAction* removeFromGroup;
    Pair activatePermanently;
    Pair activateTemporarily;
    Pair deactivate;
    QAction* hide;
    QAction* removeFromLibrary;
    QAction* markAsWebFont;
    QAction* preferences;
    QAction* showDetails;
    QAction* resetFilters;
    QAction* newGroup;
    QAction* newGroupWithFonts;
    QAction* duplicateGroup;
    QAction* renameGroup;
    QAction* clearGroup;
    QAction* deleteGroup;
    QAction* groupActivatePermanently;
    QAction* groupActivateTemporarily;
    QAction* groupDeactivate;
    Pair similarity;
    QAction* harmonyBody;
    QAction* harmonyHeadline;
    QAction* harmonyContrast;
    QAction* harmonySameFamily;
    QAction* smartChoiceMix;
    QAction* smartChoiceHeadline;
    QAction* smartChoiceBody;
    QAction* listingOfAllFonts;
    QAction* listing;
    QAction* sampleSheet;
    QAction* exportAllFonts;
    QAction* exportFonts;
    QAction* rescan;
    QAction* resetLibrary;
    Pair fontLens;
    QAction* help;
    QAction* checkForUpdates;
    QAction* about;
    QAction* showInFileManager;
    QAction* copyText;

    QList<QMenu*> harmonyMenus() const { return {m_harmonyBarMenu, m_harmonyMenu}; }
    QList<QMenu*> smartChoiceMenus() const { return {m_smartChoiceBarMenu, m_smartChoiceMenu}; }

    // What is done with the current font: enabled only when there is one.
    QList<QAction*> currentFontActions() const;
    // What is done with the selected fonts: enabled only when some are, the current one among them or not.
    QList<QAction*> selectionActions() const;
    // Enabled only while a group of the user's is selected.
    QList<QAction*> userGroupActions() const;
    // Enabled while the catalogue holds fonts.
    QList<QAction*> libraryActions() const;

private:
    QAction* make(const char* objectName, const QString& text);
    Pair makePair(const char* objectName, const QString& text, const QString& iconBase);
    QMenu* makeMenu(const char* objectName, const QString& title, const QString& iconBase,
                    const QList<QAction*>& actions);

    QMainWindow* m_window;
    QMenu* m_harmonyBarMenu;
    QMenu* m_harmonyMenu;
    QMenu* m_smartChoiceBarMenu;
    QMenu* m_smartChoiceMenu;
};
