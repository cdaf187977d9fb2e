#include "qtService/management/systemfm/PlacedFonts.h"

#include "qtService/app/core/PathCodec.h"
#include "qtService/management/systemfm/FontFiles.h"
#include "qtService/management/systemfm/platform_fontplacement.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace kerval::systemfm {

namespace {

const char header[] = "[Fonts]\n";
const char copyMark[] = "copy ";

} // namespace

PlacedFonts::PlacedFonts(const FontPlaces& places)
    : m_indexFile(places.dataFolder + QStringLiteral("/permactive.ini"))
    , m_strayFolder(places.dataFolder + QStringLiteral("/unclaimed-fonts"))
    , m_folders(places.placed)
{
}

// Lines: <folder>\<file>=[copy ]<encoded path>. A line without its end was being written when the program was killed.
void PlacedFonts::load()
{
    m_fonts.clear();
    m_folders = BoundedFolders(m_folders.root());
    m_lines = 0;
    QFile file(m_indexFile);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QHash<QByteArray, QByteArray> values;
    while (!file.atEnd()) {
        const QByteArray text = file.readLine();
        const int equals = text.indexOf('=');
        if (!text.endsWith('\n') || equals <= 0)
            continue;
        values.insert(text.left(equals), text.mid(equals + 1).trimmed());
        ++m_lines;
    }
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        const QList<QByteArray> place = value.key().split('\\');
        if (value->isEmpty() || place.size() != 2)
            continue;
        Placed placed;
        placed.folder = QString::fromLatin1(place.at(0));
        placed.outline = QString::fromLatin1(place.at(1));
        placed.isCopy = value->startsWith(copyMark);
        const QString fileName = krv::decodePath(value->mid(placed.isCopy ? int(sizeof copyMark) - 1 : 0));
        m_fonts.insert(fileName, placed);
    }
}

void PlacedFonts::reconcile()
{
    QStringList gone;
    for (auto font = m_fonts.begin(); font != m_fonts.end(); ++font) {
        m_folders.count(font->folder, ownFiles(font.key(), *font).size());
        if (!stillStandsFor(font.key(), *font)) {
            gone.append(font.key());
            continue;
        }
        const QStringList sources = fontfiles::all(font.key());
        for (const QString& source : sources) {
            const QString own =
                m_folders.path(font->folder) + QLatin1Char('/') + fontfiles::ownName(font.key(), source);
            if (!placement::isCurrent(source, own)) {
                placement::place(source, own);
                m_touched.insert(m_folders.path(font->folder));
            }
        }
    }
    remove(gone);
    clearStrays();
    if (m_lines > 2 * m_fonts.size() + 64)
        rewrite();
}

// Our file is gone when a crash came before it was made, or somebody removed it: then the font is not active. The
// font's own file is gone when the user removed it, and with it goes ours, unless it was on a volume that is not here
// now: only fonts of other volumes are copied.
bool PlacedFonts::stillStandsFor(const QString& fileName, const Placed& placed) const
{
    if (!QFileInfo(path(fileName)).isFile())
        return false;
    if (!fontfiles::outline(fileName).isEmpty())
        return true;
    return placed.isCopy && !QFileInfo(QFileInfo(fileName).path()).isDir();
}

// Files of nobody are left by a crash, or by a lost index. A file whose data has no other name might be the last of the
// user's font: it is put aside.
void PlacedFonts::clearStrays()
{
    QSet<QString> known;
    for (auto font = m_fonts.cbegin(); font != m_fonts.cend(); ++font) {
        const QStringList files = ownFiles(font.key(), *font);
        for (const QString& file : files)
            known.insert(file);
    }
    const QDir root(m_folders.root());
    const QStringList folders = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString& name : folders) {
        const QDir folder(root.filePath(name));
        const QStringList files = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
        for (const QString& file : files) {
            const QString path = folder.filePath(file);
            if (known.contains(path) || file == QLatin1String(".uuid"))
                continue;
            m_touched.insert(folder.path());
            if (placement::isOnlyName(path) && !file.endsWith(QLatin1String(".part"))) {
                QDir().mkpath(m_strayFolder);
                const QString aside = m_strayFolder + QLatin1Char('/') + file;
                QFile::remove(aside);
                qWarning().noquote() << "W_0_ a font of unknown origin was put aside:" << aside;
                if (QFile::rename(path, aside))
                    continue;
            }
            QFile::remove(path);
        }
        if (folder.isEmpty())
            root.rmdir(name);
    }
}

QVector<QPair<QString, PlacedFonts::Placed>> PlacedFonts::all() const
{
    QVector<QPair<QString, Placed>> fonts;
    fonts.reserve(m_fonts.size());
    for (auto font = m_fonts.cbegin(); font != m_fonts.cend(); ++font)
        fonts.append({font.key(), *font});
    return fonts;
}

QString PlacedFonts::path(const Placed& placed) const
{
    return m_folders.path(placed.folder) + QLatin1Char('/') + placed.outline;
}

