#include "qtService/management/systemfm/FontManagerStrategyFontconfig.h"

#include "qtService/management/systemfm/FolderWatch.h"
#include "qtService/management/systemfm/FontFiles.h"
#include "qtService/management/systemfm/FontconfigExplainer.h"
#include "qtService/management/systemfm/ProtectedFonts.h"
#include "qtService/management/systemfm/RealNames.h"
#include "qtService/management/systemfm/platform_fontplacement.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>

namespace kerval::systemfm {

namespace {

// fontconfig's programs compare times of change in whole seconds.
constexpr int lateReaderDelay = 1100;

const char sessionKey[] = "UniqueSessionId";
const char temporaryKey[] = "TempActiveFonts";

QString temporaryFile(const FontPlaces& places)
{
    return places.dataFolder + QStringLiteral("/tempactive.ini");
}

} // namespace

FontManagerStrategyFontconfig::FontManagerStrategyFontconfig()
    : FontManagerStrategyFontconfig(FontPlaces::ofUser(), LogonSession::current())
{
}

FontManagerStrategyFontconfig::FontManagerStrategyFontconfig(const FontPlaces& places, const LogonSession& session)
    : m_places(places)
    , m_session(session)
    , m_rules(places.rulesFile, places.dataFolder + QStringLiteral("/fontrules.ini"))
    , m_placed(places)
    , m_sessionFonts(places, session)
{
    start();
}

FontManagerStrategyFontconfig::~FontManagerStrategyFontconfig()
{
    m_thread.quit();
    m_thread.wait();
}

void FontManagerStrategyFontconfig::start()
{
    QSettings temporary(temporaryFile(m_places), QSettings::IniFormat);
    if (temporary.value(QLatin1String(sessionKey)).toByteArray() != m_session.id())
        temporary.clear();

    m_placed.load();
    m_placed.reconcile();
    m_sessionFonts.load();
    m_rules.load();
    // A rule of a file that is gone would meet whatever comes under its name later. A folder that is gone with it may
    // lie on a volume that comes back.
    const QSet<QString> rejected = m_rules.rejected();
    for (const QString& path : rejected) {
        if (!QFileInfo::exists(path) && QFileInfo(QFileInfo(path).path()).isDir())
            m_rules.accept(path);
    }
    if (m_rules.rejected() != rejected && !m_rules.save())
        m_rules.setRejected(rejected);

    m_watch = new FolderWatch;
    m_watch->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_watch, &QObject::deleteLater);
    // The slots run in the watch's thread; their state has locks.
    connect(m_watch, &FolderWatch::changed, this, &FontManagerStrategyFontconfig::reread, Qt::DirectConnection);
    connect(m_watch, &FolderWatch::lookNeeded, this, &FontManagerStrategyFontconfig::rereadIfChanged,
            Qt::DirectConnection);
    m_thread.setObjectName(QStringLiteral("system fonts"));
    m_thread.start();
    {
        QMutexLocker operation(&m_operation);
        readAndPublish();
        m_announced = activeByName();
    }
}

QHash<QString, ActivityType> FontManagerStrategyFontconfig::activeByName()
{
    QHash<QString, ActivityType> active;
    QReadLocker lock(&m_viewLock);
    const auto add = [&](const QString& fileName, ActivityType type) {
        if (isSupportedFont(fileName) && !active.contains(fileName))
            active.insert(fileName, type);
    };
    for (auto file = m_files.cbegin(); file != m_files.cend(); ++file) {
        if (file->accepted)
            add(file->name, PermanentlyActive);
    }
    for (auto font = m_placedView.cbegin(); font != m_placedView.cend(); ++font) {
        if (*font)
            add(font.key(), PermanentlyActive);
    }
    for (auto font = m_sessionView.cbegin(); font != m_sessionView.cend(); ++font) {
        if (*font)
            add(font.key(), TemporarilyActive);
    }
    return active;
}

QList<SystemFontDescriptor> FontManagerStrategyFontconfig::activeFonts()
{
    const QHash<QString, ActivityType> active = activeByName();
    QList<SystemFontDescriptor> fonts;
    QList<SystemFontDescriptor> temporary;
    fonts.reserve(active.size());
    for (auto font = active.cbegin(); font != active.cend(); ++font)
        (*font == PermanentlyActive ? fonts : temporary).append(SystemFontDescriptor(font.key(), *font));
    return fonts + temporary;
}

