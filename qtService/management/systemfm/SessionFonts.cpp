#include "qtService/management/systemfm/SessionFonts.h"

#include "qtService/management/systemfm/FontFiles.h"
#include "qtService/management/systemfm/platform_fontplacement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kerval::systemfm {

SessionFonts::SessionFonts(const FontPlaces& places, const LogonSession& session)
    : m_sessionFolder(session.isValid() ? session.folder() + QStringLiteral("/fonts") : QString())
    , m_folders(places.sessionLink)
{
}

bool SessionFonts::prepare()
{
    if (m_sessionFolder.isEmpty() || !QDir().mkpath(m_sessionFolder))
        return false;
    const QFileInfo link(m_folders.root());
    if (link.isSymLink() && link.symLinkTarget() == m_sessionFolder)
        return true;
    // A link of an earlier session may point elsewhere; what is no link is not ours to remove.
    if (link.isSymLink())
        QFile::remove(link.filePath());
    else if (link.exists())
        return false;
    const QString parent = link.path();
    m_touched.insert(parent);
    return QDir().mkpath(parent) && placement::makeLink(m_sessionFolder, link.filePath());
}

void SessionFonts::load()
{
    m_fonts.clear();
    m_folders = BoundedFolders(m_folders.root());
    if (m_sessionFolder.isEmpty())
        return;
    const QDir root(m_sessionFolder);
    const QStringList folders = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString& name : folders) {
        const QDir folder(root.filePath(name));
        // QDir::System: links that point nowhere.
        const QFileInfoList links = folder.entryInfoList(QDir::Files | QDir::System | QDir::Hidden);
        QHash<QString, QFileInfoList> fonts; // by own name
        for (const QFileInfo& link : links)
            fonts[link.completeBaseName()].append(link);
        for (auto font = fonts.cbegin(); font != fonts.cend(); ++font) {
            // The font stands under the name that ours was made from: the metrics file's for a Type 1 font.
            QString fileName;
            for (const QFileInfo& link : *font) {
                if (fontfiles::ownName(link.symLinkTarget()) == font.key())
                    fileName = link.symLinkTarget();
            }
            const QString outline = fileName.isEmpty() ? QString() : fontfiles::outline(fileName);
            const QString ownOutline = fontfiles::ownName(fileName, outline);
            if (outline.isEmpty() || !QFileInfo(folder.filePath(ownOutline)).isFile()) {
                for (const QFileInfo& link : *font)
                    QFile::remove(link.filePath());
                m_touched.insert(m_folders.path(name));
                continue;
            }
            m_fonts.insert(fileName, Linked{name, ownOutline});
            m_folders.count(name, font->size());
        }
        if (folder.isEmpty(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot))
            root.rmdir(name);
    }
}

QString SessionFonts::path(const QString& fileName) const
{
    const auto font = m_fonts.constFind(fileName);
    return font == m_fonts.cend() ? QString() : m_folders.path(font->folder) + QLatin1Char('/') + font->outline;
}

bool SessionFonts::link(const QString& fileName)
{
    if (m_fonts.contains(fileName))
        return true;
    const QStringList sources = fontfiles::all(fileName);
    if (sources.isEmpty() || !prepare())
        return false;
    const QString name = m_folders.take(sources.size());
    const QString folder = m_sessionFolder + QLatin1Char('/') + name;
    const Linked linked{name, fontfiles::ownName(fileName, sources.constFirst())};
    m_fonts.insert(fileName, linked);
    bool made = QDir().mkpath(folder);
    for (const QString& source : sources) {
        const QString own = folder + QLatin1Char('/') + fontfiles::ownName(fileName, source);
        QFile::remove(own);
        made = made && placement::makeLink(source, own);
    }
    m_touched.insert(m_folders.path(name));
    if (!made)
        remove(fileName);
    return made;
}

void SessionFonts::remove(const QString& fileName)
{
    const auto font = m_fonts.find(fileName);
    if (font == m_fonts.end())
        return;
    const QStringList files = ownFiles(fileName, *font);
    for (const QString& file : files)
        QFile::remove(file);
    m_folders.release(font->folder, files.size());
    QDir(m_sessionFolder).rmdir(font->folder);
    m_touched.insert(m_folders.path(font->folder));
    m_fonts.erase(font);
}

QSet<QString> SessionFonts::takeTouched()
{
    return std::exchange(m_touched, {});
}

QStringList SessionFonts::ownFiles(const QString& fileName, const Linked& linked) const
{
    const QString folder = m_sessionFolder + QLatin1Char('/') + linked.folder + QLatin1Char('/');
    QStringList files{folder + linked.outline};
    for (const char* suffix : {".pfb", ".pfm", ".afm"}) {
        const QString file = folder + fontfiles::ownName(fileName) + QLatin1String(suffix);
        if (!files.contains(file) && QFileInfo(file).isSymLink())
            files.append(file);
    }
    return files;
}

} // namespace kerval::systemfm
