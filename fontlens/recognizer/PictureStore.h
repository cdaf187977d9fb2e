#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QPointF>
#include <QString>

#include <functional>
#include <optional>

namespace kerval::recognizer {

struct StoredPicture
{
    QImage image;
    QByteArray bytes; // the image as a file
    QByteArray contentType;
    double scale = 1; // of a letter: its pixels for each pixel of the picture
    QPointF click;    // of a letter: where it was clicked

    qint64 cost() const { return image.sizeInBytes() + bytes.size(); }
};

// The pictures that clients are working on, in memory only. A picture that comes in begins a session; the letters cut
// from it belong to that session and are forgotten with it: when nobody has used any of them for an hour, or when there
// is no room for newer ones, the session longest unused first. Of one session the letters longest unused go first.
//
// Ids are random: who knows one has been given it. Main thread.
class PictureStore
{
public:
    struct Limits
    {
        int sessions = 16;
        int lettersPerSession = 512;
        qint64 bytes = 256 * 1024 * 1024; // the newest picture is kept even when it is larger than this
        qint64 lifetimeMs = 60 * 60 * 1000;
    };
    // Milliseconds from any fixed point, never backwards.
    using Clock = std::function<qint64()>;

    explicit PictureStore(const Clock& clock);
    PictureStore(const Clock& clock, const Limits& limits);

    // The new picture's id.
    QString addPicture(const StoredPicture& picture);
    // Nothing when the picture that the letter was cut from is no longer there. A letter of a letter belongs to the
    // same session.
    std::optional<QString> addLetter(const QString& pictureId, const StoredPicture& letter);
    // Counts as a use.
    std::optional<StoredPicture> picture(const QString& id);

    void forgetExpired();
    bool isEmpty() const { return m_entries.isEmpty(); }
    int count() const { return m_entries.size(); }
    qint64 bytes() const { return m_bytes; }

private:
    struct Entry
    {
        StoredPicture picture;
        QString session; // the id of the picture that began it
        qint64 lastUsed = 0;
        quint64 use = 0; // orders uses within one millisecond
    };
    struct Session
    {
        qint64 lastUsed = 0;
        quint64 use = 0;
        int letters = 0;
    };

    QString insert(const StoredPicture& picture, const QString& session);
    void touch(Entry& entry);
    void remove(const QString& id);
    void removeSession(const QString& session);
    QString longestUnusedSession() const;
    QString longestUnusedLetter(const QString& session) const;
    void makeRoom(const QString& keptSession, const QString& keptEntry);

    const Clock m_clock;
    const Limits m_limits;
    QHash<QString, Entry> m_entries;
    QHash<QString, Session> m_sessions;
    qint64 m_bytes = 0;
    quint64 m_uses = 0;
};

} // namespace kerval::recognizer
