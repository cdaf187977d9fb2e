#include "qtService/ui/dialogs/GroupSelectionDialog.h"

#include "qtService/management/FontGroup.h"
#include "qtService/management/FontGroupList.h"
#include "qtService/ui/window/Palette.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

GroupSelectionDialog::GroupSelectionDialog(const QString& title, const FontGroupList& groups, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("GroupSelectionDialog"));
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("listWidget"));
    m_list->setAccessibleName(tr("Groups"));
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_buttons->setObjectName(QStringLiteral("buttonBox"));
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    auto* noGroups =
        new QLabel(tr("There are no groups yet. \"New Group\" and \"New Group With Fonts\" make them."), this);
    noGroups->setObjectName(QStringLiteral("lblNoGroups"));
    noGroups->setWordWrap(true);
    layout->addWidget(noGroups);
    layout->addWidget(m_list);
    layout->addWidget(m_buttons);
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    ui::outlineChecks(m_list);
    resize(380, 320);

    const QList<int> ids = groups.groupIdList();
    for (const int id : ids) {
        const FontGroupPtr group = groups.group(id);
        if (!group)
            continue; // removed meanwhile
        auto* item = new QListWidgetItem(group->name(), m_list);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
        item->setData(Qt::UserRole, id);
    }
    connect(m_list, &QListWidget::itemChanged, this, &GroupSelectionDialog::updateOkButtonState);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    noGroups->setVisible(m_list->count() == 0);
    m_list->setCurrentRow(0);
    m_list->setFocus();
    updateOkButtonState();
}

QList<int> GroupSelectionDialog::selectedGroupIds() const
{
    QList<int> ids;
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked)
            ids.append(m_list->item(row)->data(Qt::UserRole).toInt());
    }
    return ids;
}

void GroupSelectionDialog::updateOkButtonState()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!selectedGroupIds().isEmpty());
}

QList<int> GroupSelectionDialog::selectGroups(const QString& title, const FontGroupList& groups, QWidget* parent)
{
    GroupSelectionDialog dialog(title, groups, parent);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedGroupIds() : QList<int>();
}
