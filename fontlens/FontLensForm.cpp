#include "fontlens/FontLensForm.h"

#include "fontlens/FontLensBusyIndicator.h"
#include "fontlens/FontLensDialog.h"
#include "fontlens/FontLensDropHint.h"
#include "fontlens/FontLensFontPreviewWidget.h"
#include "fontlens/FontLensGraphicsView.h"
#include "fontlens/FontLensSimilarFontsModel.h"
#include "fontlens/PreviewCellDelegate.h"
#include "fontlens/SelectedLettersList.h"
#include "qtService/ui/window/Palette.h"
#include "qtService/ui/window/WindowIcons.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

const QSize firstSize(980, 720);
constexpr int lettersImageHeight = 64;
constexpr double zoomLevels[] = {3.13, 4.17, 6.25, 8.33, 12.5, 16.66, 25,   33.33, 50,   66.66, 100, 150,
                                 200,  300,  400,  600,  800,  1200,  1600, 2400,  3200, 4800,  6400};

QAction* makeAction(QDialog* dialog, const char* objectName, const QString& text, const char* icon,
                    const QKeySequence& shortcut)
{
    auto* action = new QAction(ui::icon(QStringLiteral(":/new_icons/") + QLatin1String(icon)), text, dialog);
    action->setObjectName(QLatin1String(objectName));
    action->setShortcut(shortcut);
    if (!shortcut.isEmpty())
        action->setToolTip(QStringLiteral("%1 (%2)").arg(text, shortcut.toString(QKeySequence::NativeText)));
    return action;
}

QLabel* makeLabel(const QString& text, QWidget* buddy)
{
    auto* label = new QLabel(text, buddy->parentWidget());
    label->setBuddy(buddy);
    // A buddy without a mnemonic is no name by itself.
    buddy->setAccessibleName(QString(text).remove(QLatin1Char(':')));
    return label;
}

} // namespace

void FontLensForm::setupUi(QDialog* dialog)
{
    dialog->setObjectName(QStringLiteral("FontLensDialog"));
    dialog->setWindowTitle(FontLensDialog::tr("Dialog")); // whoever opens the window names it
    dialog->resize(firstSize);
    makeActions(dialog);
    pages = new QStackedWidget(dialog);
    pages->setObjectName(QStringLiteral("stackedWidget"));
    pages->addWidget(makePicturePage());
    pages->addWidget(makeResultsPage());
    auto* layout = new QVBoxLayout(dialog);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader(dialog));
    layout->addWidget(pages, 1);
    busyIndicator = new FontLensBusyIndicator(pages); // over whichever page shows, not one of them
    btnIdentify->setDefault(true);
}

QList<QAction*> FontLensForm::actions() const
{
    return {openImage, openUrl, selectLetter, panImage, splitLetters, removeSplitters, help};
}

void FontLensForm::makeActions(QDialog* dialog)
{
    openImage =
        makeAction(dialog, "actionOpenImage", FontLensDialog::tr("Open Image"), "from_image", QKeySequence::Open);
    openUrl = makeAction(dialog, "actionOpenImageFromURL", FontLensDialog::tr("Open Image From URL"), "from_url",
                         QKeySequence(Qt::CTRL | Qt::Key_U));
    selectLetter = makeAction(dialog, "actionSelectLetter", FontLensDialog::tr("Select Letter"), "select_letter",
                              QKeySequence(Qt::CTRL | Qt::Key_1));
    panImage = makeAction(dialog, "actionPanImage", FontLensDialog::tr("Pan Image"), "pan_image",
                          QKeySequence(Qt::CTRL | Qt::Key_2));
    splitLetters = makeAction(dialog, "actionSplitLetters", FontLensDialog::tr("Split Letters"), "split_letters",
                              QKeySequence(Qt::CTRL | Qt::Key_3));
    removeSplitters = makeAction(dialog, "actionRemoveSplitters", FontLensDialog::tr("Remove Splitters"), "deactivate",
                                 QKeySequence(Qt::CTRL | Qt::Key_4));
    help = makeAction(dialog, "actionHelp", FontLensDialog::tr("Help"), "help", QKeySequence::HelpContents);
    tools = new QActionGroup(dialog);
    for (QAction* tool : {selectLetter, panImage, splitLetters}) {
        tool->setCheckable(true);
        tools->addAction(tool);
    }
    selectLetter->setChecked(true);
    selectLetter->setStatusTip(FontLensDialog::tr("Click a letter; Shift+Click adds a part to the last one"));
    splitLetters->setStatusTip(FontLensDialog::tr("Click along the cut between two letters; a right click ends it"));
    tools->setEnabled(false);
    removeSplitters->setVisible(false);
}

