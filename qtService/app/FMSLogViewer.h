#pragma once

#include <QWidget>

class FMSLogModel;
class QTableView;

// Shows the event log and follows it; the newest event stays in view while the user looks at the end.
class FMSLogViewer : public QWidget
{
    Q_OBJECT

public:
    explicit FMSLogViewer(QWidget* parent = nullptr);

signals:
    void closed();
    void messagesRequested();

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void adjustColumns();
    void onLogChanged();

private:
    FMSLogModel* m_model;
    QTableView* m_view;
};
