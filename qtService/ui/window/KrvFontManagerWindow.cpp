#include "qtService/ui/window/KrvFontManagerWindow.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/FontAdder.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/details/KrvFontDetailsTabWidget.h"
#include "qtService/ui/dialogs/AsynchronousCommandWaitIndicatorDialog.h"
#include "qtService/ui/dialogs/FontAdderDialog.h"
#include "qtService/ui/dialogs/FontAdderStatusWidget.h"
#include "qtService/ui/filter/FilterButtonsWidget.h"
#include "qtService/ui/filter/KrvAttributeSliderWidget.h"
#include "qtService/ui/filter/KrvAttributesWidget.h"
#include "qtService/ui/filter/KrvFiltersWidget.h"
#include "qtService/ui/fonts/FontListHeaderWidget.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/fonts/KrvPreviewTextSettingsWidget.h"
#include "qtService/ui/search/KrvFontsModelSearchBox.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/Palette.h"
#include "qtService/ui/window/ScreenGeometry.h"
#include "qtService/ui/window/WindowActions.h"

#include <QAction>
#include <QApplication>
#include <QDebug>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QRegExpValidator>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

using Settings = KrvUiSettings;

constexpr int maximumNameLength = 64;
const QSize firstSize(1180, 760);
constexpr int firstListHeight = 440;
constexpr int lowestList = 120;
constexpr int firstDetailsHeight = 240;
// What the sliders need; the other pages scroll.
constexpr int firstToolsHeight = 150;

const QString listStyle =
    QStringLiteral("#fontsView {\nborder: 0px solid black;\nborder-bottom-style: solid;\nborder-bottom-width: 1px;\n"
                   "border-bottom-color:  rgb(187, 187, 187);\nborder-right-style: solid;\nborder-right-width: 1px;\n"
                   "border-right-color:  rgb(187, 187, 187);\n}");
const QString darkListStyle =
    QStringLiteral("#fontsView {\nborder: 0px solid black;\nborder-bottom-style: solid;\nborder-bottom-width: 1px;\n"
                   "border-bottom-color:  rgb(28, 29, 31);\nborder-right-style: solid;\nborder-right-width: 1px;\n"
                   "border-right-color:  rgb(28, 29, 31);\n}");

} // namespace

KrvFontManagerWindow::KrvFontManagerWindow(const QSharedPointer<FontManagementService>& service, QWidget* parent)
    : QMainWindow(parent)
    , m_service(service)
    , m_model(new KrvFontsViewModel(this))
    , m_actions(new WindowActions(this))
    , m_nameValidator(new QRegExpValidator(QRegExp(QStringLiteral("^\\S(.){,%1}").arg(maximumNameLength - 1)), this))
{
    setupUi();
    m_view->setModel(m_model);
    m_actions->fillMenuBar(menuBar(), m_view->columnsMenu());
    connectActions();
    connectFilters();
    connectPanes();
    addShortcuts();
    restoreSettings();
    restoreFilters();
    applyStyle();

    connect(m_service.data(), &FontManagementService::started, this,
            &KrvFontManagerWindow::onFontManagementServiceStarted);
    if (isStarted())
        onFontManagementServiceStarted();
    updateActionsState();
}

KrvFontManagerWindow::~KrvFontManagerWindow()
{
    saveSettings();
    m_filters.disconnect(this);
}

