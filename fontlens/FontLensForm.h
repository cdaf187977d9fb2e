#pragma once

#include <QList>

class FontLensBusyIndicator;
class FontLensDropHint;
class FontLensFontPreviewWidget;
class FontLensGraphicsView;
class QAction;
class QActionGroup;
class QCheckBox;
class QComboBox;
class QDialog;
class QLabel;
class QPushButton;
class QScrollArea;
class QSpinBox;
class QStackedWidget;
class QToolBar;
class QTreeView;
class QWidget;
class SelectedLettersList;

// The widgets and actions of the FontLens window, all owned by the dialog they are built for. The header strip stands
// over both pages: a new picture can be opened from the results as well.
class FontLensForm
{
public:
    enum Page
    {
        PicturePage,
        ResultsPage
    };

    void setupUi(QDialog* dialog);
    QList<QAction*> actions() const;

    QAction* openImage;
    QAction* openUrl;
    QAction* selectLetter;
    QAction* panImage;
    QAction* splitLetters;
    QAction* removeSplitters;
    QAction* help;
    QActionGroup* tools;

    QStackedWidget* pages;
    QComboBox* cmbSelectionSensitivity;
    QSpinBox* spbRotation;
    QComboBox* cmbZoom;
    QCheckBox* chkbDisplayGrid;
    FontLensGraphicsView* view;
    FontLensDropHint* dropHint;
    QScrollArea* lettersArea;
    SelectedLettersList* selectedLettersList;
    QPushButton* btnIdentify;

    QLabel* lblLetters;
    QTreeView* treeView;
    QLabel* lblNoResults;
    FontLensFontPreviewWidget* previewWidget;
    QPushButton* btnBack;
    QPushButton* btnShowInLibrary;

    FontLensBusyIndicator* busyIndicator;

private:
    void makeActions(QDialog* dialog);
    QWidget* makeHeader(QDialog* dialog);
    QWidget* makePicturePage();
    QWidget* makeSettings();
    QWidget* makeResultsPage();
};
