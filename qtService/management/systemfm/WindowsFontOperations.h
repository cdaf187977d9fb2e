#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <functional>

namespace kerval::systemfm {

// The plain operations of Windows that font activation needs, one call each and no logic. Paths are full, with native
// separators. Called from any thread, one call at a time for each location.
class WindowsFontOperations
{
public:
    virtual ~WindowsFontOperations();

    // The system's fonts folder.
    virtual QString fontsFolder() = 0;

    // Loads a font file for the logon session, or unloads it. A Type 1 font is its metrics file and its outline file,
    // joined by "|".
    virtual bool addFontResource(const QString& argument) = 0;
    virtual bool removeFontResource(const QString& argument) = 0;
    // Tells all programs that the set of fonts has changed.
    virtual void broadcastFontChange() = 0;
    // Called whenever some program told so; null ends it.
    virtual void setFontChangeListener(const std::function<void()>& listener) = 0;

    // The places of the registry where fonts are registered: the user's own first, then the machine's. Only those that
    // can be opened.
    virtual QStringList registryLocations() = 0;
    // Value name and data.
    virtual QList<QPair<QString, QString>> registryValues(const QString& location) = 0;
    virtual QString registryValue(const QString& location, const QString& name) = 0;
    virtual void setRegistryValue(const QString& location, const QString& name, const QString& data) = 0;
    virtual void removeRegistryValue(const QString& location, const QString& name) = 0;

    // Who is logged on since when: the session's own id, and its logon time in milliseconds since the epoch, local
    // time. False when the system does not say.
    struct Logon
    {
        qint64 time = 0;
        qint32 idHighPart = 0;
        quint32 idLowPart = 0;
    };
    virtual bool currentLogon(Logon* logon) = 0;

    // The number of Windows' version, as its list of protected fonts is chosen by it; for example 6 and 1.
    virtual QPair<int, int> version() = 0;
};

} // namespace kerval::systemfm
