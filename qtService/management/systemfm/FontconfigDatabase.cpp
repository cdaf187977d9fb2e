#include "qtService/management/systemfm/FontconfigDatabase.h"

#include "qtService/management/systemfm/XmlText.h"

#include <QFile>
#include <QFileInfo>
#include <QThreadPool>
#include <QXmlStreamReader>

#include <fontconfig/fontconfig.h>

namespace kerval::systemfm {

namespace {

const FcChar8* fcText(const QByteArray& text)
{
    return reinterpret_cast<const FcChar8*>(text.constData());
}

QString decoded(const FcChar8* path)
{
    return QFile::decodeName(reinterpret_cast<const char*>(path));
}

QStringList takeList(FcStrList* list)
{
    QStringList texts;
    if (!list)
        return texts;
    while (const FcChar8* text = FcStrListNext(list))
        texts.append(decoded(text));
    FcStrListDone(list);
    return texts;
}

struct CacheDeleter
{
    void operator()(FcCache* cache) const { FcDirCacheUnload(cache); }
};
using Cache = std::unique_ptr<FcCache, CacheDeleter>;

struct FontSetDeleter
{
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
using FontSet = std::unique_ptr<FcFontSet, FontSetDeleter>;

struct PatternDeleter
{
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

Cache readFolder(const QString& folder, bool again, FcConfig* config)
{
    const QByteArray name = QFile::encodeName(folder);
    return Cache(FcDirCacheRead(fcText(name), again ? FcTrue : FcFalse, config));
}

QStringList subfolders(const Cache& cache)
{
    QStringList names;
    const int count = cache ? FcCacheNumSubdir(cache.get()) : 0;
    for (int i = 0; i < count; ++i)
        names.append(decoded(FcCacheSubdir(cache.get(), i)));
    return names;
}

// Faces and named instances of one file follow each other, so that most repeats are found without a look-up.
template <class Visit>
void forEachFile(const FcFontSet* fonts, Visit visit)
{
    QByteArray last;
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        FcChar8* path = nullptr;
        if (FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &path) != FcResultMatch)
            continue;
        if (last == reinterpret_cast<const char*>(path))
            continue;
        last = reinterpret_cast<const char*>(path);
        visit(decoded(path));
    }
}

} // namespace

void FontconfigDatabase::ConfigDeleter::operator()(_FcConfig* config) const
{
    FcConfigDestroy(config);
}

FontconfigDatabase::Config FontconfigDatabase::loadWithFonts()
{
    Config config(FcInitLoadConfigAndFonts());
    if (!config)
        config.reset(FcConfigCreate());
    return config;
}

FontconfigDatabase::Contents FontconfigDatabase::readAll()
{
    forget();
    refresh();
    Contents contents;
    m_whole = loadWithFonts();
    FcConfig* const config = m_whole.get();

    // Folders that a rule hides are read here all the same: what is installed in them can be switched on.
    QStringList waiting = takeList(FcConfigGetFontDirs(config));
    QSet<QString> seen(waiting.cbegin(), waiting.cend());
    QSet<QString> seenTargets; // a linked folder may lead back to one above it
    while (!waiting.isEmpty()) {
        const QString folder = waiting.takeFirst();
        contents.folders.append(folder);
        const QString target = QFileInfo(folder).canonicalFilePath();
        const Cache cache = target.isEmpty() ? Cache() : readFolder(folder, false, config);
        if (!cache)
            continue;
        const FontSet fonts(FcCacheCopySet(cache.get()));
        forEachFile(fonts.get(), [&contents](const QString& path) { contents.files.insert(path, false); });
        if (seenTargets.contains(target))
            continue;
        seenTargets.insert(target);
        const QStringList inner = subfolders(cache);
        for (const QString& subfolder : inner) {
            if (!seen.contains(subfolder)) {
                seen.insert(subfolder);
                waiting.append(subfolder);
            }
        }
    }
    forEachFile(FcConfigGetFonts(config, FcSetSystem),
                [&contents](const QString& path) { contents.files.insert(path, true); });
    contents.configuration = m_configuration.values();
    return contents;
}

bool FontconfigDatabase::isCurrent()
{
    return m_whole && FcConfigUptoDate(m_whole.get()) == FcTrue;
}

void FontconfigDatabase::forget()
{
    m_config.reset();
}

void FontconfigDatabase::refresh()
{
    const auto stamp = [](const QString& path) {
        const QFileInfo info(path);
        return qMakePair(info.lastModified(), info.size());
    };
    if (m_config) {
        const bool unchanged = std::all_of(m_configuration.cbegin(), m_configuration.cend(),
                                           [&](const QString& path) { return m_stamps.value(path) == stamp(path); });
        if (unchanged)
            return;
    }
    m_config.reset(FcInitLoadConfig());
    if (!m_config)
        m_config.reset(FcConfigCreate());
    m_roots = takeList(FcConfigGetFontDirs(m_config.get()));
    m_cacheFolders = takeList(FcConfigGetCacheDirs(m_config.get()));
    const QStringList configuration = takeList(FcConfigGetConfigFiles(m_config.get()));
    m_configuration = QSet<QString>(configuration.cbegin(), configuration.cend());
    m_stamps.clear();
    m_selections.clear();
    for (const QString& path : configuration) {
        m_stamps.insert(path, stamp(path));
        m_selections += rulesOf(path).selections;
    }
}

QStringList FontconfigDatabase::configurationFiles() const
{
    return m_configuration.values();
}

const FontconfigDatabase::Rules& FontconfigDatabase::rulesOf(const QString& path)
{
    Rules& rules = m_rules[path];
    const QFileInfo info(path);
    if (!info.isFile() || (rules.modified == info.lastModified() && rules.size == info.size()))
        return rules;
    rules = Rules{info.lastModified(), info.size(), {}, true};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return rules;
    QXmlStreamReader reader(&file);
    QStringList open; // elements, from <selectfont> down
    QString text;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && (!open.isEmpty() || reader.name() == QLatin1String("selectfont"))) {
            open.append(reader.name().toString());
            text += QLatin1Char('<') + open.constLast();
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute& attribute : attributes)
                text += QLatin1Char(' ') + attribute.qualifiedName() + QLatin1String("=\"") +
                        escapedXml(attribute.value().toString()) + QLatin1Char('"');
            text += QLatin1Char('>');
        } else if (reader.isCharacters() && !open.isEmpty()) {
            text += escapedXml(reader.text().toString());
        } else if (reader.isEndElement() && !open.isEmpty()) {
            text += QLatin1String("</") + open.takeLast() + QLatin1Char('>');
        }
    }
    rules.wellFormed = !reader.hasError();
    // What fontconfig read before the fault counts for it, but an element cut short would break ours.
    while (!open.isEmpty())
        text += QLatin1String("</") + open.takeLast() + QLatin1Char('>');
    rules.selections = text.toUtf8();
    return rules;
}

