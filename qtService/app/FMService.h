#pragma once

#include "qtService/app/core/FMSLog.h"
#include "qtService/app/core/FMSSettings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSharedPointer>

#include <memory>

class FontManagementService;
class KrvFontManagerWindow;
class FMSControlCenter;
class FMSLogViewer;
class FMSPlainTextMessage;
class FMSTrayIcon;
class PreferencesWindow;
class QLockFile;
class SessionEndWatch;
class SplashScreenDialog;
class Translations;

namespace api::rest {
class Server;
}
namespace kerval::recognizer {
class Recognizer;
}

// The application object of the service role; it lives for the whole run. It checks the settings folder, chooses the
// port, owns the library service and the HTTP interface, opens the window on request and takes everything down in a
// fixed order. Works without a notification area and without a display. Main thread.
//
// start() returns quickly; the library opens in its own thread and the state becomes Ready or Failed from the event
// loop.
class FMService : public QApplication
{
    Q_OBJECT

public:
    enum State
    {
        NotStarted = 0,
        Initializing = 2,
        Initialized = 3,
        Ready = 7,
        Failed = 8
    };

    FMService(int& argc, char** argv);
    ~FMService() override;

    // False when the service cannot run; *port is then that of this user's service that already runs, or untouched.
    bool start(int* port, bool startFontManager);
    void stop();
    int initialize();
    int state() const { return m_state; }
    // After Failed: the port of this user's service that was found to run already, or 0.
    int otherInstancePort() const { return m_otherInstancePort; }
    // The port that is listened on; 0 before Ready.
    int port() const;

    // True when the three helper programs lie beside the program.
    static bool checkRequiredFiles(const QString& programPath);

    QString versionString() const;
    int versionNumber() const;
    // The home folder's path in UTF-8, as lower-case hexadecimal.
    QString userId() const { return m_userId; }

public slots:
    void onShowFontManagerTriggered();

signals:
    void stateReadyOrInitialized();

private slots:
    void onInitializeFinished(int error);
    void displayLog();
    void onScanLogClosed();
    void onCheckForUpdateRequestedFromTrayMenu();
    void onNotificationClicked();
    void onSearchingForFontsFinished();
    void onAddingFontsFinished();
    void showMessageLog();
    void onFontManagementServiceStarted();
    void onSessionEnding();

private:
    void showSplashScreen();
    void endSplashScreen();
    bool checkSettingsFolder();
    bool acquireInstanceLock(int* runningPort);
    void dropUnreadableLock();
    bool isOtherInstance(int port, const char* noticeEnd) const;
    // False when a service of this user already runs; *port is the one chosen, or that service's.
    bool choosePort(int* port);
    // The first free one; the foreign port is known not to be another instance's.
    int findPort(int first, int foreignPort, int* runningPort);
    void addRecognizer();
    bool listen();
    void nameRecognitionService();
    void createTrayIcon();
    void createControlCenter();
    void tellAboutDamagedData();
    void notify(const QString& text);
    void fail();

    std::unique_ptr<Translations> m_translations; // outlives every text shown
    QString m_userId;
    State m_state = NotStarted;
    int m_chosenPort = 0;
    int m_otherInstancePort = 0;
    FMSLog m_log;
    FMSSettings m_settings;
    std::unique_ptr<PreferencesWindow> m_preferences;
    std::unique_ptr<FMSPlainTextMessage> m_messageLog;
    std::unique_ptr<SplashScreenDialog> m_splashScreen; // until the library is open
    QElapsedTimer m_splashShown;
    std::unique_ptr<FMSTrayIcon> m_trayIcon;
    std::unique_ptr<FMSControlCenter> m_controlCenter;
    FMSLogViewer* m_scanLogViewer = nullptr; // made on demand, gone when closed
    std::unique_ptr<QLockFile> m_instanceLock;
    std::unique_ptr<SessionEndWatch> m_sessionEnd;
    QSharedPointer<FontManagementService> m_fontManagementService;
    std::shared_ptr<kerval::recognizer::Recognizer> m_recognizer; // the server answers with it, and goes first
    std::unique_ptr<api::rest::Server> m_server;
    QSharedPointer<KrvFontManagerWindow> m_fontManagerWindow; // made when it is first asked for
};
