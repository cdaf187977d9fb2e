#include "qtService/management/FindFontFilesCommand.h"

#include "fontfile/KrvFontFile.h"
#include "qtService/management/platform_files.h"
#include "qtService/management/systemfm/FontPlaces.h"

#include <QDir>
#include <QFileInfo>

namespace {

// More than any real collection holds; a crafted header may claim millions.
constexpr int mostFaces = 1000;

bool isCataloguedFormat(const QString& path)
{
    const KrvFontFile::Format format = KrvFontFile::formatFromFileName(path);
    return format >= KrvFontFile::FormatTtf && format <= KrvFontFile::FormatPfm;
}

// Composed letters where the file can be found under them: file systems of Linux tell both spellings apart.
QString spelledPath(const QString& path)
{
    const QString slashed = QDir::cleanPath(QFileInfo(QDir::fromNativeSeparators(path)).absoluteFilePath());
    const QString composed = slashed.normalized(QString::NormalizationForm_C);
    return composed == slashed || !QFileInfo::exists(composed) ? slashed : composed;
}

} // namespace

FindFontFilesCommand::FindFontFilesCommand(const QStringList& paths, int maxDepth)
    : m_paths(paths)
    , m_maxDepth(maxDepth)
{
    qRegisterMetaType<FindFontFilesCommand::Error>("FindFontFilesCommand::Error");
    qRegisterMetaType<QList<QPair<QString, int>>>("QList<QPair<QString, int> >");
    qRegisterMetaType<QList<QPair<QString, int>>>("QList<QPair<QString,int>>");
}

FindFontFilesCommand::~FindFontFilesCommand()
{
    waitForFinished();
}

void FindFontFilesCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    const auto places = kerval::systemfm::FontPlaces::ofUser();
    for (const QString& folder : {places.placed, places.sessionLink}) {
        m_ownFolders.append(QDir::cleanPath(folder));
        const QString real = QFileInfo(folder).canonicalFilePath();
        if (!real.isEmpty())
            m_ownFolders.append(real);
    }
    m_ownFolders.removeDuplicates();

    for (const QString& path : m_paths) {
        if (state() == Cancelled)
            return;
        if (!path.isEmpty())
            searchPath(spelledPath(path), 0, Reached::Directly);
    }
    followLinks();
    setState(Finished);
}

void FindFontFilesCommand::searchPath(const QString& path, int depth, Reached reached)
{
    if (m_maxDepth >= 1 && depth > m_maxDepth)
        return;
    const QFileInfo info(path);
    if (info.isDir())
        searchFolder(path, depth, reached);
    else if (info.isFile())
        findFile(path, reached);
}

void FindFontFilesCommand::searchFolder(const QString& path, int depth, Reached reached)
{
    const kerval::platform::FileId id = kerval::platform::fileId(path);
    if ((reached == Reached::ThroughLink && m_seenFolders.contains(id)) || isOwnFolder(path))
        return;
    m_seenFolders.insert(id);

    const QDir folder(path);
    if (!folder.isReadable()) {
        qWarning("U_ The folder \"%s\" cannot be read", qUtf8Printable(path));
        return;
    }
    for (const QString& name : kerval::platform::unreadableNames(path))
        if (isCataloguedFormat(name))
            qWarning("U_ The name of \"%s/%s\" is no valid text, the file cannot be opened", qUtf8Printable(path),
                     qUtf8Printable(name));

    const QFileInfoList entries = folder.entryInfoList(
        QDir::Dirs | QDir::Files | QDir::Drives | QDir::AllDirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        if (state() == Cancelled)
            return;
        const QString entryPath = entry.absoluteFilePath();
        if (entry.isSymLink())
            m_links.append({entryPath, depth + 1});
        else if (entry.isDir())
            searchPath(entryPath, depth + 1, reached);
        else
            findFile(entryPath, reached);
    }
}

// A link's own folder may lie anywhere, above the one it lies in too, so all that is reached through it is checked.
void FindFontFilesCommand::followLinks()
{
    while (!m_links.isEmpty() && state() != Cancelled) {
        const Link link = m_links.takeFirst();
        const QFileInfo info(link.path);
        if (info.isDir())
            searchPath(link.path, link.depth, Reached::ThroughLink);
        else if (info.isFile())
            findFile(link.path, Reached::ThroughLink);
    }
}

void FindFontFilesCommand::findFile(const QString& path, Reached reached)
{
    if (!isCataloguedFormat(path))
        return;
    const kerval::platform::FileId id = kerval::platform::fileId(path);
    if (reached == Reached::ThroughLink && m_seenFiles.contains(id))
        return;
    m_seenFiles.insert(id);
    if (!isOwnFolder(QFileInfo(path).path()))
        processFile(path);
}

void FindFontFilesCommand::processFile(const QString& path)
{
    int faces = 0;
    int error = NoError;
    if (isFontFile(path, &faces, &error)) {
        QList<QPair<QString, int>> found;
        found.reserve(faces);
        const QString spelled = spelledPath(path);
        for (int face = 0; face < faces; ++face)
            found.append({spelled, face});
        if (!found.isEmpty())
            emit fontFilesFound(found);
    } else if (error != NoError) {
        emit failedFontFileFound(path, error);
    } else {
        qWarning("U_ \"%s\" cannot be read as a font", qUtf8Printable(path));
    }
}

bool FindFontFilesCommand::isFontFile(const QString& path, int* faces, int* error)
{
    *faces = 0;
    const QString spelled = spelledPath(path);
    // Opening a pipe would wait for ever.
    if (!isCataloguedFormat(spelled) || !QFileInfo(spelled).isFile())
        return false;
    KrvFontFile font(spelled);
    if (!font.open(0))
        return false;
    *faces = qMin(font.faceCount(), mostFaces);
    if (!hasPostScriptName(font)) {
        *error = EmptyPostScriptName;
        return false;
    }
    if (font.familyName().startsWith(QLatin1Char('.'))) {
        *error = HiddenFontName;
        return false;
    }
    return true;
}

bool FindFontFilesCommand::hasPostScriptName(const KrvFontFile& font)
{
    // Read first: asked for the PostScript name, the font reader drops one that is not valid.
    constexpr int postScriptName = 6;
    constexpr int microsoft = 3;
    constexpr int english = 0x409;
    const QString stored = font.sfntName(postScriptName, microsoft, english, false);
    return !font.postScriptName().isEmpty() ||
           std::any_of(stored.begin(), stored.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

bool FindFontFilesCommand::isOwnFolder(const QString& path) const
{
    const auto lies = [this](const QString& folder) {
        return std::any_of(m_ownFolders.begin(), m_ownFolders.end(), [&](const QString& own) {
            return folder == own || folder.startsWith(own + QLatin1Char('/'));
        });
    };
    return lies(path) || lies(QFileInfo(path).canonicalFilePath());
}
