#pragma once

#include <QAbstractTableModel>

// Shows the process-wide event log as a table: time, type, description. Main thread.
class FMSLogModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        TimeColumn,
        TypeColumn,
        DescriptionColumn,
        ColumnCount
    };

    explicit FMSLogModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

public slots:
    void fireLayoutChanged();

private:
    // Rows as last announced: the log grows on other threads, a view must not see rows before it is told.
    int m_rows = 0;
};
