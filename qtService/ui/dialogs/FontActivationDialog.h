#pragma once

#include "qtService/management/FontActivityChangeCommand.h"

#include <QDialog>

class FontManagementService;
class QLabel;
class QProgressBar;
class QPushButton;
class QTableWidget;
class QTreeWidget;

// Switches fonts on or off, shows how far it is, and what was refused and why. It stays open with its report until the
// user closes it. Main thread.
class FontActivationDialog : public QDialog
{
    Q_OBJECT

public:
    FontActivationDialog(const QSharedPointer<FontManagementService>& service, const QList<int>& fontIdList,
                         kerval::systemfm::ActivityType activityType, const QString& title, QWidget* parent = nullptr);

public slots:
    int exec() override;

private slots:
    void onCommandStateChanged(AbstractAsynchronousCommand::State state);
    void onCurrentFontChanged();
    void onProgressChanged(int progressTotal, int progressCurrent);
    void onRejected();
    void checkResults();

private:
    void setupUi();
    bool isActivating() const { return m_activityType != kerval::systemfm::Inactive; }
    StaticFontPtr font(int fontId) const;
    void makeRoomForReport();
    void addConflict(const ActivityChangeResult& result);
    void addFailure(const QString& reason, int fontId);

    QSharedPointer<FontManagementService> m_service;
    QList<int> m_fontIds;
    kerval::systemfm::ActivityType m_activityType;
    QSharedPointer<FontActivityChangeCommand> m_command;
    QLabel* m_description;
    QProgressBar* m_bar;
    QLabel* m_tableDescription;
    QTableWidget* m_table;
    QLabel* m_treeDescription;
    QTreeWidget* m_tree;
    QPushButton* m_cancel;
    QPushButton* m_close;
};
