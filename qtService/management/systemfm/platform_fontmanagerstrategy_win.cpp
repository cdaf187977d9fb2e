#include "qtService/app/core/SettingsFolders.h"
#include "qtService/management/systemfm/EventFilter.h"
#include "qtService/management/systemfm/FontManagerStrategyWindows.h"
#include "qtService/management/systemfm/platform_fontmanagerstrategy.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>
#include <QVector>

#include <windows.h>

#include <ntsecapi.h>
#include <shlobj.h>

namespace kerval::systemfm {

namespace {

const wchar_t* wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

// Windows' times count 100 ns since 1601.
qint64 localMilliseconds(const LARGE_INTEGER& time)
{
    FILETIME utc = {time.LowPart, DWORD(time.HighPart)};
    FILETIME local = {};
    FileTimeToLocalFileTime(&utc, &local);
    constexpr qint64 epoch = 116444736000000000LL;
    return ((qint64(local.dwHighDateTime) << 32 | local.dwLowDateTime) - epoch) / 10000;
}

class Win32FontOperations : public WindowsFontOperations
{
public:
    ~Win32FontOperations() override { setFontChangeListener({}); }

    QString fontsFolder() override
    {
        wchar_t path[MAX_PATH] = {};
        SHGetSpecialFolderPathW(nullptr, path, CSIDL_FONTS, FALSE);
        return QString::fromWCharArray(path);
    }

    bool addFontResource(const QString& argument) override { return AddFontResourceW(wide(argument)) > 0; }
    bool removeFontResource(const QString& argument) override { return RemoveFontResourceW(wide(argument)) != 0; }
    void broadcastFontChange() override { PostMessageW(HWND_BROADCAST, WM_FONTCHANGE, 0, 0); }

    void setFontChangeListener(const std::function<void()>& listener) override
    {
        if (m_filter && QCoreApplication::instance())
            QCoreApplication::instance()->removeNativeEventFilter(m_filter.get());
        m_filter.reset();
        if (listener) {
            m_filter = std::make_unique<EventFilter>(listener);
            QCoreApplication::instance()->installNativeEventFilter(m_filter.get());
        }
    }

    QStringList registryLocations() override
    {
        const QString fonts = QStringLiteral("\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts");
        QStringList usable;
        for (const char* root : {"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE"}) {
            const QString location = QLatin1String(root) + fonts;
            if (QSettings(location, QSettings::NativeFormat).status() == QSettings::NoError)
                usable.append(location);
        }
        return usable;
    }

    QList<QPair<QString, QString>> registryValues(const QString& location) override
    {
        QList<QPair<QString, QString>> values;
        const QSettings settings(location, QSettings::NativeFormat);
        const QStringList names = settings.childKeys();
        for (const QString& name : names)
            values.append({name, settings.value(name).toString()});
        return values;
    }

    QString registryValue(const QString& location, const QString& name) override
    {
        return QSettings(location, QSettings::NativeFormat).value(name).toString();
    }

    void setRegistryValue(const QString& location, const QString& name, const QString& data) override
    {
        QSettings(location, QSettings::NativeFormat).setValue(name, data);
    }

    void removeRegistryValue(const QString& location, const QString& name) override
    {
        QSettings(location, QSettings::NativeFormat).remove(name);
    }

    bool currentLogon(Logon* logon) override
    {
        HANDLE token = nullptr;
        if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
            return false;
        TOKEN_STATISTICS statistics = {};
        DWORD size = 0;
        const bool known = GetTokenInformation(token, TokenStatistics, &statistics, sizeof statistics, &size);
        CloseHandle(token);
        ULONG count = 0;
        PLUID sessions = nullptr;
        if (!known || LsaEnumerateLogonSessions(&count, &sessions) != 0)
            return false;
        bool found = false;
        for (ULONG i = 0; i < count && !found; ++i) {
            PSECURITY_LOGON_SESSION_DATA data = nullptr;
            if (LsaGetLogonSessionData(&sessions[i], &data) != 0 || !data)
                continue;
            const LUID id = statistics.AuthenticationId;
            if (data->LogonId.LowPart == id.LowPart && data->LogonId.HighPart == id.HighPart) {
                *logon = Logon{localMilliseconds(data->LogonTime), qint32(id.HighPart), quint32(id.LowPart)};
                found = true;
            }
            LsaFreeReturnBuffer(data);
        }
        LsaFreeReturnBuffer(sessions);
        return found;
    }

    QPair<int, int> version() override
    {
        OSVERSIONINFOEXW info = {};
        info.dwOSVersionInfoSize = sizeof info;
        GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info));
        return {int(info.dwMajorVersion), int(info.dwMinorVersion)};
    }

private:
    std::unique_ptr<EventFilter> m_filter;
};

} // namespace

std::unique_ptr<FontManagerStrategyInterface> createPlatformStrategy()
{
    return std::make_unique<FontManagerStrategyWindows>(std::make_unique<Win32FontOperations>(),
                                                        QDir::cleanPath(krv::userSettingsFolder()));
}

} // namespace kerval::systemfm