void KrvFontManagerWindow::setupUi()
{
    setObjectName(QStringLiteral("KrvFontManagerWindow"));
    setWindowTitle(tr("Kerval Font Manager"));
    setAcceptDrops(true);
    resize(ui::onScreen(QRect(QPoint(), firstSize)).size());

    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("centralwidget"));
    central->setAcceptDrops(true);
    auto* layout = new QHBoxLayout(central);
    layout->setObjectName(QStringLiteral("horizontalLayout"));
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);
    m_sideBar = new SideBarWidget(central);
    m_sideBar->setObjectName(QStringLiteral("sideBar"));
    m_listDetailsSplitter = new QSplitter(Qt::Vertical, central);
    m_listDetailsSplitter->setObjectName(QStringLiteral("spltrFontListFontDetails"));
    m_listDetailsSplitter->setChildrenCollapsible(false);
    layout->addWidget(m_sideBar);
    layout->addWidget(m_listDetailsSplitter, 1);
    setCentralWidget(central);

    m_listToolsSplitter = new QSplitter(Qt::Vertical, m_listDetailsSplitter);
    m_listToolsSplitter->setObjectName(QStringLiteral("spltrFontListFilters"));
    m_listToolsSplitter->setChildrenCollapsible(false);

    auto* listPane = new QWidget(m_listToolsSplitter);
    listPane->setObjectName(QStringLiteral("layoutWidget"));
    m_listLayout = new QVBoxLayout(listPane);
    m_listLayout->setObjectName(QStringLiteral("verticalLayout"));
    m_listLayout->setContentsMargins(0, 0, 0, 0);
    m_listLayout->setSpacing(0);
    m_header = new FontListHeaderWidget(listPane);
    m_header->setObjectName(QStringLiteral("fontListHeader"));
    m_header->setAcceptDrops(true);
    m_view = new KrvFontsView(listPane);
    m_view->setObjectName(QStringLiteral("fontsView"));
    m_view->setAccessibleName(tr("Fonts"));
    m_view->setAcceptDrops(true);
    m_view->setDragEnabled(true);
    m_view->setDragDropMode(QAbstractItemView::DragOnly);
    m_view->setAlternatingRowColors(true);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setIndentation(0);
    m_view->setUniformRowHeights(true);
    m_view->setSortingEnabled(true);
    m_view->setAllColumnsShowFocus(true);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    m_view->setMinimumHeight(lowestList);
    m_filterButtons = new FilterButtonsWidget(listPane);
    m_filterButtons->setObjectName(QStringLiteral("filterButtonsWidget"));
    m_listLayout->addWidget(m_header);
    m_listLayout->addWidget(m_view, 1);
    m_listLayout->addWidget(m_filterButtons);

    // Lies over the list while it shows nothing, and says why.
    m_emptyHint = new QLabel(m_view);
    m_emptyHint->setObjectName(QStringLiteral("lblEmptyHint"));
    m_emptyHint->setAlignment(Qt::AlignCenter);
    m_emptyHint->setWordWrap(true);
    m_emptyHint->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* hintLayout = new QVBoxLayout(m_view->viewport());
    hintLayout->addWidget(m_emptyHint);
    m_emptyHint->hide();

    m_tools = new QStackedWidget(m_listToolsSplitter);
    m_tools->setObjectName(QStringLiteral("filterWidgetsStack"));
    m_attributes = new KrvAttributesWidget(m_tools);
    m_attributes->setObjectName(QStringLiteral("attributesPage"));
    m_filterPanel = new KrvFiltersWidget(m_tools);
    m_filterPanel->setObjectName(QStringLiteral("filtersPage"));
    m_previewSettings = new KrvPreviewTextSettingsWidget(m_tools);
    m_previewSettings->setObjectName(QStringLiteral("textPage"));
    m_tools->addWidget(m_attributes);
    m_tools->addWidget(m_filterPanel);
    m_tools->addWidget(m_previewSettings);
    m_tools->setCurrentIndex(0);
    m_tools->hide();
    m_listToolsSplitter->setStretchFactor(0, 1);
    m_listToolsSplitter->setStretchFactor(1, 0);
    restoreToolsSizes({firstListHeight, firstToolsHeight});

    m_details = new KrvFontDetailsTabWidget(m_listDetailsSplitter);
    m_details->setObjectName(QStringLiteral("detailsWidget"));
    m_details->setAcceptDrops(true);
    m_listDetailsSplitter->setStretchFactor(0, 1);
    m_listDetailsSplitter->setStretchFactor(1, 0);
    restoreDetailsSizes({firstListHeight, firstDetailsHeight});

    menuBar()->setObjectName(QStringLiteral("menubar"));
    QToolBar* bar = addToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setIconSize(QSize(24, 24));
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    m_actions->fillToolBar(bar);
    auto* spacer = new QWidget(bar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    bar->addWidget(spacer);
    m_search = new KrvFontsModelSearchBox(bar);
    bar->addWidget(m_search);
    // The search must not slip into what does not fit any more; on a screen too narrow for the captions they go
    // instead.
    const auto shownWidth = [bar] { return ui::onScreen(QRect(QPoint(), bar->sizeHint())).width(); };
    if (shownWidth() < bar->sizeHint().width())
        bar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    setMinimumWidth(shownWidth());
}

