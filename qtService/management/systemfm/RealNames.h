#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace kerval::systemfm {

// Names the font that a path of fontconfig's leads to: by the file itself where there is a link on the way below the
// font folder, because that is how it is catalogued; by its metrics file for a Type 1 font. How the font folder itself
// is reached (a home folder that is a link) does not matter.
//
// Remembers what it finds out about folders: make one for each reading of the system.
class RealNames
{
public:
    explicit RealNames(const QStringList& roots);

    QString of(const QString& listed);

private:
    QString spelled(const QString& canonical) const;
    QString folder(const QString& listedFolder);

    QHash<QString, QString> m_roots; // canonical -> as configured
    QHash<QString, QString> m_folders;
};

} // namespace kerval::systemfm
