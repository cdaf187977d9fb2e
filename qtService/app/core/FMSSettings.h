#pragma once

#include <QObject>
#include <QVariant>

class QSettings;

// settings.ini: what the user decides about the service itself. Every setter writes through at once.
class FMSSettings : public QObject
{
    Q_OBJECT

public:
    explicit FMSSettings(QObject* parent = nullptr);
    ~FMSSettings() override;

    bool autoActivationEnabled() const;
    void setAutoActivationEnabled(bool enabled);
    bool pickBestMatch() const;
    void setPickBestMatch(bool pick);
    bool activateEntireFamily() const;
    void setActivateEntireFamily(bool activate);
    bool deactivateWhenDocumentClosed() const;
    void setDeactivateWhenDocumentClosed(bool deactivate);
    bool deactivateWhenHostAppQuits() const;
    void setDeactivateWhenHostAppQuits(bool deactivate);

    // Whether plug-ins on other machines are answered; off, only this machine's own addresses are.
    bool allowRemote() const;
    // Origins ("https://example.org") of web pages that may send changing requests.
    QStringList trustedOrigins() const;
    // "host" or "host:port" of the recognition service; empty: the service built into this program.
    QString fontLensHost() const;
    // "host" or "host:port" of the update document; empty: no update check is made.
    QString updatesHost() const;

private:
    bool autoActivation(const QString& key) const;
    void setAutoActivation(const QString& key, bool value);

    QSettings* m_settings;
};