void KrvFontManagerWindow::applyStyle()
{
    const QString style = ui::isDark(palette()) ? darkListStyle : listStyle;
    if (m_view->styleSheet() != style)
        m_view->setStyleSheet(style);
    ui::mute(m_emptyHint);
}

void KrvFontManagerWindow::connectFilters()
{
    m_model->setFiltersState(&m_filters);
    connect(&m_filters, &FontFiltersState::cleared, this, &KrvFontManagerWindow::updateActionsState);
    connect(&m_filters, &FontFiltersState::cleared, this, &KrvFontManagerWindow::onCriteriaCleared);
    connect(&m_filters, &FontFiltersState::changed, this, &KrvFontManagerWindow::onCriteriaChanged);
    connect(m_filterButtons, &FilterButtonsWidget::filterResetPressed, &m_filters, &FontFiltersState::clear);
    connect(m_actions->resetFilters, &QAction::triggered, &m_filters, &FontFiltersState::clear);

    connect(m_filterPanel, &KrvFiltersWidget::enabledFormatsChanged, &m_filters, &FontFiltersState::setFormats);
    connect(m_filterPanel, &KrvFiltersWidget::serifsEnabledChanged, &m_filters, &FontFiltersState::setSerifs);
    connect(m_filterPanel, &KrvFiltersWidget::sansSerifsEnabledChanged, &m_filters, &FontFiltersState::setSanserifs);
    connect(m_filterPanel, &KrvFiltersWidget::monosEnabledChanged, &m_filters, &FontFiltersState::setMonospaced);
    connect(m_filterPanel, &KrvFiltersWidget::nonMonosEnabledChanged, &m_filters, &FontFiltersState::setNonMonospaced);
    connect(m_filterPanel, &KrvFiltersWidget::symbolsEnabledChanged, &m_filters, &FontFiltersState::setSymbols);
    connect(m_filterPanel, &KrvFiltersWidget::nonSymbolsEnabledChanged, &m_filters, &FontFiltersState::setNonsymbols);
    connect(m_filterPanel, &KrvFiltersWidget::currentFoundryChanged, &m_filters, &FontFiltersState::setFoundry);
    connect(m_filterPanel, &KrvFiltersWidget::selectedCharacterRangesChanged, &m_filters,
            &FontFiltersState::setUnicodeSubsets);
    const QList<KrvAttributeSliderWidget*> sliders = m_attributes->sliders();
    for (KrvAttributeSliderWidget* slider : sliders) {
        const auto changed = [this, slider] { onAttributeValueChanged(slider); };
        connect(slider, &KrvAttributeSliderWidget::valueChanged, this, changed);
        connect(slider, &KrvAttributeSliderWidget::sliderEnabledChanged, this, changed);
    }
    connect(m_filterButtons, &FilterButtonsWidget::allButtonsUnchecked, this, [this] {
        m_toolsHeight = m_tools->height();
        m_tools->hide();
    });
    connect(m_filterButtons, &FilterButtonsWidget::buttonToggled, this, &KrvFontManagerWindow::onFilterButtonToggled);
}

