#include "qtService/ui/filter/KrvFilterButtonGroup.h"

#include <QSignalBlocker>

KrvFilterButtonGroup::KrvFilterButtonGroup(QObject* parent)
    : QObject(parent)
{
}

void KrvFilterButtonGroup::addButton(QAbstractButton* button, int id)
{
    m_buttons.append(button);
    m_ids.insert(button, id);
    connect(button, &QAbstractButton::toggled, this, &KrvFilterButtonGroup::onButtonToggled);
}

void KrvFilterButtonGroup::onButtonToggled(bool checked)
{
    if (!checked) {
        emit allButtonsUnchecked();
        return;
    }
    QObject* toggled = sender();
    for (QAbstractButton* button : qAsConst(m_buttons)) {
        if (button == toggled)
            continue;
        {
            const QSignalBlocker blocker(button);
            button->setChecked(false);
        }
        emit buttonToggled(m_ids.value(button), false);
    }
    emit buttonToggled(m_ids.value(toggled), true);
}
