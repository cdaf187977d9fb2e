#include "qtService/app/core/FMSSettings.h"

#include "qtService/app/core/SettingsFolders.h"

#include <QSettings>
#include <QStringList>

namespace {

const QString autoActivationGroup = QStringLiteral("AutoActivation");
const QString enabledKey = QStringLiteral("AutoActivationEnabled");
const QString bestMatchKey = QStringLiteral("PickBestMatch");
const QString familyKey = QStringLiteral("ActivateEntireFamily");
const QString documentClosedKey = QStringLiteral("DeactivateWhenDocumentClosed");
const QString hostQuitsKey = QStringLiteral("DeactivateWhenHostAppQuits");

} // namespace

FMSSettings::FMSSettings(QObject* parent)
    : QObject(parent)
    , m_settings(new QSettings(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat, this))
{
}

FMSSettings::~FMSSettings() = default;

bool FMSSettings::autoActivation(const QString& key) const
{
    return m_settings->value(autoActivationGroup + QLatin1Char('/') + key, true).toBool();
}

void FMSSettings::setAutoActivation(const QString& key, bool value)
{
    m_settings->setValue(autoActivationGroup + QLatin1Char('/') + key, value);
    m_settings->sync();
}

bool FMSSettings::autoActivationEnabled() const
{
    return autoActivation(enabledKey);
}

void FMSSettings::setAutoActivationEnabled(bool enabled)
{
    setAutoActivation(enabledKey, enabled);
}

bool FMSSettings::pickBestMatch() const
{
    return autoActivation(bestMatchKey);
}

void FMSSettings::setPickBestMatch(bool pick)
{
    setAutoActivation(bestMatchKey, pick);
}

bool FMSSettings::activateEntireFamily() const
{
    return autoActivation(familyKey);
}

void FMSSettings::setActivateEntireFamily(bool activate)
{
    setAutoActivation(familyKey, activate);
}

bool FMSSettings::deactivateWhenDocumentClosed() const
{
    return autoActivation(documentClosedKey);
}

void FMSSettings::setDeactivateWhenDocumentClosed(bool deactivate)
{
    setAutoActivation(documentClosedKey, deactivate);
}

bool FMSSettings::deactivateWhenHostAppQuits() const
{
    return autoActivation(hostQuitsKey);
}

void FMSSettings::setDeactivateWhenHostAppQuits(bool deactivate)
{
    setAutoActivation(hostQuitsKey, deactivate);
}

bool FMSSettings::allowRemote() const
{
    // A variant takes every text but "false" and "0" for true; "no" must not open the service to others.
    static const QStringList yes{QStringLiteral("true"), QStringLiteral("yes"), QStringLiteral("on"),
                                 QStringLiteral("1")};
    const QString text = m_settings->value(QStringLiteral("Rest/AllowRemote")).toString().trimmed();
    return yes.contains(text, Qt::CaseInsensitive);
}

QStringList FMSSettings::trustedOrigins() const
{
    return m_settings->value(QStringLiteral("Rest/TrustedOrigins")).toStringList();
}

QString FMSSettings::fontLensHost() const
{
    return m_settings->value(QStringLiteral("FontLens/Host")).toString().trimmed();
}

QString FMSSettings::updatesHost() const
{
    return m_settings->value(QStringLiteral("Updates/Host")).toString().trimmed();
}