QString PlacedFonts::path(const QString& fileName) const
{
    const auto font = m_fonts.constFind(fileName);
    return font == m_fonts.cend() ? QString() : path(*font);
}

bool PlacedFonts::note(const QStringList& fileNames)
{
    QByteArray lines;
    QStringList noted;
    for (const QString& fileName : fileNames) {
        const QStringList files = fontfiles::all(fileName);
        if (files.isEmpty() || m_fonts.contains(fileName))
            continue;
        Placed placed;
        placed.folder = m_folders.take(files.size());
        placed.outline = fontfiles::ownName(fileName, files.constFirst());
        m_fonts.insert(fileName, placed);
        noted.append(fileName);
        lines += line(fileName, placed);
    }
    if (append(lines))
        return true;
    for (const QString& fileName : qAsConst(noted)) {
        const Placed placed = m_fonts.take(fileName);
        m_folders.release(placed.folder, fontfiles::all(fileName).size());
    }
    return false;
}

bool PlacedFonts::place(const QString& fileName)
{
    const auto font = m_fonts.find(fileName);
    if (font == m_fonts.end())
        return false;
    const QString folder = m_folders.path(font->folder);
    const QStringList sources = fontfiles::all(fileName);
    bool placed = !sources.isEmpty() && QDir().mkpath(folder);
    for (const QString& source : sources) {
        const QString own = folder + QLatin1Char('/') + fontfiles::ownName(fileName, source);
        const auto method = placed ? placement::place(source, own) : placement::Method::None;
        placed = method != placement::Method::None;
        if (method == placement::Method::Copy)
            font->isCopy = true;
    }
    m_touched.insert(folder);
    // The mark matters only while the font's volume is away; failing to store it loses nothing else.
    if (placed && font->isCopy)
        append(line(fileName, *font));
    if (!placed)
        remove({fileName});
    return placed;
}

void PlacedFonts::remove(const QStringList& fileNames)
{
    QByteArray lines;
    QSet<QString> folders;
    for (const QString& fileName : fileNames) {
        const auto font = m_fonts.find(fileName);
        if (font == m_fonts.end())
            continue;
        const QStringList files = ownFiles(fileName, *font);
        for (const QString& file : files)
            QFile::remove(file);
        m_folders.release(font->folder, files.size());
        folders.insert(m_folders.path(font->folder));
        lines += removalLine(*font);
        m_fonts.erase(font);
    }
    for (const QString& folder : qAsConst(folders)) {
        QDir().rmdir(folder);
        m_touched.insert(folder);
    }
    // When the lines cannot be stored, the next start finds the entries without files and clears them.
    append(lines);
}

QSet<QString> PlacedFonts::takeTouched()
{
    return std::exchange(m_touched, {});
}

// What may lie in the folder for a font: its companions may be gone from beside the font itself by now.
QStringList PlacedFonts::ownFiles(const QString& fileName, const Placed& placed) const
{
    const QString folder = m_folders.path(placed.folder) + QLatin1Char('/');
    QStringList files{folder + placed.outline};
    if (placed.outline.endsWith(QLatin1String(".pfb")) || placed.outline.endsWith(QLatin1String(".pfm"))) {
        for (const char* suffix : {".pfb", ".pfm", ".afm"}) {
            const QString file = folder + fontfiles::ownName(fileName) + QLatin1String(suffix);
            if (!files.contains(file) && QFileInfo::exists(file))
                files.append(file);
        }
    }
    return files;
}

QByteArray PlacedFonts::line(const QString& fileName, const Placed& placed) const
{
    return placed.folder.toLatin1() + '\\' + placed.outline.toLatin1() + '=' + (placed.isCopy ? copyMark : "") +
           krv::encodePath(fileName) + '\n';
}

QByteArray PlacedFonts::removalLine(const Placed& placed)
{
    return placed.folder.toLatin1() + '\\' + placed.outline.toLatin1() + "=\n";
}

bool PlacedFonts::append(const QByteArray& lines)
{
    if (lines.isEmpty())
        return true;
    QFile file(m_indexFile);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered))
        return false;
    const qint64 before = file.size();
    QByteArray text = before == 0 ? QByteArray(header) : QByteArray();
    // A killed writer may have left half a line, which must not swallow ours.
    if (before > 0 && file.seek(before - 1) && file.read(1) != "\n")
        text += '\n';
    text += lines;
    if (file.write(text) == text.size()) {
        m_lines += lines.count('\n');
        return true;
    }
    file.resize(before);
    return false;
}

void PlacedFonts::rewrite()
{
    QSaveFile file(m_indexFile);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(header);
    for (auto font = m_fonts.cbegin(); font != m_fonts.cend(); ++font)
        file.write(line(font.key(), *font));
    if (file.commit())
        m_lines = m_fonts.size();
}

} // namespace kerval::systemfm
