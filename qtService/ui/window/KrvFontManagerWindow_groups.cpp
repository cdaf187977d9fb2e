#include "qtService/app/service/FontManagementService.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/dialogs/GroupSelectionDialog.h"
#include "qtService/ui/dialogs/TextInputDialog.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"

#include <QDebug>
#include <QRegExpValidator>

// What the user does with groups.

using kerval::systemfm::ActivityType;

QString KrvFontManagerWindow::askGroupName(const QString& operation, const QString& suggestion)
{
    return TextInputDialog::getText(titled(operation), QString(), tr("Group name:"), suggestion, m_nameValidator, this);
}

void KrvFontManagerWindow::addGroup()
{
    if (!isStarted())
        return;
    const QString name = askGroupName(tr("New Group"), tr("group"));
    if (!name.isEmpty())
        m_service->addGroup(name);
}

void KrvFontManagerWindow::addGroupWithSelectedFonts()
{
    if (!isStarted())
        return;
    const QList<int> fontIds = selectedFontIds();
    const QString name = askGroupName(tr("New Group With Fonts"), tr("group"));
    if (name.isEmpty())
        return;
    const int group = m_service->addGroup(name);
    if (group > 0)
        waitFor(m_service->addFontsToGroups({group}, fontIds), tr("Creating group with fonts..."));
}

void KrvFontManagerWindow::renameSelectedGroup()
{
    const FontGroupPtr group = selectedUserGroup();
    if (!group)
        return;
    const int id = m_sideBar->selectedUserGroupId();
    const QString name = askGroupName(tr("Rename Group"), group->name());
    if (!name.isEmpty() && name != group->name())
        m_service->renameGroup(id, name);
}

void KrvFontManagerWindow::cloneSelectedGroup()
{
    const FontGroupPtr group = selectedUserGroup();
    if (!group)
        return;
    const int id = m_sideBar->selectedUserGroupId();
    const QString name = askGroupName(tr("Duplicate Group"), group->name());
    if (!name.isEmpty())
        waitFor(m_service->cloneGroup(id, name), tr("Duplicating group..."));
}

void KrvFontManagerWindow::removeSelectedGroup()
{
    const FontGroupPtr group = selectedUserGroup();
    if (!group)
        return;
    const int id = m_sideBar->selectedUserGroupId();
    if (!confirm(windowTitle(), tr("Are you sure that you want to delete the group named '%1'").arg(group->name())))
        return;
    // The list shows the group that goes; it lands on the one place that is always there.
    m_sideBar->selectGroup(SystemFontGroupList::AllFonts);
    m_service->removeGroup(id);
}

void KrvFontManagerWindow::clearGroup()
{
    const FontGroupPtr group = selectedUserGroup();
    if (!group)
        return;
    const int id = m_sideBar->selectedUserGroupId();
    if (confirm(windowTitle(),
                tr("Are you sure that you want to remove all fonts from the group named '%1'").arg(group->name())))
        m_service->clearGroup(id);
}

void KrvFontManagerWindow::addSelectedFontsToGroups()
{
    if (!isStarted())
        return;
    const QList<int> fontIds = selectedFontIds();
    const QList<int> groupIds =
        GroupSelectionDialog::selectGroups(titled(tr("Add To Groups")), *m_service->userFontGroups(), this);
    if (!groupIds.isEmpty())
        addFontsToGroups(fontIds, groupIds);
}

void KrvFontManagerWindow::addFontsToGroups(QList<int> fontIdList, QList<int> groupIdList)
{
    if (!isStarted())
        return;
    qDebug() << "M_3_"
             << "KrvFontManagerWindow::addFontsToGroups" << fontIdList.size() << "fonts" << groupIdList;
    const bool added = waitFor(m_service->addFontsToGroups(groupIdList, fontIdList), tr("Adding fonts to groups..."));
    qDebug() << "M_3_"
             << "KrvFontManagerWindow::addFontsToGroups" << (added ? "done" : "failed");
}

void KrvFontManagerWindow::removeSelectedFontsFromSelectedGroup()
{
    const int group = m_sideBar->selectedUserGroupId();
    if (isStarted() && group > 0)
        waitFor(m_service->removeFontsFromGroups({group}, selectedFontIds()), tr("Removing fonts from group..."));
}

void KrvFontManagerWindow::onFontsDroppedOnGroup(QList<int> fontIdList, int groupId)
{
    if (!isStarted() || fontIdList.isEmpty())
        return;
    if (groupId >= 1)
        addFontsToGroups(fontIdList, {groupId});
    else if (groupId == SystemFontGroupList::AllFonts)
        setFontsHidden(fontIdList, false);
    else if (groupId == SystemFontGroupList::ActiveFonts)
        changeActivity(fontIdList, ActivityType::PermanentlyActive);
    else if (groupId == SystemFontGroupList::InactiveFonts)
        changeActivity(fontIdList, ActivityType::Inactive);
    else if (groupId == SystemFontGroupList::HiddenFonts)
        setFontsHidden(fontIdList, true);
}

void KrvFontManagerWindow::changeGroupActivity(ActivityType type)
{
    if (const FontGroupPtr group = selectedUserGroup())
        changeActivity(group->fontIdList(), type);
}

void KrvFontManagerWindow::activatePermanentlySelectedGroup()
{
    changeGroupActivity(ActivityType::PermanentlyActive);
}

void KrvFontManagerWindow::activateTemporarilySelectedGroup()
{
    changeGroupActivity(ActivityType::TemporarilyActive);
}

void KrvFontManagerWindow::deactivateSelectedGroup()
{
    changeGroupActivity(ActivityType::Inactive);
}
