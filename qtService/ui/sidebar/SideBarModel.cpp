#include "qtService/ui/sidebar/SideBarModel.h"

#include "qtService/management/FontGroup.h"
#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"

#include <QImage>
#include <QTextDocument>

namespace {

QString iconName(int groupId)
{
    switch (groupId) {
    case SystemFontGroupList::AllFonts:
        return QStringLiteral("all_fonts");
    case SystemFontGroupList::ActiveFonts:
        return QStringLiteral("active_fonts");
    case SystemFontGroupList::InactiveFonts:
        return QStringLiteral("inactive_fonts");
    case SystemFontGroupList::SystemFonts:
        return QStringLiteral("system_fonts");
    case SystemFontGroupList::DuplicateFonts:
        return QStringLiteral("duplicate_fonts");
    case SystemFontGroupList::RecentlyAddedFonts:
    case SystemFontGroupList::RecentlyActivatedFonts:
    case SystemFontGroupList::RecentlyDeactivatedFonts:
        return QStringLiteral("recent_fonts");
    case SystemFontGroupList::HiddenFonts:
        return QStringLiteral("hidden_fonts");
    default:
        return QStringLiteral("folder");
    }
}

QImage icon(const QString& name, bool selected, qreal devicePixelRatio)
{
    const bool dense = devicePixelRatio > 1;
    QImage image(
        QStringLiteral(":/icons/%1%2%3.png")
            .arg(name, selected ? QStringLiteral("-selected") : QString(), dense ? QStringLiteral("2x") : QString()));
    if (dense)
        image.setDevicePixelRatio(2);
    return image;
}

// Names in the order of the user's language, in which "apple" comes before "Banana".
class GroupItem : public QStandardItem
{
public:
    using QStandardItem::QStandardItem;

    bool operator<(const QStandardItem& other) const override
    {
        if (model() && model()->sortRole() == SideBarModel::NameRole) {
            const int order = data(SideBarModel::NameRole)
                                  .toString()
                                  .localeAwareCompare(other.data(SideBarModel::NameRole).toString());
            return order < 0;
        }
        return QStandardItem::operator<(other);
    }
};

// A name that looks like markup is shown as it is.
QString toolTip(const QString& name)
{
    return Qt::mightBeRichText(name) ? name.toHtmlEscaped() : name;
}

QStandardItem* makeHeader(const QString& text)
{
    auto* item = new QStandardItem(text);
    item->setData(text, SideBarModel::NameRole);
    item->setFlags(Qt::NoItemFlags); // the arrow keys pass over it
    return item;
}

} // namespace

SideBarModel::SideBarModel(const QSharedPointer<SystemFontGroupList>& systemGroups,
                           const QSharedPointer<UserFontGroupList>& userGroups, qreal devicePixelRatio, QObject* parent)
    : QStandardItemModel(parent)
    , m_systemGroups(systemGroups)
    , m_userGroups(userGroups)
    , m_devicePixelRatio(devicePixelRatio)
    , m_library(makeHeader(tr("Library")))
    , m_groups(makeHeader(tr("Groups")))
{
    setColumnCount(1);
    appendRow(m_library);
    appendRow(m_groups);
    const QList<int> systemIds = m_systemGroups->groupIdList();
    for (const int id : systemIds)
        m_library->appendRow(makeItem(m_systemGroups.data(), id));
    const QList<int> userIds = m_userGroups->groupIdList();
    for (const int id : userIds)
        m_groups->appendRow(makeItem(m_userGroups.data(), id));

    for (FontGroupList* list :
         {static_cast<FontGroupList*>(m_systemGroups.data()), static_cast<FontGroupList*>(m_userGroups.data())}) {
        connect(list, &FontGroupList::groupFontCountChanged, this, &SideBarModel::onGroupFontCountChanged);
        connect(list, &FontGroupList::groupRenamed, this, &SideBarModel::onGroupRenamed);
        connect(list, &FontGroupList::groupAdded, this, &SideBarModel::onGroupAdded);
        connect(list, &FontGroupList::groupRemoved, this, &SideBarModel::onGroupRemoved);
    }
}

FontGroupList* SideBarModel::listOf(int groupId) const
{
    if (groupId > 0)
        return m_userGroups.data();
    return m_systemGroups.data();
}

QStandardItem* SideBarModel::makeItem(FontGroupList* list, int groupId) const
{
    const FontGroupPtr group = list->group(groupId);
    const QString name = group ? group->name() : QString();
    auto* item = new GroupItem(name);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDropEnabled);
    item->setData(groupId, GroupIdRole);
    item->setData(group ? group->fontCount() : 0, FontCountRole);
    item->setData(name, NameRole);
    item->setData(icon(iconName(groupId), false, m_devicePixelRatio), IconRole);
    item->setData(icon(iconName(groupId), true, m_devicePixelRatio), SelectedIconRole);
    item->setData(QSize(2, 20), Qt::SizeHintRole);
    item->setToolTip(toolTip(name));
    return item;
}

QStandardItem* SideBarModel::itemOfGroup(int groupId) const
{
    for (QStandardItem* header : {m_library, m_groups}) {
        for (int row = 0; row < header->rowCount(); ++row) {
            if (header->child(row)->data(GroupIdRole).toInt() == groupId)
                return header->child(row);
        }
    }
    return nullptr;
}

QModelIndex SideBarModel::indexOfGroup(int groupId) const
{
    const QStandardItem* item = itemOfGroup(groupId);
    return item ? item->index() : QModelIndex();
}

void SideBarModel::setSortRole(int role)
{
    QStandardItemModel::setSortRole(role);
}

void SideBarModel::sort(int column, Qt::SortOrder order)
{
    // sortChildren() announces the layout change; only the user's groups move, the library keeps its order.
    m_groups->sortChildren(column, order);
}

void SideBarModel::onGroupFontCountChanged(int groupId)
{
    const FontGroupPtr group = listOf(groupId)->group(groupId);
    QStandardItem* item = itemOfGroup(groupId);
    if (item && group)
        item->setData(group->fontCount(), FontCountRole);
}

void SideBarModel::onGroupRenamed(int groupId)
{
    const FontGroupPtr group = listOf(groupId)->group(groupId);
    QStandardItem* item = itemOfGroup(groupId);
    if (!item || !group)
        return;
    item->setText(group->name());
    item->setData(group->name(), NameRole);
    item->setToolTip(toolTip(group->name()));
}

void SideBarModel::onGroupAdded(int groupId)
{
    if (itemOfGroup(groupId))
        return;
    FontGroupList* list = listOf(groupId);
    QStandardItem* header = groupId > 0 ? m_groups : m_library;
    const int position = list->groupIdList().indexOf(groupId);
    header->insertRow(qBound(0, position, header->rowCount()), makeItem(list, groupId));
}

void SideBarModel::onGroupRemoved(int groupId)
{
    if (const QStandardItem* item = itemOfGroup(groupId))
        item->parent()->removeRow(item->row());
}
