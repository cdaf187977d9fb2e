#include "qtService/management/systemfm/RealNames.h"

#include "qtService/management/systemfm/FontFiles.h"

#include <QFileInfo>

namespace kerval::systemfm {

RealNames::RealNames(const QStringList& roots)
{
    for (const QString& root : roots) {
        const QString canonical = QFileInfo(root).canonicalFilePath();
        if (!canonical.isEmpty() && !m_roots.contains(canonical))
            m_roots.insert(canonical, root);
    }
}

QString RealNames::of(const QString& listed)
{
    const int slash = listed.lastIndexOf(QLatin1Char('/'));
    const QString listedFolder = listed.left(slash);
    const QString realFolder = folder(listedFolder);
    const QString path = realFolder == listedFolder ? listed : realFolder + listed.mid(slash);
    if (!QFileInfo(path).isSymLink())
        return fontfiles::catalogued(path);
    const QString target = QFileInfo(path).canonicalFilePath();
    return fontfiles::catalogued(target.isEmpty() ? path : spelled(target));
}

QString RealNames::folder(const QString& listedFolder)
{
    const auto known = m_folders.constFind(listedFolder);
    if (known != m_folders.cend())
        return *known;
    const QString canonical = QFileInfo(listedFolder).canonicalFilePath();
    const QString real = canonical.isEmpty() ? listedFolder : spelled(canonical);
    m_folders.insert(listedFolder, real);
    return real;
}

QString RealNames::spelled(const QString& canonical) const
{
    for (QString above = canonical; !above.isEmpty(); above.truncate(above.lastIndexOf(QLatin1Char('/')))) {
        const auto root = m_roots.constFind(above);
        if (root != m_roots.cend())
            return *root + canonical.mid(above.size());
    }
    return canonical;
}

} // namespace kerval::systemfm