QByteArray FontconfigDatabase::frame(const QByteArray& selections, const QStringList& folders) const
{
    QString text = QStringLiteral("<?xml version=\"1.0\"?><fontconfig>");
    for (const QString& folder : m_cacheFolders)
        text += QLatin1String("<cachedir>") + escapedXml(folder) + QLatin1String("</cachedir>");
    for (const QString& folder : folders)
        text += QLatin1String("<dir>") + escapedXml(folder) + QLatin1String("</dir>");
    return text.toUtf8() + selections + "</fontconfig>";
}

QSet<QString> FontconfigDatabase::acceptedUnder(const QByteArray& selections, const QStringList& folders) const
{
    QSet<QString> files;
    const Config config(FcConfigCreate());
    const QByteArray text = frame(selections, folders);
    if (!config || !FcConfigParseAndLoadFromMemory(config.get(), fcText(text), FcTrue) ||
        !FcConfigBuildFonts(config.get()))
        return files;
    forEachFile(FcConfigGetFonts(config.get(), FcSetSystem), [&files](const QString& path) { files.insert(path); });
    return files;
}

QSet<QString> FontconfigDatabase::accepted(const QStringList& folders)
{
    return folders.isEmpty() ? QSet<QString>() : acceptedUnder(m_selections, folders);
}