void KrvFontManagerWindow::connectPanes()
{
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &KrvFontManagerWindow::onFontsViewSelectionChanged);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &KrvFontManagerWindow::onFontsViewSelectionChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, &KrvFontManagerWindow::onFontsViewSelectionChanged);
    connect(m_model, &KrvFontsViewModel::filteringStatusChanged, this, &KrvFontManagerWindow::onFilteringStatusChanged);
    connect(m_model, &KrvFontsViewModel::rowsChanged, this, &KrvFontManagerWindow::updateCount);
    connect(m_view, &QWidget::customContextMenuRequested, this, &KrvFontManagerWindow::showFontsViewContextMenu);

    m_previewSettings->setPreviewText(m_view->previewText());
    m_previewSettings->setPreviewSize(m_view->previewSize());
    connect(m_previewSettings, &KrvPreviewTextSettingsWidget::previewTextChanged, m_view,
            &KrvFontsView::setPreviewText);
    connect(m_previewSettings, &KrvPreviewTextSettingsWidget::previewSizeChanged, m_view,
            &KrvFontsView::setPreviewSize);

    connect(m_previewSettings, &KrvPreviewTextSettingsWidget::previewTextChanged, m_details,
            &KrvFontDetailsTabWidget::setPreviewText);
    connect(m_previewSettings, &KrvPreviewTextSettingsWidget::previewSizeChanged, m_details,
            &KrvFontDetailsTabWidget::setPreviewSize);
    m_details->setPreviewText(m_view->previewText());
    connect(m_actions->showDetails, &QAction::toggled, this, &KrvFontManagerWindow::showDetails);

    connect(m_sideBar, &SideBarWidget::groupIdSelected, this, &KrvFontManagerWindow::onGroupSelected);
    connect(m_sideBar, &SideBarWidget::contextMenuRequested, this, &KrvFontManagerWindow::showSideBarContextMenu);
    connect(m_sideBar, &SideBarWidget::fontsDropped, this, &KrvFontManagerWindow::onFontsDroppedOnGroup);
    connect(m_header, &FontListHeaderWidget::backButtonClicked, this,
            &KrvFontManagerWindow::setPreviousSimilarFontGroup);
    connect(m_header, &FontListHeaderWidget::forwardButtonClicked, this,
            &KrvFontManagerWindow::setNextSimilarFontGroup);
}

void KrvFontManagerWindow::addShortcuts()
{
    auto* search = new QAction(this);
    search->setShortcut(QKeySequence::Find);
    connect(search, &QAction::triggered, m_search, &KrvFontsModelSearchBox::startSearch);
    addAction(search);
}

void KrvFontManagerWindow::show()
{
    QMainWindow::show();
    raise();
    const Settings* settings = Settings::instance();
    if (settings->contains(Settings::SidMainWindowState)) {
        const auto state = Qt::WindowStates(settings->value(Settings::SidMainWindowState).toInt());
        setWindowState(state & ~Qt::WindowMinimized);
    }
    activateWindow();
    if (m_view->currentIndex().isValid())
        m_view->scrollTo(m_view->currentIndex());
    // A run that began while nobody saw the window.
    if (isStarted())
        onFontAdderStateChanged();
}

void KrvFontManagerWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        Settings::instance()->setValue(Settings::SidMainWindowState, int(windowState()));
    else if (event->type() == QEvent::PaletteChange)
        applyStyle();
}

bool KrvFontManagerWindow::isStarted() const
{
    return m_service->isStarted();
}

void KrvFontManagerWindow::onFontManagementServiceStarted()
{
    m_sideBar->setGroups(m_service->systemFontGroups(), m_service->userFontGroups());
    m_details->setService(m_service);
    m_details->setContext(m_service->userFontGroups());
    connect(m_service->repository().data(), &KrvFontRepository::foundriesChanged, this,
            &KrvFontManagerWindow::onFoundriesChanged);
    connect(m_service->repository().data(), &FontCollectionInterface::fontCountChanged, this,
            &KrvFontManagerWindow::updateActionsState);
    connect(m_service->fontAdder().data(), &FontAdder::stateChanged, this,
            &KrvFontManagerWindow::onFontAdderStateChanged);
    connect(m_service->userFontGroups().data(), &FontGroupList::groupRenamed, this, [this](int groupId) {
        if (groupId == m_sideBar->selectedGroupId())
            m_header->setTitle(m_sideBar->selectedGroup()->name());
    });
    m_listLayout->insertWidget(1, new FontAdderStatusWidget(m_service->fontAdder(), m_listLayout->parentWidget()));
    onFoundriesChanged();
    m_sideBar->selectGroup(SystemFontGroupList::AllFonts);
    if (!m_service->repository()->hasFonts())
        QMetaObject::invokeMethod(m_service.data(), &FontManagementService::rescanFonts, Qt::QueuedConnection);
    updateActionsState();
    startSilentUpdateCheck();
}

