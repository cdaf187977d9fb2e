// How FontManagerStrategyFontconfig carries changes out; the class's contract tells the order of the steps and why.
#include "qtService/management/systemfm/FontFiles.h"
#include "qtService/management/systemfm/FontManagerStrategyFontconfig.h"
#include "qtService/management/systemfm/RealNames.h"
#include "qtService/management/systemfm/platform_fontplacement.h"

#include <QDebug>
#include <QFileInfo>

namespace kerval::systemfm {

namespace {

QString folderOf(const QString& path)
{
    return QFileInfo(path).path();
}

} // namespace

QHash<QString, int> FontManagerStrategyFontconfig::carryOut(const QHash<QString, ActivityType>& requests)
{
    QHash<QString, int> failed;
    if (requests.isEmpty())
        return failed;
    QMutexLocker operation(&m_operation);
    m_database.refresh();
    QVector<Change> changes;
    for (auto request = requests.cbegin(); request != requests.cend(); ++request) {
        const Change change = planFor(request.key(), request.value());
        if (change.failed)
            failed.insert(change.fileName, RegistrationFailed);
        else if (!isSettled(change))
            changes.append(change);
    }
    if (changes.isEmpty())
        return failed;

    ++m_changes;
    makeFiles(changes);
    writeRules(changes);
    readTouched();
    confirm(changes);
    undo(changes);
    dropFiles(changes);
    readTouched();
    publish(changes);

    for (const Change& change : qAsConst(changes)) {
        if (change.failed)
            failed.insert(change.fileName, RegistrationFailed);
    }
    if (!failed.isEmpty()) {
        qWarning().noquote() << "W_0_ activity could not be changed:" << failed.size() << "of" << requests.size()
                             << "files, the first is" << failed.cbegin().key();
        const QStringList broken = m_database.brokenFiles();
        if (!broken.isEmpty())
            qWarning().noquote() << "W_0_ broken fontconfig files:" << broken.join(QLatin1String(", "));
    }
    return failed;
}

FontManagerStrategyFontconfig::Change FontManagerStrategyFontconfig::planFor(const QString& fileName,
                                                                             ActivityType activityType)
{
    Change change;
    change.fileName = fileName;
    change.activityType = activityType;
    change.outline = fontfiles::outline(fileName);
    // Gone since it was asked for, or one of our own files, which stand for others.
    change.failed = (change.outline.isEmpty() && activityType != Inactive) ||
                    fileName.startsWith(m_placed.root() + QLatin1Char('/')) ||
                    fileName.startsWith(m_sessionFonts.root() + QLatin1Char('/'));
    if (change.failed || change.outline.isEmpty())
        return change;
    const QString folder = folderOf(change.outline);
    if (!m_view.files.contains(change.outline) && m_folders.contains(folder))
        lookIntoFolder(folder);
    change.listed = m_view.pathsOf(fileName);
    for (const QString& path : qAsConst(change.listed)) {
        if (m_rules.rejected().contains(path))
            change.rejected.append(path);
    }
    return change;
}

// A font that has just come into a folder of fontconfig's is not known here before the watch has settled.
void FontManagerStrategyFontconfig::lookIntoFolder(const QString& folder)
{
    const QStringList files = m_database.filesIn(folder);
    const QSet<QString> accepted = m_database.accepted({folder});
    RealNames names(m_database.roots());
    QWriteLocker lock(&m_viewLock);
    for (const QString& file : files)
        m_view.addFile(file, names.of(file), accepted.contains(file));
}

bool FontManagerStrategyFontconfig::isSettled(const Change& change) const
{
    const QString& name = change.fileName;
    const bool isPlaced = m_placed.contains(name);
    const bool isLinked = m_sessionFonts.contains(name);
    const bool found = m_view.isFound(name);
    switch (change.activityType) {
    case PermanentlyActive:
        if (isLinked)
            return false;
        return !change.listed.isEmpty()
                   ? found && !isPlaced
                   : m_view.placed.value(name) && placement::isCurrent(change.outline, m_placed.path(name));
    case TemporarilyActive:
        return isLinked && m_view.session.value(name) && !isPlaced && !found;
    case Inactive:
        break;
    }
    return !isPlaced && !isLinked && !found;
}

void FontManagerStrategyFontconfig::makeFiles(QVector<Change>& changes)
{
    QStringList joining;
    for (const Change& change : qAsConst(changes)) {
        if (change.activityType == PermanentlyActive && change.listed.isEmpty() && !m_placed.contains(change.fileName))
            joining.append(change.fileName);
    }
    m_placed.note(joining);
    for (Change& change : changes) {
        if (change.activityType == PermanentlyActive && change.listed.isEmpty()) {
            change.failed = !m_placed.contains(change.fileName) || !m_placed.place(change.fileName);
            change.made = !change.failed;
        } else if (change.activityType == TemporarilyActive && !m_sessionFonts.contains(change.fileName)) {
            change.failed = !m_sessionFonts.link(change.fileName);
            change.made = !change.failed;
        }
    }
}

void FontManagerStrategyFontconfig::writeRules(QVector<Change>& changes)
{
    const QSet<QString> before = m_rules.rejected();
    const QString folderBefore = m_rules.extraFolder();
    bool needsFolder = false;
    for (Change& change : changes) {
        needsFolder = needsFolder || change.made;
        for (const QString& path : qAsConst(change.listed)) {
            if (change.activityType == PermanentlyActive)
                m_rules.accept(path);
            else if (!change.failed && FontconfigRules::canName(path))
                m_rules.reject(path);
            else
                change.failed = true;
        }
    }
    if (needsFolder && !m_database.reaches(m_places.userFonts))
        m_rules.setExtraFolder(m_places.userFonts);
    if (m_rules.rejected() == before && m_rules.extraFolder() == folderBefore)
        return;
    const bool stored = m_rules.save();
    m_database.forget();
    m_database.refresh();
    if (stored)
        return;
    m_rules.setRejected(before);
    m_rules.setExtraFolder(folderBefore);
    for (Change& change : changes) {
        const int wanted = change.activityType == PermanentlyActive ? 0 : change.listed.size();
        if (change.rejected.size() != wanted)
            change.failed = true;
    }
}

// Brings fontconfig's stored knowledge of the touched folders up to date. It is made to read them even when it sees no
// reason to: times of change are too coarse for two changes that follow each other closely.
void FontManagerStrategyFontconfig::readTouched()
{
    const QSet<QString> touched = m_placed.takeTouched() + m_sessionFonts.takeTouched();
    if (touched.isEmpty())
        return;
    m_database.readAgain(touched.values());
    QSet<QString> above;
    for (const QString& folder : touched)
        above.insert(folderOf(folder));
    for (const QString& folder : qAsConst(above))
        m_database.filesIn(folder);
}

void FontManagerStrategyFontconfig::confirm(QVector<Change>& changes)
{
    QSet<QString> folders;
    QSet<QString> own;
    for (const Change& change : qAsConst(changes)) {
        if (change.failed)
            continue;
        for (const QString& path : change.listed)
            folders.insert(folderOf(path));
        if (change.activityType == TemporarilyActive)
            own.insert(folderOf(m_sessionFonts.path(change.fileName)));
        else if (change.activityType == PermanentlyActive && change.listed.isEmpty())
            own.insert(folderOf(m_placed.path(change.fileName)));
    }
    for (const QString& folder : qAsConst(own)) {
        if (m_database.reaches(folder))
            folders.insert(folder);
    }
    const QSet<QString> accepted = m_database.accepted(folders.values());
    for (Change& change : changes)
        change.failed = change.failed || !isAsWished(change, accepted);
}

bool FontManagerStrategyFontconfig::isAsWished(const Change& change, const QSet<QString>& accepted) const
{
    const bool found = std::any_of(change.listed.cbegin(), change.listed.cend(),
                                   [&accepted](const QString& path) { return accepted.contains(path); });
    switch (change.activityType) {
    case PermanentlyActive:
        return found || (change.listed.isEmpty() && accepted.contains(m_placed.path(change.fileName)));
    case TemporarilyActive:
        return !found && accepted.contains(m_sessionFonts.path(change.fileName));
    case Inactive:
        break;
    }
    return !found;
}

void FontManagerStrategyFontconfig::undo(QVector<Change>& changes)
{
    const QSet<QString> before = m_rules.rejected();
    QStringList unplaced;
    for (const Change& change : qAsConst(changes)) {
        if (!change.failed)
            continue;
        if (change.made && change.activityType == PermanentlyActive)
            unplaced.append(change.fileName);
        else if (change.made)
            m_sessionFonts.remove(change.fileName);
        for (const QString& path : change.listed) {
            if (change.rejected.contains(path))
                m_rules.reject(path);
            else
                m_rules.accept(path);
        }
    }
    m_placed.remove(unplaced);
    if (m_rules.rejected() == before)
        return;
    if (!m_rules.save())
        m_rules.load();
    m_database.forget();
    m_database.refresh();
}

void FontManagerStrategyFontconfig::dropFiles(const QVector<Change>& changes)
{
    QStringList leaving;
    for (const Change& change : changes) {
        if (change.failed)
            continue;
        if (change.activityType != TemporarilyActive)
            m_sessionFonts.remove(change.fileName);
        if (!change.listed.isEmpty() || change.activityType != PermanentlyActive)
            leaving.append(change.fileName);
    }
    m_placed.remove(leaving);
}

void FontManagerStrategyFontconfig::publish(const QVector<Change>& changes)
{
    QWriteLocker lock(&m_viewLock);
    for (const Change& change : changes) {
        if (change.failed)
            continue;
        m_view.placed.remove(change.fileName);
        m_view.session.remove(change.fileName);
        for (const QString& path : change.listed)
            m_view.files[path].accepted = change.activityType == PermanentlyActive;
        if (change.listed.isEmpty() && change.activityType == PermanentlyActive)
            m_view.placed.insert(change.fileName, true);
        if (change.activityType == TemporarilyActive)
            m_view.session.insert(change.fileName, true);
    }
}

} // namespace kerval::systemfm
