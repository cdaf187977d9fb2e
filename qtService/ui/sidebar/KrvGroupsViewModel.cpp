#include "qtService/ui/sidebar/KrvGroupsViewModel.h"

#include "qtService/management/FontGroup.h"
#include "qtService/management/FontGroupList.h"

KrvGroupsViewModel::KrvGroupsViewModel(const QSharedPointer<FontGroupList>& groups, QObject* parent)
    : QAbstractItemModel(parent)
    , m_groups(groups)
    , m_ids(groups->groupIdList())
{
    connect(m_groups.data(), &FontGroupList::groupFontCountChanged, this, &KrvGroupsViewModel::onGroupFontCountChanged);
}

QModelIndex KrvGroupsViewModel::index(int row, int column, const QModelIndex& parent) const
{
    const bool exists = !parent.isValid() && row >= 0 && row < m_ids.size() && column == 0;
    return exists ? createIndex(row, column) : QModelIndex();
}

QModelIndex KrvGroupsViewModel::parent(const QModelIndex&) const
{
    return QModelIndex();
}

int KrvGroupsViewModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_ids.size();
}

int KrvGroupsViewModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant KrvGroupsViewModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_ids.size())
        return QVariant();
    const int id = m_ids.at(index.row());
    if (role == Qt::UserRole)
        return id;
    const FontGroupPtr group = m_groups->group(id);
    if (role != Qt::DisplayRole || !group)
        return QVariant();
    return QStringLiteral("%1 (%2)").arg(group->name()).arg(group->fontCount());
}

void KrvGroupsViewModel::onGroupFontCountChanged(int groupId)
{
    announceGroup(groupId);
}

void KrvGroupsViewModel::announceGroup(int groupId)
{
    const int row = m_ids.indexOf(groupId);
    if (row >= 0)
        emit dataChanged(index(row, 0), index(row, 0));
}

void KrvGroupsViewModel::insertGroup(int groupId)
{
    if (m_ids.contains(groupId))
        return;
    const int row = qBound(0, m_groups->groupIdList().indexOf(groupId), m_ids.size());
    beginInsertRows(QModelIndex(), row, row);
    m_ids.insert(row, groupId);
    endInsertRows();
}

void KrvGroupsViewModel::eraseGroup(int groupId)
{
    const int row = m_ids.indexOf(groupId);
    if (row < 0)
        return;
    beginRemoveRows(QModelIndex(), row, row);
    m_ids.removeAt(row);
    endRemoveRows();
}
