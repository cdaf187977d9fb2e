#pragma once

#include "fontfile/sheets/FontSampleJob.h"
#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/management/ImportFontArchivesCommand.h"
#include "qtService/management/SimilarFontsGroup.h"
#include "qtService/management/systemfm/ActivityType.h"
#include "qtService/ui/filter/FontFiltersState.h"
#include "qtService/ui/window/SimilarGroupHistory.h"
#include "updates/UpdateCheckCommand.h"

#include <QMainWindow>
#include <QPointer>
#include <QSharedPointer>

#include <functional>

class FilterButtonsWidget;
class FontAdderDialog;
class FontLensDialog;
class FontListHeaderWidget;
class FontManagementService;
class KrvAttributesWidget;
class KrvFontDetailsTabWidget;
class KrvFiltersWidget;
class KrvFontsModelSearchBox;
class KrvFontsView;
class KrvFontsViewModel;
class KrvPreviewTextSettingsWidget;
class QLabel;
class QRegExpValidator;
class QSplitter;
class QStackedWidget;
class QVBoxLayout;
class SideBarWidget;
class WindowActions;

// The main window: groups at the left, the list of fonts with filters, and the details of the current font. It forwards
// every operation to the library's service and waits for long ones behind a small dialog. Closing it hides it; it saves
// its settings when it is destroyed. It may be made before the service has started and fills itself once it has. Main
// thread.
class KrvFontManagerWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit KrvFontManagerWindow(const QSharedPointer<FontManagementService>& service, QWidget* parent = nullptr);
    ~KrvFontManagerWindow() override;

    // Where this program's own recognition service answers, "host:port"; FontLens uses it unless the settings name
    // another.
    void setLocalRecognitionService(const QString& host) { m_localRecognitionService = host; }

public slots:
    void show();

signals:
    void scanLogRequested();
    void registrationRequested();
    void checkForUpdates();
    void showPreferences();
    // In FontLens, for the program's own recognition service.
    void pictureAddressTyped(const QUrl& url);

protected:
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private slots:
    void onFontManagementServiceStarted();
    void onGroupSelected(int groupId);
    void onFontsViewSelectionChanged();
    void onFoundriesChanged();
    void addScanFolders();
    void addScanFiles();
    void rescanFonts();
    void resetDatabase();
    void setSelectedFontsHidden();
    void setFontsHidden(QList<int> fontIdList, bool hidden);
    void removeSelectedFonts();
    void markSelectedFontsWebfonts();
    void locateSelectedFontFile();
    void copySelectionText();
    void addGroup();
    void removeSelectedGroup();
    void cloneSelectedGroup();
    void renameSelectedGroup();
    void addSelectedFontsToGroups();
    void addFontsToGroups(QList<int> fontIdList, QList<int> groupIdList);
    void addGroupWithSelectedFonts();
    void removeSelectedFontsFromSelectedGroup();
    void clearGroup();
    void printAllFonts();
    void printChosenFonts();
    void printSampleOfChosenFonts();
    void zipAllFonts();
    void zipChosenFonts();
    void activatePermanentlySelectedGroup();
    void activateTemporarilySelectedGroup();
    void deactivateSelectedGroup();
    void findSimilarFonts();
    void findHarmonyBody();
    void findHarmonyHeadline();
    void findHarmonyContrastingStyle();
    void findHarmonySameFamily();
    void findSmartChoiceMix();
    void findSmartChoiceHeadline();
    void findSmartChoiceBody();
    void activateSelectedFontsTemporarily();
    void activateSelectedFontsPermanently();
    void deactivateSelectedFonts();
    void showHelp();
    void showAboutDialog();
    void fontLens();
    void fontLensClosed();
    void updateFileExists();
    void updateActionsState();
    void onFilteringStatusChanged(bool filtering);
    void showFontsViewContextMenu(QPoint pos);
    void showSideBarContextMenu(int groupId, QPoint pos);
    void onFontsDroppedOnGroup(QList<int> fontIdList, int groupId);
    void onFilterButtonToggled(int buttonId, bool checked);
    void onCriteriaCleared();
    void onCriteriaChanged();
    void onAttributeValueChanged(QWidget* slider);
    void setPreviousSimilarFontGroup();
    void setNextSimilarFontGroup();
    void onFontAdderStateChanged();
    void onUpdateCheckCommandStateChanged(AbstractAsynchronousCommand::State state);

