#include "qtService/ui/preferences/AbstractPreferencesWindow.h"

#include "qtService/ui/preferences/AbstractPreferencesWindowTab.h"

#include <QAction>
#include <QActionGroup>
#include <QDialogButtonBox>
#include <QIcon>
#include <QStackedWidget>
#include <QToolBar>
#include <QVBoxLayout>

AbstractPreferencesWindow::AbstractPreferencesWindow(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("AbstractPreferencesWindow"));
    setWindowTitle(tr("Preferences"));
    setWindowIcon(QIcon(QStringLiteral(":/icon1.png")));
    m_bar = new QToolBar(this);
    m_bar->setObjectName(QStringLiteral("toolBar"));
    m_bar->setIconSize(QSize(32, 32));
    m_bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_actions = new QActionGroup(this);
    m_actions->setExclusive(true);
    m_pages = new QStackedWidget(this);
    m_pages->setObjectName(QStringLiteral("stackedWidget"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("buttonBox"));
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addWidget(m_bar);
    layout->addWidget(m_pages, 1);
    layout->addWidget(buttons);
    resize(520, 460);
    connect(buttons, &QDialogButtonBox::accepted, this, &AbstractPreferencesWindow::saveData);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void AbstractPreferencesWindow::addTab(const QIcon& icon, const QString& text, AbstractPreferencesWindowTab* tab)
{
    QAction* action = m_bar->addAction(icon, text);
    action->setCheckable(true);
    m_actions->addAction(action);
    // The buttons of tool bars are passed over by the keyboard, and these have no menu beside them.
    m_bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    action->setData(m_pages->addWidget(tab));
    connect(action, &QAction::toggled, this, &AbstractPreferencesWindow::onTabClicked);
    connect(this, &AbstractPreferencesWindow::loadData, tab, &AbstractPreferencesWindowTab::loadData);
    connect(this, &AbstractPreferencesWindow::saveData, tab, &AbstractPreferencesWindowTab::saveData);
    if (m_pages->count() == 1)
        action->setChecked(true);
}

void AbstractPreferencesWindow::onTabClicked()
{
    const auto* action = qobject_cast<QAction*>(sender());
    if (action && action->isChecked())
        m_pages->setCurrentIndex(action->data().toInt());
}

void AbstractPreferencesWindow::show()
{
    // An open window keeps what the user has changed in it.
    if (!isVisible())
        emit loadData();
    QDialog::show();
    raise();
    activateWindow();
}
