#include "tests/qtService/management/StandardGroups.h"

#include "qtService/management/ActiveFontsGroup.h"
#include "qtService/management/AllFontsGroup.h"
#include "qtService/management/DuplicateFontsGroup.h"
#include "qtService/management/HiddenFontsGroup.h"
#include "qtService/management/InactiveFontsGroup.h"
#include "qtService/management/RecentlyActivatedFontsGroup.h"
#include "qtService/management/RecentlyAddedFontsGroup.h"
#include "qtService/management/RecentlyDeactivatedFontsGroup.h"
#include "qtService/management/SystemFontsGroup.h"

StandardGroups::StandardGroups(const QSharedPointer<FontCollectionInterface>& repository, KrvUserDatabase* userDatabase)
    : existing(makeFontGroup<ExistingFontsGroup>(repository))
{
    const auto all = makeFontGroup<AllFontsGroup>(existing);
    system.addGroup(SystemFontGroupList::AllFonts, all);
    system.addGroup(SystemFontGroupList::ActiveFonts, makeFontGroup<ActiveFontsGroup>(all));
    system.addGroup(SystemFontGroupList::InactiveFonts, makeFontGroup<InactiveFontsGroup>(all));
    system.addGroup(
        SystemFontGroupList::SystemFonts,
        makeFontGroup<SystemFontsGroup>(all, QStringLiteral("/usr/share/fonts"),
                                        QStringList{QStringLiteral("arial.ttf"), QStringLiteral("core.otf")}));
    system.addGroup(SystemFontGroupList::DuplicateFonts, makeFontGroup<DuplicateFontsGroup>(all));
    system.addGroup(SystemFontGroupList::RecentlyAddedFonts, makeFontGroup<RecentlyAddedFontsGroup>(all, RecentLimit));
    system.addGroup(SystemFontGroupList::RecentlyActivatedFonts,
                    makeFontGroup<RecentlyActivatedFontsGroup>(all, RecentLimit));
    system.addGroup(SystemFontGroupList::RecentlyDeactivatedFonts,
                    makeFontGroup<RecentlyDeactivatedFontsGroup>(all, RecentLimit));
    system.addGroup(SystemFontGroupList::HiddenFonts, makeFontGroup<HiddenFontsGroup>(existing));
    user.reset(new UserFontGroupList(all, userDatabase));
    for (int groupId : groupIds())
        watch(groupId);
    QObject::connect(user.data(), &FontGroupList::groupAdded, user.data(), [this](int groupId) { watch(groupId); });
}

QList<int> StandardGroups::groupIds() const
{
    return system.groupIdList() + user->groupIdList();
}

FontGroupPtr StandardGroups::group(int groupId) const
{
    return groupId < 0 ? system.group(groupId) : user->group(groupId);
}

QSet<int> StandardGroups::members(int groupId) const
{
    const QList<int> ids = group(groupId)->fontIdList();
    return QSet<int>(ids.cbegin(), ids.cend());
}

QSet<int> StandardGroups::heardOf(int groupId) const
{
    return *m_heard.value(groupId);
}

void StandardGroups::watch(int groupId)
{
    const QSharedPointer<QSet<int>> heard(new QSet<int>(members(groupId)));
    m_heard.insert(groupId, heard);
    const FontGroupPtr watched = group(groupId);
    QObject::connect(watched.data(), &FontCollectionInterface::fontsAdded, watched.data(),
                     [heard](const QList<int>& ids) { *heard += QSet<int>(ids.cbegin(), ids.cend()); });
    QObject::connect(watched.data(), &FontCollectionInterface::fontsRemoved, watched.data(),
                     [heard](const QList<int>& ids) { *heard -= QSet<int>(ids.cbegin(), ids.cend()); });
}
