#pragma once

#include "qtService/ui/preferences/AbstractPreferencesWindowTab.h"

class QComboBox;
class QListWidget;
class QPushButton;

// The folders of the user's own that every scan searches, and how the side bar sorts the user's groups.
class FMSScanPathSettings : public AbstractPreferencesWindowTab
{
    Q_OBJECT

public:
    explicit FMSScanPathSettings(QWidget* parent = nullptr);

public slots:
    void saveData() override;
    void loadData() override;

private slots:
    void addPath();
    void deletePath();
    void editPath();
    void updateButtons();

private:
    void setupUi();
    // Empty when cancelled.
    QString askFolder();

    QComboBox* m_sortBy;
    QComboBox* m_sortOrder;
    QListWidget* m_paths;
    QPushButton* m_edit;
    QPushButton* m_remove;
};
