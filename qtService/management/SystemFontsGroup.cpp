#include "qtService/management/SystemFontsGroup.h"

#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"
#include "qtService/management/systemfm/SystemFontManager.h"

#include <QDir>

using kerval::systemfm::SystemFontManager;

SystemFontsGroup::SystemFontsGroup(const QSharedPointer<FontCollectionInterface>& source)
    : SystemFontsGroup(source, SystemFontManager::instance()->fontsFolder(),
                       SystemFontManager::instance()->protectedFontFiles())
{
}

SystemFontsGroup::SystemFontsGroup(const QSharedPointer<FontCollectionInterface>& source,
                                   const QString& systemFontsFolder, const QStringList& systemFontFiles)
    : FontGroup(source, tr("System Fonts"), Start::Empty)
    , m_systemFontFiles(systemFontFiles.cbegin(), systemFontFiles.cend())
    , m_systemFontsFolder(QDir::fromNativeSeparators(systemFontsFolder))
{
    // "/usr/share/fonts-extra" is another folder.
    if (!m_systemFontsFolder.endsWith(QLatin1Char('/')))
        m_systemFontsFolder += QLatin1Char('/');
    const auto inFolder = MatchingCriteria::leaf(MatchingCriteria::StartsWith, QStringLiteral("fileName"),
                                                 m_systemFontsFolder, Qt::CaseInsensitive);
    QList<int> ids;
    for (const StaticFontPtr& font : source->findMatchingFonts(MatchingCriteria::allOf({inFolder}))) {
        if (isSystemFont(font))
            ids.append(font->id());
    }
    setMembers(ids);
}

bool SystemFontsGroup::isSystemFont(const StaticFontPtr& font) const
{
    if (!font)
        return false;
    const QString fileName = QDir::fromNativeSeparators(font->fileName());
    return fileName.startsWith(m_systemFontsFolder, Qt::CaseInsensitive) &&
           m_systemFontFiles.contains(fileName.mid(fileName.lastIndexOf(QLatin1Char('/')) + 1));
}

QList<int> SystemFontsGroup::systemFontsAmong(const QList<int>& fontIds) const
{
    QList<int> ids;
    for (const StaticFontPtr& font : recordsInSource(fontIds)) {
        if (isSystemFont(font))
            ids.append(font->id());
    }
    return ids;
}

void SystemFontsGroup::onFontsAddedToSource(const QList<int>& fontIdList)
{
    const QList<int> added = insertMembers(systemFontsAmong(fontIdList));
    if (!added.isEmpty())
        emit fontsAdded(added);
}

void SystemFontsGroup::onSourceFontsChanged(const QList<int>& fontIdList)
{
    followChange(fontIdList, systemFontsAmong(fontIdList));
}
