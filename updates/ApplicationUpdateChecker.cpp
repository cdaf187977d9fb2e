#include "updates/ApplicationUpdateChecker.h"

#include "qtService/app/core/FMSSettings.h"
#include "qtService/app/core/Version.h"
#include "updates/UpdateDocument.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThread>
#include <QVariantMap>

namespace {

constexpr qint64 largestDocument = 64 * 1024;
constexpr int patienceMs = 20000;
constexpr int maximumRedirections = 5;

QUrl documentUrl()
{
    const QString host = FMSSettings().updatesHost();
    return host.isEmpty() ? QUrl() : QUrl(QStringLiteral("http://%1/update2/update.json").arg(host));
}

ApplicationUpdateChecker::UpdateDescription describe(const QVariantMap& document)
{
    ApplicationUpdateChecker::UpdateDescription description;
    description.version = document.value(QStringLiteral("version")).toString();
    description.url = QUrl(document.value(QStringLiteral("winx64_url")).toString(), QUrl::TolerantMode);
    if (QString::compare(krv::versionString(), description.version, Qt::CaseSensitive) < 0)
        description.status = ApplicationUpdateChecker::UpdateAvailable;
    return description;
}

} // namespace

ApplicationUpdateChecker::ApplicationUpdateChecker(QObject* parent)
    : QObject(parent)
    , m_network(new QNetworkAccessManager(this))
{
    qRegisterMetaType<ApplicationUpdateChecker::UpdateDescription>("ApplicationUpdateChecker::UpdateDescription");
    connect(m_network, &QNetworkAccessManager::finished, this, &ApplicationUpdateChecker::onRequestFinished);
}

ApplicationUpdateChecker::~ApplicationUpdateChecker()
{
    if (m_evaluation)
        m_evaluation->wait();
}

void ApplicationUpdateChecker::finish(int status)
{
    UpdateDescription description;
    description.status = status;
    emit updateCheckFinished(description);
}

void ApplicationUpdateChecker::checkForUpdates()
{
    const QUrl url = documentUrl();
    if (!url.isValid() || url.isEmpty()) {
        finish(CheckFailed);
        return;
    }
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(maximumRedirections);
    request.setTransferTimeout(patienceMs);
    QNetworkReply* const reply = m_network->get(request);
    m_reply = reply;
    connect(reply, &QNetworkReply::redirected, reply, [reply, url](const QUrl& target) {
        if (target.scheme() == url.scheme())
            emit reply->redirectAllowed();
        else
            reply->abort();
    });
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received) {
        if (received > largestDocument)
            reply->abort();
    });
}

void ApplicationUpdateChecker::onRequestFinished(QNetworkReply* reply)
{
    m_reply.clear();
    reply->deleteLater();
    // A small network answers in one piece, before any progress is told.
    if (reply->error() != QNetworkReply::NoError || reply->bytesAvailable() > largestDocument)
        finish(CheckFailed);
    else
        evaluate(reply->read(largestDocument));
}

void ApplicationUpdateChecker::evaluate(const QByteArray& body)
{
    const auto document = std::make_shared<QVariantMap>();
    m_evaluation.reset(QThread::create([body, document] { *document = updates::evaluateDocument(body); }));
    connect(m_evaluation.get(), &QThread::finished, this,
            [this, document] { emit updateCheckFinished(describe(*document)); });
    m_evaluation->start();
}

void ApplicationUpdateChecker::cancel()
{
    if (m_reply)
        m_reply->abort();
    if (m_evaluation)
        m_evaluation->disconnect(this);
    finish(CheckCancelled);
}
