#include "qtService/ui/preferences/KrvMessageSettingsUI.h"

#include "qtService/ui/messages/KrvMessage.h"
#include "qtService/ui/window/Palette.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

KrvMessageSettingsUI::KrvMessageSettingsUI(QWidget* parent)
    : AbstractPreferencesWindowTab(parent)
{
    setObjectName(QStringLiteral("KrvMessageSettingsUI"));
    setWindowTitle(tr("Form"));
    auto* label = new QLabel(tr("Enabled messages"), this);
    m_messages = new QListWidget(this);
    m_messages->setObjectName(QStringLiteral("lw_messages"));
    m_messages->setAccessibleName(tr("Enabled messages"));
    label->setBuddy(m_messages);
    ui::outlineChecks(m_messages);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_messages);
}

void KrvMessageSettingsUI::loadData()
{
    m_messages->clear();
    const QList<int> messages = KrvMessage::predefinedMessages();
    for (const int id : messages) {
        auto* item = new QListWidgetItem(KrvMessage::predefinedText(id), m_messages);
        item->setData(Qt::UserRole, id);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(KrvMessage::isShown(id) ? Qt::Checked : Qt::Unchecked);
    }
}

void KrvMessageSettingsUI::saveData()
{
    for (int row = 0; row < m_messages->count(); ++row) {
        const QListWidgetItem* item = m_messages->item(row);
        const int id = item->data(Qt::UserRole).toInt();
        if (id != KrvMessage::UnknownMessage)
            KrvMessage::setShown(id, item->checkState() == Qt::Checked);
    }
}