// The dialog follows a run from its beginning; a paused run that waits from the last start has its strip only.
void KrvFontManagerWindow::onFontAdderStateChanged()
{
    const auto adder = m_service->fontAdder();
    if (!adder)
        return;
    const bool idle = !adder->isAdding() && !adder->isSearching();
    const bool running = !idle && !adder->isPaused();
    if (idle)
        m_adderDialogDismissed = false;
    if (running && !m_adderDialog && !m_adderDialogDismissed && isVisible() && !QApplication::activeModalWidget()) {
        qDebug() << "M_3_"
                 << "KrvFontManagerWindow::onFontAdderStateChanged"
                 << "exec";
        m_adderDialog = new FontAdderDialog(adder, m_service->repository(), this);
        m_adderDialog->setAttribute(Qt::WA_DeleteOnClose);
        m_adderDialog->setWindowTitle(titled(tr("Font Scanner")));
        connect(m_adderDialog.data(), &FontAdderDialog::scanLogRequested, this,
                &KrvFontManagerWindow::scanLogRequested);
        // Closed by the user it stays closed for this run; the strip above the list goes on.
        connect(m_adderDialog.data(), &QDialog::rejected, this, [this] { m_adderDialogDismissed = true; });
        m_adderDialog->open();
    } else if (idle && m_adderDialog) {
        qDebug() << "M_3_"
                 << "KrvFontManagerWindow::onFontAdderStateChanged"
                 << "accept";
        m_adderDialog->accept();
        m_adderDialog.clear(); // it goes later; the next run gets one of its own
    }
    updateEmptyHint();
}

void KrvFontManagerWindow::onFoundriesChanged()
{
    const QSignalBlocker blocker(m_filterPanel);
    // A foundry that is filtered by stays in the list when its last font goes, or nothing would say what the filter is.
    QStringList foundries = m_service->repository()->foundries();
    if (!foundries.contains(m_filters.foundry()))
        foundries.append(m_filters.foundry());
    m_filterPanel->setFoundries(foundries);
    m_filterPanel->setCurrentFoundry(m_filters.foundry());
}

QList<int> KrvFontManagerWindow::selectedFontIds() const
{
    return m_view->selectedFontIds();
}

StaticFontPtr KrvFontManagerWindow::currentFont() const
{
    return m_model->font(m_view->currentIndex());
}

FontGroupPtr KrvFontManagerWindow::selectedUserGroup() const
{
    const int id = m_sideBar->selectedUserGroupId();
    return id > 0 && isStarted() ? m_service->userFontGroups()->group(id) : FontGroupPtr();
}

QString KrvFontManagerWindow::titled(const QString& operation) const
{
    return QStringLiteral("%1 - %2").arg(windowTitle(), operation);
}

bool KrvFontManagerWindow::confirm(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Question, title, QString(), QMessageBox::Yes | QMessageBox::No, this);
    // Names in the question are no markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    return box.exec() == QMessageBox::Yes;
}

bool KrvFontManagerWindow::waitFor(const QSharedPointer<AbstractAsynchronousCommand>& command, const QString& text)
{
    return AsynchronousCommandWaitIndicatorDialog::wait(command, windowTitle(), text, this);
}

