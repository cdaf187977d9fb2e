#pragma once

#include "qtService/ui/preferences/AbstractPreferencesWindowTab.h"

class QListWidget;

// Which of the predefined messages are shown.
class KrvMessageSettingsUI : public AbstractPreferencesWindowTab
{
    Q_OBJECT

public:
    explicit KrvMessageSettingsUI(QWidget* parent = nullptr);

public slots:
    void saveData() override;
    void loadData() override;

private:
    QListWidget* m_messages;
};
