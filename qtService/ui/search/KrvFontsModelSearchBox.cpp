#include "qtService/ui/search/KrvFontsModelSearchBox.h"

#include "qtService/ui/filter/FontFiltersState.h"
#include "qtService/ui/search/KrvSearchBox2.h"

#include <QAction>
#include <QMenu>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

constexpr int typingPauseMs = 1000;

struct Field
{
    const char* text;
    int id;
};

constexpr Field fields[] = {
    {QT_TRANSLATE_NOOP("KrvFontsModelSearchBox", "Name"), 0},
    {QT_TRANSLATE_NOOP("KrvFontsModelSearchBox", "Style"), 1},
    {QT_TRANSLATE_NOOP("KrvFontsModelSearchBox", "Foundry"), 16},
    {QT_TRANSLATE_NOOP("KrvFontsModelSearchBox", "Designer"), 8},
    {QT_TRANSLATE_NOOP("KrvFontsModelSearchBox", "License"), 13},
    {QT_TRANSLATE_NOOP("KrvFontsModelSearchBox", "Description"), 10},
    {QT_TRANSLATE_NOOP("KrvFontsModelSearchBox", "User note"), 504},
};

} // namespace

KrvFontsModelSearchBox::KrvFontsModelSearchBox(QWidget* parent)
    : QWidget(parent)
    , m_menu(new QMenu(this))
    , m_box(new KrvSearchBox2(typingPauseMs, this))
{
    setFixedWidth(135);
    for (const Field& field : fields) {
        QAction* action = m_menu->addAction(tr(field.text));
        action->setCheckable(true);
        action->setData(field.id);
        connect(action, &QAction::toggled, this, &KrvFontsModelSearchBox::updateSearchCriteria);
        m_fieldActions.append(action);
    }
    m_menu->addSeparator();
    m_allAction = m_menu->addAction(tr("All"));
    m_allAction->setCheckable(true);
    connect(m_allAction, &QAction::toggled, this, &KrvFontsModelSearchBox::onAllOptionToggled);
    m_box->setSearchOptionsMenu(m_menu);
    setFocusProxy(m_box);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 10, 0);
    layout->addWidget(m_box);
}

void KrvFontsModelSearchBox::setFontFiltersState(FontFiltersState* state)
{
    m_state = state;
    connect(state, &FontFiltersState::cleared, this, &KrvFontsModelSearchBox::onCriteriaCleared);
    const QList<int> chosen = state->textSearchFields();
    for (QAction* action : qAsConst(m_fieldActions)) {
        const QSignalBlocker blocker(action);
        action->setChecked(chosen.contains(action->data().toInt()));
    }
    updateAllOptionState();
    {
        const QSignalBlocker blocker(m_box);
        m_box->setSearchTerm(state->textSearch());
    }
    connect(m_box, &SearchBoxInterface::searchTermChanged, this, &KrvFontsModelSearchBox::onSearchTermsChanged);
}

void KrvFontsModelSearchBox::startSearch()
{
    m_box->setFocus(Qt::ShortcutFocusReason);
    m_box->selectAll();
}

void KrvFontsModelSearchBox::updateSearchCriteria()
{
    QList<int> chosen;
    for (const QAction* action : qAsConst(m_fieldActions)) {
        if (action->isChecked())
            chosen.append(action->data().toInt());
    }
    if (m_state)
        m_state->setTextSearchFields(chosen);
    updateAllOptionState();
}

void KrvFontsModelSearchBox::updateAllOptionState()
{
    const QSignalBlocker blocker(m_allAction);
    m_allAction->setChecked(std::all_of(m_fieldActions.cbegin(), m_fieldActions.cend(),
                                        [](const QAction* action) { return action->isChecked(); }));
}

void KrvFontsModelSearchBox::onAllOptionToggled()
{
    for (QAction* action : qAsConst(m_fieldActions)) {
        const QSignalBlocker blocker(action);
        action->setChecked(m_allAction->isChecked());
    }
    updateSearchCriteria();
}

void KrvFontsModelSearchBox::onSearchTermsChanged(QString searchTerms)
{
    m_state->setTextSearch(searchTerms);
}

void KrvFontsModelSearchBox::onCriteriaCleared()
{
    const QSignalBlocker blocker(m_box);
    m_box->clear();
}
