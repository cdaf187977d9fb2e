#pragma once

#include <QCoreApplication>

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
class QVBoxLayout;
class QWidget;

// The widgets and actions of the FontLens window, all owned by the dialog they are built for. The header strip stands
// over both pages: a new picture can be opened from the results as well.
class FontLensForm
{
    Q_DECLARE_TR_FUNCTIONS(FontLensDialog)

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
    class SelectedLettersList* selectedLettersList;
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
