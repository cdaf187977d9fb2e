#pragma once

#include <QAbstractButton>
#include <QHash>
#include <QObject>

// Checkable buttons of which at most one is checked; none is allowed.
class KrvFilterButtonGroup : public QObject
{
    Q_OBJECT

public:
    explicit KrvFilterButtonGroup(QObject* parent = nullptr);

    void addButton(QAbstractButton* button, int id);

signals:
    void allButtonsUnchecked();
    void buttonToggled(int buttonId, bool checked);

private slots:
    void onButtonToggled(bool checked);

private:
    QList<QAbstractButton*> m_buttons;
    QHash<QObject*, int> m_ids;
};
