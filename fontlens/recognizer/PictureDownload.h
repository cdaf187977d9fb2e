#pragma once

#include "fontlens/recognizer/HostResolver.h"

#include <QByteArray>
#include <QHash>
#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>

class QNetworkReply;

namespace kerval::recognizer {

// Where downloads may go and how long they may take; tests put their own internet here.
struct DownloadEnvironment
{
    std::shared_ptr<HostResolver> resolver;
    std::function<bool(const QHostAddress& address)> isPublic;
    qint64 bytes = 20 * 1024 * 1024;
    int totalMs = 30 * 1000;  // names, redirects and data together
    int addressMs = 8 * 1000; // how long one address of several may leave us without an answer
    int redirects = 5;

    static DownloadEnvironment standard();
};

// Fetches one address over HTTP. Every hop is resolved here and the connection goes to the very address that was looked
// at, so that a name cannot point elsewhere the next time it is asked; of a name's addresses only public ones are used.
// When the user has typed the address, it is followed wherever it leads, and so are redirects that stay on that host
// and port (or go on to its HTTPS); for any other host the rule holds again.
//
// No proxy is used (it would resolve names by itself), no cookies and no passwords go out. Main thread; dropping it
// ends the download.
class PictureDownload : public QObject
{
    Q_OBJECT

public:
    enum Outcome
    {
        Done,
        BadAddress,  // no HTTP address
        Refused,     // it leads to this machine or the network around it
        Unreachable, // no such name, no connection
        TimedOut,
        TooLarge,
        NotThere // the other side says so, or redirects without end
    };
    Q_ENUM(Outcome)

    PictureDownload(const QUrl& url, bool isTyped, const DownloadEnvironment& environment);
    ~PictureDownload() override;

    void start();
    const QByteArray& bytes() const { return m_bytes; }

signals:
    // Once, never from within start(). The receiver may delete the sender later, not at once.
    void finished(kerval::recognizer::PictureDownload::Outcome outcome);

private:
    void visit(const QUrl& url);
    void onResolved(const QList<QHostAddress>& addresses);
    void requestNext();
    void onMetaData();
    void onReadyRead();
    void onReplyFinished();
    void onAddressTimeout();
    void dropReply();
    bool announcesTooMuch(const QNetworkReply& reply) const;
    void finish(Outcome outcome);
    bool isWhereTheUserPointed() const;

    const QUrl m_typedUrl; // empty when nobody typed it
    const DownloadEnvironment m_environment;
    QNetworkAccessManager m_network;
    QTimer m_total;
    QTimer m_addressTimer;
    QUrl m_url; // the hop
    int m_redirects = 0;
    QHash<QString, QList<QHostAddress>> m_known; // a host keeps the addresses it had first
    QList<QHostAddress> m_addresses;             // still to be tried
    std::shared_ptr<void> m_lookup;
    QNetworkReply* m_reply = nullptr;
    QByteArray m_bytes;
    bool m_isFinished = false;
};

} // namespace kerval::recognizer
