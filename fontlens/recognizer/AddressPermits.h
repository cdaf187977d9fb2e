#pragma once

#include <QString>
#include <QVector>

#include <functional>

class QUrl;

namespace kerval::recognizer {

// The addresses that the user has typed and no download has used yet. Each is good once, for the next minute. Only code
// of this process can add one: a request over HTTP proves nothing about who asked for it. Main thread.
class AddressPermits
{
public:
    // Milliseconds from any fixed point, never backwards.
    using Clock = std::function<qint64()>;

    explicit AddressPermits(const Clock& clock);

    void add(const QUrl& url);
    // Uses it up.
    bool take(const QUrl& url);

private:
    struct Permit
    {
        QString address;
        qint64 given;
    };

    void forgetExpired();

    const Clock m_clock;
    QVector<Permit> m_permits;
};

} // namespace kerval::recognizer