void KrvFontManagerWindow::onGroupSelected(int)
{
    const FontGroupPtr group = m_sideBar->selectedGroup();
    if (!group)
        return;
    m_fontToShow = 0;
    m_history.visit({group, group->name(), m_sideBar->selectedGroupId()});
    showGroup(group, group->name());
    if (m_showsSimilarGroup) {
        m_showsSimilarGroup = false;
        m_view->sortByChosenColumn();
    }
}

void KrvFontManagerWindow::showGroup(const FontGroupPtr& group, const QString& title)
{
    m_header->setTitle(title);
    m_header->setNavigation(m_history.hasPrevious(), m_history.hasNext());
    m_model->setFontGroup(group);
    m_details->setFontCollection(group);
    updateActionsState();
}

void KrvFontManagerWindow::updateCount()
{
    const FontGroupPtr group = m_model->fontGroup();
    // A result of a search grows while it is made.
    m_header->setCount(m_model->rowCount(), group ? qMax(group->fontCount(), m_model->rowCount()) : 0,
                       m_view->selectedCount());
}

void KrvFontManagerWindow::onFontsViewSelectionChanged()
{
    updateActionsState();
    updateCount();
    m_details->setFont(currentFont());
}

void KrvFontManagerWindow::onFilteringStatusChanged(bool filtering)
{
    if (filtering) {
        m_emptyHint->hide();
        return;
    }
    updateEmptyHint();
    updateActionsState();
    if (m_fontToShow != 0 && m_model->indexOfFont(m_fontToShow).isValid()) {
        m_view->selectFont(m_fontToShow);
        m_fontToShow = 0;
    }
}

void KrvFontManagerWindow::updateEmptyHint()
{
    const bool empty = isStarted() && m_model->rowCount() == 0 && !m_model->isFiltering();
    if (empty) {
        const auto adder = m_service->fontAdder();
        if (!m_filters.isCleared() && m_service->repository()->hasFonts())
            m_emptyHint->setText(tr("No font of this group matches the filters."));
        else if (m_service->repository()->hasFonts() && m_sideBar->selectedUserGroupId() > 0)
            m_emptyHint->setText(tr("This group holds no fonts. Drag some from another list onto its name."));
        else if (m_service->repository()->hasFonts())
            m_emptyHint->setText(tr("This group holds no fonts."));
        else if (adder->isAdding() || adder->isSearching())
            m_emptyHint->setText(tr("Looking for fonts. They appear here as they are read..."));
        else
            m_emptyHint->setText(tr("The library is empty. Drop fonts or folders here, or rescan the system."));
    }
    m_emptyHint->setVisible(empty);
}

void KrvFontManagerWindow::onFilterButtonToggled(int buttonId, bool checked)
{
    if (!checked)
        return;
    m_tools->setCurrentIndex(buttonId);
    m_tools->show();
}

void KrvFontManagerWindow::onCriteriaCleared()
{
    const QList<KrvAttributeSliderWidget*> sliders = m_attributes->sliders();
    for (KrvAttributeSliderWidget* slider : sliders) {
        const QSignalBlocker blocker(slider);
        slider->setValue(0);
        slider->setSliderEnabled(false);
    }
    const QSignalBlocker blocker(m_filterPanel);
    m_filterPanel->reset();
}

void KrvFontManagerWindow::onCriteriaChanged()
{
    m_fontToShow = 0;
    Settings::instance()->setValue(Settings::SidFilteringCriteria, QVariant::fromValue(m_filters));
    updateActionsState();
}

void KrvFontManagerWindow::onAttributeValueChanged(QWidget* slider)
{
    const auto* attribute = qobject_cast<KrvAttributeSliderWidget*>(slider);
    if (!attribute)
        return;
    const int value = attribute->isSliderEnabled() ? attribute->value() : 0;
    if (attribute == m_attributes->weightSlider())
        m_filters.setWeight(value);
    else if (attribute == m_attributes->widthSlider())
        m_filters.setWidth(value);
    else if (attribute == m_attributes->italicAngleSlider())
        m_filters.setAngle(value);
    else if (attribute == m_attributes->opticalSizeSlider())
        m_filters.setOptsize(value);
}