QWidget* FontLensForm::makeHeader(QDialog* dialog)
{
    auto* header = new QWidget(dialog);
    header->setObjectName(QStringLiteral("widget"));
    header->setAttribute(Qt::WA_StyledBackground);
    header->setStyleSheet(QStringLiteral("#widget\n{\n\tbackground-image: url(:/icons/header_background.png);\n}"));
    auto* bar = new QToolBar(header);
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setIconSize(QSize(24, 24));
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->addActions({openImage, openUrl});
    bar->addSeparator();
    bar->addActions({selectLetter, panImage, splitLetters, removeSplitters});
    bar->addSeparator();
    bar->addAction(help);
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(bar);
    return header;
}

QWidget* FontLensForm::makeSettings()
{
    auto* settings = new QWidget;
    cmbSelectionSensitivity = new QComboBox(settings);
    cmbSelectionSensitivity->setObjectName(QStringLiteral("cmbSelectionSensitivity"));
    cmbSelectionSensitivity->addItem(FontLensDialog::tr("Low"), 50);
    cmbSelectionSensitivity->addItem(FontLensDialog::tr("Normal"), 30);
    cmbSelectionSensitivity->addItem(FontLensDialog::tr("High"), 4);
    cmbSelectionSensitivity->setCurrentIndex(1);
    cmbSelectionSensitivity->setToolTip(FontLensDialog::tr("How faint a stroke may be and still belong to its letter"));
    spbRotation = new QSpinBox(settings);
    spbRotation->setObjectName(QStringLiteral("spbRotation"));
    spbRotation->setRange(-360, 360);
    spbRotation->setSuffix(QStringLiteral("\u00b0"));
    spbRotation->setToolTip(FontLensDialog::tr("Turn the picture until its letters stand upright; the grid helps"));
    cmbZoom = new QComboBox(settings);
    cmbZoom->setObjectName(QStringLiteral("cmbZoom"));
    for (const double level : zoomLevels)
        cmbZoom->addItem(QStringLiteral("%1%").arg(level), level);
    cmbZoom->setCurrentIndex(cmbZoom->findData(100.0));
    chkbDisplayGrid = new QCheckBox(FontLensDialog::tr("Display Grid"), settings);
    chkbDisplayGrid->setObjectName(QStringLiteral("chkbDisplayGrid"));
    ui::outlineChecks(chkbDisplayGrid);

    auto* row = new QHBoxLayout(settings);
    row->setObjectName(QStringLiteral("horizontalLayoutSettings"));
    row->setContentsMargins(10, 8, 10, 8);
    row->addWidget(makeLabel(FontLensDialog::tr("Selection sensitivity:"), cmbSelectionSensitivity));
    row->addWidget(cmbSelectionSensitivity);
    row->addSpacing(14);
    row->addWidget(makeLabel(FontLensDialog::tr("Rotation:"), spbRotation));
    row->addWidget(spbRotation);
    row->addSpacing(14);
    row->addWidget(makeLabel(FontLensDialog::tr("Zoom:"), cmbZoom));
    row->addWidget(cmbZoom);
    row->addSpacing(14);
    row->addWidget(chkbDisplayGrid);
    row->addStretch();
    return settings;
}

