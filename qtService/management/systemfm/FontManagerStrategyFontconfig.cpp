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

QHash<SystemFontDescriptor, ActivityType> announced(const QList<SystemFontDescriptor>& fonts)
{
    QHash<SystemFontDescriptor, ActivityType> active;
    active.reserve(fonts.size());
    for (const SystemFontDescriptor& font : fonts)
        active.insert(font, font.activityType);
    return active;
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
    // Twice when something had to be brought in line.
    if (!readAndPublish())
        readAndPublish();
    m_announced = announced(m_view.active());
    m_thread.setObjectName(QStringLiteral("system fonts"));
    m_thread.start();
}

QList<SystemFontDescriptor> FontManagerStrategyFontconfig::activeFonts()
{
    QReadLocker lock(&m_viewLock);
    return m_view.active();
}

QStringList FontManagerStrategyFontconfig::installedFontFiles()
{
    QSet<QString> names;
    QReadLocker lock(&m_viewLock);
    for (const Found& file : qAsConst(m_view.files)) {
        if (file.supported)
            names.insert(file.name);
    }
    for (const auto* own : {&m_view.placed, &m_view.session}) {
        for (auto font = own->cbegin(); font != own->cend(); ++font)
            names.insert(font.key());
    }
    return names.values();
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
    FontconfigDatabase database;
    database.refresh();
    FontconfigExplainer explainer(database, m_places);
    {
        QMutexLocker operation(&m_operation);
        explainer.setRejected(m_rules.rejected());
        explainer.setListed(m_view.pathsOf(fileName));
        explainer.setOwnFiles(m_placed.path(fileName), m_sessionFonts.path(fileName));
    }
    explainer.setOwner([this](const QString& path) {
        QMutexLocker operation(&m_operation);
        const auto placed = m_placed.all();
        for (const auto& font : placed) {
            if (m_placed.path(font.second) == path)
                return font.first;
        }
        const QStringList linked = m_sessionFonts.fileNames();
        for (const QString& font : linked) {
            if (m_sessionFonts.path(font) == path)
                return font;
        }
        return fontfiles::catalogued(path);
    });
    return explainer.explain(fileName);
}

void FontManagerStrategyFontconfig::rereadIfChanged()
{
    if (!m_reader.isCurrent())
        reread();
}

void FontManagerStrategyFontconfig::reread()
{
    if (!readAndPublish()) {
        m_watch->trigger();
        return;
    }
    QHash<SystemFontDescriptor, ActivityType> active = announced(activeFonts());
    if (active == m_announced)
        return;
    m_announced.swap(active);
    emit activeFontsChanged();
}

// False when what was read is out of date already: something was changed meanwhile, or has been brought in line now.
bool FontManagerStrategyFontconfig::readAndPublish()
{
    int changes = 0;
    QVector<QPair<QString, PlacedFonts::Placed>> placed;
    QHash<QString, QString> session;
    {
        QMutexLocker operation(&m_operation);
        if (!m_rules.isStored())
            m_rules.load();
        changes = m_changes;
        placed = m_placed.all();
        const QStringList names = m_sessionFonts.fileNames();
        for (const QString& name : names)
            session.insert(name, m_sessionFonts.path(name));
    }
    const FontconfigDatabase::Contents contents = m_reader.readAll();

    View view;
    RealNames names(m_reader.roots());
    const QString placedRoot = m_placed.root() + QLatin1Char('/');
    const QString sessionRoot = m_sessionFonts.root() + QLatin1Char('/');
    for (auto file = contents.files.cbegin(); file != contents.files.cend(); ++file) {
        if (!file.key().startsWith(placedRoot) && !file.key().startsWith(sessionRoot))
            view.addFile(file.key(), names.of(file.key()), *file);
    }
    QStringList placedGone;
    for (const auto& font : qAsConst(placed)) {
        const QString path = m_placed.path(font.second);
        const auto file = contents.files.constFind(path);
        view.placed.insert(font.first, file != contents.files.cend() && *file);
        if (file == contents.files.cend() && !QFileInfo::exists(path))
            placedGone.append(font.first);
    }
    for (auto font = session.cbegin(); font != session.cend(); ++font)
        view.session.insert(font.key(), contents.files.value(*font));
    QSet<QString> folders(contents.folders.cbegin(), contents.folders.cend());

    QMutexLocker operation(&m_operation);
    if (m_changes == changes)
        tidy(view, placedGone);
    if (m_changes != changes)
        return false;
    m_folders.swap(folders);
    {
        QWriteLocker lock(&m_viewLock);
        std::swap(m_view, view);
    }
    operation.unlock();
    watchFolders(contents);
    return true;
}

void FontManagerStrategyFontconfig::watchFolders(const FontconfigDatabase::Contents& contents)
{
    QStringList watched = contents.folders;
    for (const QString& path : contents.configuration)
        watched.append(QFileInfo(path).isDir() ? path : QFileInfo(path).path());
    watched.append(QFileInfo(m_places.rulesFile).path());
    watched.append(m_places.userFonts);
    QMetaObject::invokeMethod(m_watch, [this, watched] { m_watch->setFolders(watched); });
}

// Brings our files and links in line with what is there: somebody may have removed one of ours, a crash may have come
// between two steps, a font may have become one that programs find anyway.
void FontManagerStrategyFontconfig::tidy(const View& view, const QStringList& placedGone)
{
    QStringList leaving = placedGone;
    if (view.placed.size() < view.files.size()) {
        for (auto font = view.placed.cbegin(); font != view.placed.cend(); ++font) {
            if (view.isFound(font.key()))
                leaving.append(font.key());
        }
    } else {
        for (const Found& file : view.files) {
            if (file.accepted && view.placed.contains(file.name))
                leaving.append(file.name);
        }
    }
    m_placed.remove(leaving);
    bool changed = !leaving.isEmpty();
    const QStringList sessionNames = m_sessionFonts.fileNames();
    for (const QString& name : sessionNames) {
        if (view.isFound(name) || m_placed.contains(name) || !QFileInfo(m_sessionFonts.path(name)).isFile()) {
            m_sessionFonts.remove(name);
            changed = true;
        }
    }
    if (!changed)
        return;
    ++m_changes;
    m_database.refresh();
    readTouched();
}

// A program that read everything within the second of our change did not see it and would not look again. The folders
// that are touched hold no fonts, so that nobody has to read any for it.
void FontManagerStrategyFontconfig::touchForLateReaders()
{
    QMutexLocker operation(&m_operation);
    m_database.refresh();
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