QStringList FontManagerStrategyFontconfig::installedFontFiles()
{
    QSet<QString> names;
    QReadLocker lock(&m_viewLock);
    for (auto file = m_files.cbegin(); file != m_files.cend(); ++file)
        names.insert(file->name);
    for (const auto* own : {&m_placedView, &m_sessionView}) {
        for (auto font = own->cbegin(); font != own->cend(); ++font)
            names.insert(font.key());
    }
    QStringList files;
    files.reserve(names.size());
    for (const QString& name : qAsConst(names)) {
        if (isSupportedFont(name))
            files.append(name);
    }
    return files;
}

QHash<QString, int> FontManagerStrategyFontconfig::activatePermanently(const QString& fileName,
                                                                       const QStringList& fontNames)
{
    return request(fileName, PermanentlyActive, fontNames);
}

QHash<QString, int> FontManagerStrategyFontconfig::activateTemporarily(const QString& fileName,
                                                                       const QStringList& fontNames)
{
    return request(fileName, TemporarilyActive, fontNames);
}

QHash<QString, int> FontManagerStrategyFontconfig::deactivate(const QString& fileName, const QStringList& fontNames)
{
    return request(fileName, Inactive, fontNames);
}

QHash<QString, int> FontManagerStrategyFontconfig::request(const QString& fileName, ActivityType activityType,
                                                           const QStringList& fontNames)
{
    const bool possible =
        activityType == Inactive || (isSupportedFont(fileName) && !fontfiles::outline(fileName).isEmpty());
    if (!possible)
        return sameForAll(fontNames, RegistrationFailed);
    {
        QMutexLocker lock(&m_batchLock);
        if (m_batchThread == QThread::currentThreadId()) {
            m_batch.insert(fileName, activityType);
            return sameForAll(fontNames, Done);
        }
    }
    const QHash<QString, int> failed = carryOut({{fileName, activityType}});
    return sameForAll(fontNames, failed.value(fileName, Done));
}

void FontManagerStrategyFontconfig::beginBatch()
{
    QMutexLocker lock(&m_batchLock);
    m_batchThread = QThread::currentThreadId();
}

QHash<QString, int> FontManagerStrategyFontconfig::endBatch()
{
    QHash<QString, ActivityType> requests;
    {
        QMutexLocker lock(&m_batchLock);
        m_batchThread = nullptr;
        requests.swap(m_batch);
    }
    return carryOut(requests);
}

bool FontManagerStrategyFontconfig::hasNativeConflictCheck()
{
    return false;
}

void FontManagerStrategyFontconfig::notifyFontChange()
{
    {
        QMutexLocker operation(&m_operation);
        storeTemporary();
    }
    QMetaObject::invokeMethod(m_watch, [this] {
        m_watch->trigger();
        QTimer::singleShot(lateReaderDelay, m_watch, [this] { touchForLateReaders(); });
    });
}

void FontManagerStrategyFontconfig::storeTemporary()
{
    QStringList fonts = m_sessionFonts.fileNames();
    fonts.sort();
    QSettings temporary(temporaryFile(m_places), QSettings::IniFormat);
    if (temporary.value(QLatin1String(sessionKey)).toByteArray() != m_session.id())
        temporary.setValue(QLatin1String(sessionKey), m_session.id());
    if (temporary.value(QLatin1String(temporaryKey)).toStringList() != fonts)
        temporary.setValue(QLatin1String(temporaryKey), fonts);
}

QString FontManagerStrategyFontconfig::fontsFolder()
{
    return protectedfonts::folder();
}

QStringList FontManagerStrategyFontconfig::protectedFontFiles()
{
    return protectedfonts::fileNames();
}

FontActivityReason FontManagerStrategyFontconfig::activityReason(const QString& fileName)
{
    QMutexLocker operation(&m_operation);
    m_database.refresh();
    FontconfigExplainer explainer(m_database, m_places);
    explainer.setRejected(m_rules.rejected());
    explainer.setListed(listedPaths(fileName));
    explainer.setOwnFiles(m_placed.path(fileName), m_sessionFonts.path(fileName));
    explainer.setOwner([this](const QString& path) {
        const QStringList fonts = m_placed.fileNames() + m_sessionFonts.fileNames();
        for (const QString& font : fonts) {
            if (m_placed.path(font) == path || m_sessionFonts.path(font) == path)
                return font;
        }
        return fontfiles::catalogued(path);
    });
    return explainer.explain(fileName);
}

void FontManagerStrategyFontconfig::rereadIfChanged()
{
    {
        QMutexLocker operation(&m_operation);
        if (m_database.isCurrent())
            return;
    }
    reread();
}

void FontManagerStrategyFontconfig::reread()
{
    bool differs = false;
    {
        QMutexLocker operation(&m_operation);
        if (!m_rules.isStored())
            m_rules.load();
        readAndPublish();
        QHash<QString, ActivityType> active = activeByName();
        differs = active != m_announced;
        m_announced.swap(active);
    }
    if (differs)
        emit activeFontsChanged();
}