private:
    void setupUi();
    void connectActions();
    void connectFilters();
    void connectPanes();
    void addShortcuts();
    void restoreSettings();
    void restoreToolsSizes(const QList<int>& sizes);
    void restoreDetailsSizes(const QList<int>& sizes);
    void showDetails(bool shown);
    void saveSettings();
    void restoreFilters();
    void applyStyle();
    // Says over an empty list why it is empty.
    void updateEmptyHint();
    void updateCount();

    bool isStarted() const;
    QList<int> selectedFontIds() const;
    StaticFontPtr currentFont() const;
    FontGroupPtr selectedUserGroup() const;
    QString titled(const QString& operation) const;
    bool confirm(const QString& title, const QString& text);
    bool waitFor(const QSharedPointer<AbstractAsynchronousCommand>& command, const QString& text);
    // Asks for a group's name; empty when cancelled.
    QString askGroupName(const QString& operation, const QString& suggestion);
    void changeActivity(const QList<int>& fontIds, kerval::systemfm::ActivityType type);
    void changeGroupActivity(kerval::systemfm::ActivityType type);
    // Archives are unpacked into the library first.
    void addFiles(const QStringList& paths);
    void importArchives(const QStringList& archives);
    void tellRefusedArchives(const QList<ImportFontArchivesCommand::Result>& results);
    // A file to write, with its suffix; empty when cancelled. The setting remembers it.
    QString askSaveFileName(KrvUiSettings::SettingId setting, const QString& defaultName, const QString& suffix,
                            const QString& filter);
    QString askArchiveName();
    void printListing(const QString& operation, bool allFonts);
    void showPrintProgress(const FontSampleJobPtr& job, const QString& title, const QString& text);
    void startSilentUpdateCheck();
    void showSimilarFonts(SimilarFontsGroup::SimilarityMethod method, const QString& titlePattern);
    void showSimilarGroup(const FontGroupPtr& group, const QString& title);
    void showHistoryEntry(const SimilarGroupHistory::Entry* entry);
    void showGroup(const FontGroupPtr& group, const QString& title);
    void showFontInLibrary(int fontId);

    QSharedPointer<FontManagementService> m_service;
    FontFiltersState m_filters;
    UpdateCheckCommandPtr m_updateCheck; // the silent one
    SimilarGroupHistory m_history;
    bool m_showsSimilarGroup = false;
    KrvFontsViewModel* m_model;
    WindowActions* m_actions;
    QRegExpValidator* m_nameValidator;

    SideBarWidget* m_sideBar;
    QSplitter* m_listDetailsSplitter;
    QSplitter* m_listToolsSplitter;
    KrvFontDetailsTabWidget* m_details;
    FontListHeaderWidget* m_header;
    KrvFontsView* m_view;
    FilterButtonsWidget* m_filterButtons;
    QStackedWidget* m_tools;
    // When they are shown.
    int m_toolsHeight = 0;
    int m_detailsHeight = 0;
    KrvAttributesWidget* m_attributes;
    KrvFiltersWidget* m_filterPanel;
    KrvPreviewTextSettingsWidget* m_previewSettings;
    KrvFontsModelSearchBox* m_search;
    QLabel* m_emptyHint;
    QVBoxLayout* m_listLayout;
    QPointer<FontAdderDialog> m_adderDialog;
    bool m_adderDialogDismissed = false;
    QPointer<FontLensDialog> m_fontLens; // while it is open
    QString m_localRecognitionService;
    int m_fontToShow = 0; // once the list has it; 0: none
};
