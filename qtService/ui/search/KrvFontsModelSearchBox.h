#pragma once

#include <QHash>
#include <QWidget>

class FontFiltersState;
class KrvSearchBox2;
class QAction;
class QMenu;

// The window's search box with its menu of fields; writes into the window's filter state.
class KrvFontsModelSearchBox : public QWidget
{
    Q_OBJECT

public:
    explicit KrvFontsModelSearchBox(QWidget* parent = nullptr);

    // Not owned; outlives the box.
    void setFontFiltersState(FontFiltersState* state);
    // Puts the cursor into the box, its text selected.
    void startSearch();

private slots:
    void updateAllOptionState();
    void updateSearchCriteria();
    void onAllOptionToggled();
    void onSearchTermsChanged(QString searchTerms);
    void onCriteriaCleared();

private:
    QMenu* m_menu;
    QList<QAction*> m_fieldActions; // their data is the field's number
    QAction* m_allAction;
    KrvSearchBox2* m_box;
    FontFiltersState* m_state = nullptr;
};
