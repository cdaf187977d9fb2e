#include "fontlens/recognizer/PictureStore.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>

namespace kerval::recognizer {

namespace {

QString newId()
{
    std::array<quint32, 4> words;
    QRandomGenerator::system()->generate(words.begin(), words.end());
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char*>(words.data()), int(words.size() * sizeof(quint32))).toHex());
}

} // namespace

PictureStore::PictureStore(const Clock& clock)
    : PictureStore(clock, Limits())
{
}

PictureStore::PictureStore(const Clock& clock, const Limits& limits)
    : m_clock(clock)
    , m_limits(limits)
{
}

QString PictureStore::addPicture(const StoredPicture& picture)
{
    forgetExpired();
    return insert(picture, QString());
}

std::optional<QString> PictureStore::addLetter(const QString& pictureId, const StoredPicture& letter)
{
    forgetExpired();
    const auto source = m_entries.find(pictureId);
    if (source == m_entries.end())
        return std::nullopt;
    return insert(letter, source->session);
}

std::optional<StoredPicture> PictureStore::picture(const QString& id)
{
    forgetExpired();
    const auto entry = m_entries.find(id);
    if (entry == m_entries.end())
        return std::nullopt;
    touch(*entry);
    return entry->picture;
}

QString PictureStore::insert(const StoredPicture& picture, const QString& session)
{
    const QString id = newId();
    Entry entry;
    entry.picture = picture;
    entry.session = session.isEmpty() ? id : session;
    if (!session.isEmpty())
        ++m_sessions[session].letters;
    touch(entry);
    const QString kept = entry.session;
    m_bytes += picture.cost();
    m_entries.insert(id, entry);
    makeRoom(kept, id);
    return id;
}

void PictureStore::touch(Entry& entry)
{
    entry.lastUsed = m_clock();
    entry.use = ++m_uses;
    Session& session = m_sessions[entry.session];
    session.lastUsed = entry.lastUsed;
    session.use = entry.use;
}

void PictureStore::makeRoom(const QString& keptSession, const QString& keptEntry)
{
    while (m_sessions.size() > 1 && (m_sessions.size() > m_limits.sessions || m_bytes > m_limits.bytes)) {
        const QString oldest = longestUnusedSession();
        if (oldest == keptSession)
            break;
        removeSession(oldest);
    }
    while (m_sessions.value(keptSession).letters > m_limits.lettersPerSession || m_bytes > m_limits.bytes) {
        const QString oldest = longestUnusedLetter(keptSession);
        if (oldest.isEmpty() || oldest == keptEntry)
            break;
        remove(oldest);
    }
}

QString PictureStore::longestUnusedSession() const
{
    const auto oldest = std::min_element(m_sessions.cbegin(), m_sessions.cend(),
                                         [](const Session& a, const Session& b) { return a.use < b.use; });
    return oldest == m_sessions.cend() ? QString() : oldest.key();
}

QString PictureStore::longestUnusedLetter(const QString& session) const
{
    QString oldest;
    quint64 use = 0;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry) {
        const bool isLetter = entry->session == session && entry.key() != session;
        if (isLetter && (oldest.isEmpty() || entry->use < use)) {
            oldest = entry.key();
            use = entry->use;
        }
    }
    return oldest;
}

void PictureStore::remove(const QString& id)
{
    const Entry entry = m_entries.take(id);
    m_bytes -= entry.picture.cost();
    const auto session = m_sessions.find(entry.session);
    if (session != m_sessions.end() && entry.session != id)
        --session->letters;
}

void PictureStore::removeSession(const QString& session)
{
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        if (entry->session == session) {
            m_bytes -= entry->picture.cost();
            entry = m_entries.erase(entry);
        } else {
            ++entry;
        }
    }
    m_sessions.remove(session);
}

void PictureStore::forgetExpired()
{
    const qint64 now = m_clock();
    QStringList expired;
    for (auto session = m_sessions.cbegin(); session != m_sessions.cend(); ++session) {
        if (now - session->lastUsed >= m_limits.lifetimeMs)
            expired.append(session.key());
    }
    for (const QString& session : qAsConst(expired))
        removeSession(session);
}

} // namespace kerval::recognizer