void FontconfigDatabase::readAgain(const QStringList& folders)
{
    FcConfig* config = m_config.get();
    const auto read = [config](const QString& folder) {
        if (QFileInfo(folder).isDir())
            readFolder(folder, true, config);
        else
            FcDirCacheUnlink(fcText(QFile::encodeName(folder)), config);
    };
    if (folders.size() == 1) {
        read(folders.constFirst());
        return;
    }
    // Threads of its own: the callers hold locks and run on threads of the common pool, all others of which may be
    // waiting for those locks.
    QThreadPool readers;
    for (const QString& folder : folders)
        readers.start([&read, folder] { read(folder); });
    readers.waitForDone();
}

QStringList FontconfigDatabase::filesIn(const QString& folder)
{
    QStringList files;
    const Cache cache = readFolder(folder, false, m_config.get());
    const FontSet fonts(cache ? FcCacheCopySet(cache.get()) : nullptr);
    if (fonts)
        forEachFile(fonts.get(), [&files](const QString& path) { files.append(path); });
    return files;
}

bool FontconfigDatabase::listsSubfolder(const QString& folder, const QString& subfolder)
{
    const QByteArray name = QFile::encodeName(subfolder);
    for (const bool again : {false, true}) {
        const Cache cache = readFolder(folder, again, m_config.get());
        const int count = cache ? FcCacheNumSubdir(cache.get()) : 0;
        for (int i = 0; i < count; ++i) {
            if (name == reinterpret_cast<const char*>(FcCacheSubdir(cache.get(), i)))
                return true;
        }
    }
    return false;
}

bool FontconfigDatabase::reaches(const QString& folder)
{
    if (m_roots.contains(folder))
        return true;
    const QString parent = QFileInfo(folder).path();
    return parent != folder && reaches(parent) && listsSubfolder(parent, folder);
}

QStringList FontconfigDatabase::brokenFiles()
{
    QStringList broken;
    for (const QString& path : qAsConst(m_configuration)) {
        if (QFileInfo(path).isFile() && !rulesOf(path).wellFormed)
            broken.append(path);
    }
    return broken;
}

// Asked of each file by itself, from the roots down, because a rule may hide a whole folder.
QString FontconfigDatabase::hidingFile(const QString& path)
{
    QStringList above;
    for (const QString& root : qAsConst(m_roots)) {
        if (path.startsWith(root + QLatin1Char('/')))
            above.append(root);
    }
    for (const QString& file : qAsConst(m_configuration)) {
        const QByteArray selections = rulesOf(file).selections;
        if (!selections.isEmpty() && !acceptedUnder(selections, above).contains(path))
            return file;
    }
    return {};
}

bool FontconfigDatabase::canRead(const QString& configurationFile)
{
    const Config config(FcConfigCreate());
    return config && FcConfigParseAndLoad(config.get(), fcText(QFile::encodeName(configurationFile)), FcTrue) == FcTrue;
}

QStringList FontconfigDatabase::filesOfGeneric(const QStringList& genericNames)
{
    const Config config = loadWithFonts();
    QSet<QString> names;
    for (const QString& generic : genericNames) {
        const Pattern asked(FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, fcText(generic.toUtf8()), nullptr));
        FcConfigSubstitute(config.get(), asked.get(), FcMatchPattern);
        FcDefaultSubstitute(asked.get());
        FcResult result = FcResultNoMatch;
        const Pattern match(FcFontMatch(config.get(), asked.get(), &result));
        FcChar8* family = nullptr;
        if (!match || FcPatternGetString(match.get(), FC_FAMILY, 0, &family) != FcResultMatch)
            continue;
        const Pattern sought(FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, family, nullptr));
        FcObjectSet* objects = FcObjectSetBuild(FC_FILE, nullptr);
        const FontSet fonts(FcFontList(config.get(), sought.get(), objects));
        FcObjectSetDestroy(objects);
        forEachFile(fonts.get(), [&names](const QString& path) { names.insert(QFileInfo(path).fileName()); });
    }
    return names.values();
}

} // namespace kerval::systemfm
