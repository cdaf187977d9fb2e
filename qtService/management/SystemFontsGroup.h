#pragma once

#include "qtService/management/FontGroup.h"

#include <QSet>
#include <QString>

// The fonts that belong to the operating system and cannot be deactivated: their file lies in the system's fonts folder
// (compared regardless of case) and its name is in the list of protected files (compared exactly).
class SystemFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    explicit SystemFontsGroup(const QSharedPointer<FontCollectionInterface>& source);
    SystemFontsGroup(const QSharedPointer<FontCollectionInterface>& source, const QString& systemFontsFolder,
                     const QStringList& systemFontFiles);

    bool isSystemFont(const StaticFontPtr& font) const;

protected slots:
    void onFontsAddedToSource(const QList<int>& fontIdList) override;
    void onSourceFontsChanged(const QList<int>& fontIdList) override;

private:
    QList<int> systemFontsAmong(const QList<int>& fontIds) const;

    QSet<QString> m_systemFontFiles;
    QString m_systemFontsFolder; // with forward slashes, ending in one
};