QWidget* FontLensForm::makePicturePage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("picturePage"));
    view = new FontLensGraphicsView(page);
    view->setObjectName(QStringLiteral("graphicsView"));
    view->setAccessibleName(FontLensDialog::tr("Picture"));
    view->setAccessibleDescription(FontLensDialog::tr("Click the letters whose font you look for"));
    view->setFrameShape(QFrame::NoFrame);
    auto* hintLayout = new QVBoxLayout(view->viewport());
    dropHint = new FontLensDropHint(view->viewport());
    hintLayout->addWidget(dropHint, 0, Qt::AlignCenter);

    auto* lettersRow = new QWidget(page);
    selectedLettersList = new SelectedLettersList;
    selectedLettersList->setObjectName(QStringLiteral("selectedLettersList"));
    lettersArea = new QScrollArea(lettersRow);
    lettersArea->setObjectName(QStringLiteral("lettersArea"));
    lettersArea->setFrameShape(QFrame::NoFrame);
    lettersArea->setWidgetResizable(true);
    lettersArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    lettersArea->setFocusPolicy(Qt::NoFocus);
    lettersArea->setWidget(selectedLettersList);
    lettersArea->setFixedHeight(selectedLettersList->minimumHeight() +
                                lettersArea->horizontalScrollBar()->sizeHint().height());
    btnIdentify = new QPushButton(FontLensDialog::tr("Identify"), lettersRow);
    btnIdentify->setObjectName(QStringLiteral("btnIdentify"));
    btnIdentify->setShortcut(QKeySequence(Qt::ALT | Qt::Key_I));
    btnIdentify->setToolTip(FontLensDialog::tr("Look for the fonts of the selected letters (Enter)"));
    btnIdentify->setMinimumSize(120, 36);
    auto* row = new QHBoxLayout(lettersRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(lettersArea, 1);
    row->addWidget(btnIdentify);
    row->addSpacing(12); // a margin would not follow the direction of the interface

    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeSettings());
    layout->addWidget(view, 1);
    layout->addWidget(lettersRow);
    QWidget::setTabOrder(chkbDisplayGrid, view);
    QWidget::setTabOrder(view, btnIdentify);
    selectedLettersList->setPredecessor(view);
    return page;
}

QWidget* FontLensForm::makeResultsPage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("resultsPage"));
    lblLetters = new QLabel(page);
    lblLetters->setObjectName(QStringLiteral("lblLetters"));
    lblLetters->setAccessibleName(FontLensDialog::tr("Selected letters"));
    lblLetters->setFixedHeight(lettersImageHeight);
    treeView = new QTreeView(page);
    treeView->setObjectName(QStringLiteral("treeView"));
    treeView->setAccessibleName(FontLensDialog::tr("Fonts found"));
    treeView->setAlternatingRowColors(true);
    treeView->setIndentation(0);
    treeView->setRootIsDecorated(false);
    treeView->setUniformRowHeights(true);
    treeView->setAllColumnsShowFocus(true);
    treeView->setSelectionMode(QAbstractItemView::SingleSelection);
    treeView->setContextMenuPolicy(Qt::CustomContextMenu);
    treeView->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    treeView->setItemDelegateForColumn(FontLensSimilarFontsModel::PreviewColumn, new PreviewCellDelegate(treeView));
    lblNoResults = new QLabel(FontLensDialog::tr("No font looks like the selected letters."), treeView->viewport());
    lblNoResults->setObjectName(QStringLiteral("lblNoResults"));
    lblNoResults->setAlignment(Qt::AlignCenter);
    lblNoResults->setWordWrap(true);
    auto* hintLayout = new QVBoxLayout(treeView->viewport());
    hintLayout->addWidget(lblNoResults);
    previewWidget = new FontLensFontPreviewWidget(page);
    previewWidget->setObjectName(QStringLiteral("previewWidget"));
    btnBack = new QPushButton(FontLensDialog::tr("Back"), page);
    btnBack->setObjectName(QStringLiteral("btnBack"));
    btnBack->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Left));
    btnBack->setToolTip(FontLensDialog::tr("Back to the picture (Alt+Left)"));
    btnBack->setAutoDefault(false);
    btnShowInLibrary = new QPushButton(FontLensDialog::tr("Show in Library"), page);
    btnShowInLibrary->setObjectName(QStringLiteral("btnShowInLibrary"));
    btnShowInLibrary->setAutoDefault(false);
    btnShowInLibrary->setMinimumWidth(btnShowInLibrary->sizeHint().width() + 24);
    btnShowInLibrary->setToolTip(FontLensDialog::tr("Select the font in the list of fonts"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(btnBack);
    buttons->addStretch();
    buttons->addWidget(btnShowInLibrary);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(12, 10, 12, 12);
    layout->setSpacing(10);
    layout->addWidget(lblLetters);
    layout->addWidget(treeView, 1);
    layout->addWidget(previewWidget);
    layout->addLayout(buttons);
    return page;
}
