#include "updates/ApplicationUpdateChecker.h"

#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/core/Version.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSettings>
#include <QVariantMap>

namespace {

// The document is a few lines; a server that sends without end is cut off.
constexpr qint64 largestDocument = 1 << 20;

QUrl documentUrl()
{
    const QSettings settings(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
    const QString host = settings.value(QStringLiteral("Updates/Host")).toString();
    return host.isEmpty() ? QUrl() : QUrl(QStringLiteral("http://%1/update2/update.json").arg(host));
}

ApplicationUpdateChecker::UpdateDescription readDocument(const QByteArray& body)
{
    const QVariantMap document = QJsonDocument::fromJson(body).toVariant().toMap();
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

ApplicationUpdateChecker::~ApplicationUpdateChecker() = default;

void ApplicationUpdateChecker::checkForUpdates()
{
    const QUrl url = documentUrl();
    if (!url.isValid() || url.isEmpty()) {
        UpdateDescription description;
        description.status = CheckFailed;
        emit updateCheckFinished(description);
        return;
    }
    m_reply = m_network->get(QNetworkRequest(url));
    QNetworkReply* const reply = m_reply;
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received) {
        if (received > largestDocument)
            reply->abort();
    });
}

void ApplicationUpdateChecker::onRequestFinished(QNetworkReply* reply)
{
    UpdateDescription description;
    if (reply->error() != QNetworkReply::NoError)
        description.status = CheckFailed;
    else
        description = readDocument(reply->readAll());
    m_reply.clear();
    reply->deleteLater();
    emit updateCheckFinished(description);
}

void ApplicationUpdateChecker::cancel()
{
    if (m_reply)
        m_reply->abort();
    UpdateDescription description;
    description.status = CheckCancelled;
    emit updateCheckFinished(description);
}
