#pragma once

#include <QAbstractItemModel>
#include <QSharedPointer>

class FontGroupList;

// The groups of a list as plain rows "name (number of fonts)", in the list's order. Main thread.
class KrvGroupsViewModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit KrvGroupsViewModel(const QSharedPointer<FontGroupList>& groups, QObject* parent = nullptr);

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    // Qt::UserRole is the group's id.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private slots:
    void onGroupFontCountChanged(int groupId);

protected:
    QSharedPointer<FontGroupList> groups() const { return m_groups; }
    void announceGroup(int groupId);
    void insertGroup(int groupId);
    void eraseGroup(int groupId);

private:
    QSharedPointer<FontGroupList> m_groups;
    QList<int> m_ids;
};