void FontManagerStrategyFontconfig::readAndPublish()
{
    FontconfigDatabase::Contents contents;
    // Once more when something had to be brought in line.
    for (int round = 0; round < 2; ++round) {
        contents = m_database.readAll();
        FoundFiles files = foundFiles(contents);
        QMultiHash<QString, QString> paths = otherPaths(files);
        {
            QWriteLocker lock(&m_viewLock);
            m_files.swap(files);
            m_otherPaths.swap(paths);
        }
        if (!tidy())
            break;
        readTouched();
    }
    m_folders = QSet<QString>(contents.folders.cbegin(), contents.folders.cend());

    QHash<QString, bool> placed;
    QHash<QString, bool> session;
    const QStringList placedNames = m_placed.fileNames();
    for (const QString& name : placedNames)
        placed.insert(name, contents.files.value(m_placed.path(name)));
    const QStringList sessionNames = m_sessionFonts.fileNames();
    for (const QString& name : sessionNames)
        session.insert(name, contents.files.value(m_sessionFonts.path(name)));
    {
        QWriteLocker lock(&m_viewLock);
        m_placedView.swap(placed);
        m_sessionView.swap(session);
    }

    QStringList watched = contents.folders;
    for (const QString& path : qAsConst(contents.configuration))
        watched.append(QFileInfo(path).isDir() ? path : QFileInfo(path).path());
    watched.append(QFileInfo(m_places.rulesFile).path());
    watched.append(m_places.userFonts);
    QMetaObject::invokeMethod(m_watch, [this, watched] { m_watch->setFolders(watched); });
}

FontManagerStrategyFontconfig::FoundFiles
FontManagerStrategyFontconfig::foundFiles(const FontconfigDatabase::Contents& contents) const
{
    RealNames names(m_database.roots());
    FoundFiles found;
    const QString placedRoot = m_placed.root() + QLatin1Char('/');
    const QString sessionRoot = m_sessionFonts.root() + QLatin1Char('/');
    for (auto file = contents.files.cbegin(); file != contents.files.cend(); ++file) {
        if (!file.key().startsWith(placedRoot) && !file.key().startsWith(sessionRoot))
            found.insert(file.key(), Found{names.of(file.key()), *file});
    }
    return found;
}

QMultiHash<QString, QString> FontManagerStrategyFontconfig::otherPaths(const FoundFiles& files)
{
    QMultiHash<QString, QString> paths;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (file->name != file.key())
            paths.insert(file->name, file.key());
    }
    return paths;
}

// Empty for a font that fontconfig does not find by itself.
QStringList FontManagerStrategyFontconfig::listedPaths(const QString& fileName) const
{
    QStringList paths = m_otherPaths.values(fileName);
    const QString outline = fontfiles::outline(fileName);
    if (m_files.contains(outline) && !paths.contains(outline))
        paths.append(outline);
    return paths;
}

// True when programs get the font without a file of ours.
bool FontManagerStrategyFontconfig::isFound(const QString& fileName) const
{
    const QStringList paths = listedPaths(fileName);
    return std::any_of(paths.cbegin(), paths.cend(),
                       [this](const QString& path) { return m_files.value(path).accepted; });
}

// Brings our files and links in line with what is there: somebody may have removed one of ours, a crash may have come
// between two steps, a font may have become one that programs find anyway. True when anything was changed.
bool FontManagerStrategyFontconfig::tidy()
{
    QStringList leaving;
    const QStringList placedNames = m_placed.fileNames();
    for (const QString& name : placedNames) {
        if (isFound(name) || !QFileInfo::exists(m_placed.path(name)))
            leaving.append(name);
    }
    m_placed.remove(leaving);
    bool changed = !leaving.isEmpty();
    const QStringList sessionNames = m_sessionFonts.fileNames();
    for (const QString& name : sessionNames) {
        if (isFound(name) || m_placed.contains(name) || !QFileInfo(m_sessionFonts.path(name)).isFile()) {
            m_sessionFonts.remove(name);
            changed = true;
        }
    }
    return changed;
}

// A program that read everything within the second of our change did not see it and would not look again. The folders
// that are touched hold no fonts, so that nobody has to read any for it.
void FontManagerStrategyFontconfig::touchForLateReaders()
{
    QMutexLocker operation(&m_operation);
    if (QFileInfo(m_placed.root()).isDir()) {
        placement::touch(m_placed.root());
        m_database.readAgain({m_placed.root()});
    }
    for (const QString& path : {m_places.rulesFile, QFileInfo(m_places.rulesFile).path()}) {
        if (QFileInfo::exists(path))
            placement::touch(path);
    }
}

} // namespace kerval::systemfm
