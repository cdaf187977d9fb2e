#include "qtService/app/FMService.h"

#include "fontlens/recognizer/LocalRecognizer.h"
#include "qtService/app/FMSControlCenter.h"
#include "qtService/app/FMSLogViewer.h"
#include "qtService/app/FMSTrayIcon.h"
#include "qtService/app/RecognizerResourceHandler.h"
#include "qtService/app/ServiceResourceHandler.h"
#include "qtService/app/SessionEndWatch.h"
#include "qtService/app/Translations.h"
#include "qtService/app/core/DebugLog.h"
#include "qtService/app/core/ErrorCode.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/core/Version.h"
#include "qtService/app/core/platform_folders.h"
#include "qtService/app/platform_process.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvUserDatabase.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/dialogs/SplashScreenDialog.h"
#include "qtService/ui/dialogs/UpdateCheckDialog.h"
#include "qtService/ui/messages/FMSPlainTextMessage.h"
#include "qtService/ui/messages/KrvMessage.h"
#include "qtService/ui/preferences/PreferencesWindow.h"
#include "qtService/ui/widgets/InterfaceFont.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "qtService/ui/window/Palette.h"
#include "rest/Server.h"
#include "rest/http/FMSRequest.h"

#include <QAction>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QLockFile>
#include <QSqlDatabase>
#include <QTimer>

#include <cstdio>

namespace {

const char* const helperPrograms[] = {"krvfindsimilar.exe", "krvextractfeatures.exe", "krvfontadder.exe"};

// Nobody answers a modal box that is drawn nowhere.
bool hasDisplay()
{
    return QGuiApplication::platformName() != QLatin1String("offscreen");
}

} // namespace

FMService::FMService(int& argc, char** argv)
    : QApplication(argc, argv)
{
    setAttribute(Qt::AA_UseHighDpiPixmaps);
    setQuitOnLastWindowClosed(false);
    setApplicationName(QStringLiteral("Kerval"));
    setApplicationVersion(krv::versionString());
    ui::ensureInterfaceFont();
    ui::ensureLegibleLinks();
    m_translations = std::make_unique<Translations>(QLocale::system().uiLanguages());
    qRegisterMetaType<fms::ErrorCode>("fms::ErrorCode");
    qRegisterMetaType<fms::FMSRequest>("fms::FMSRequest");

    setWindowIcon(QIcon(QStringLiteral(":/icon1.png")));
    m_preferences = std::make_unique<PreferencesWindow>();
    m_messageLog = std::make_unique<FMSPlainTextMessage>();
    m_messageLog->setRefreshButtonVisible(true);
    connect(m_messageLog.get(), &FMSPlainTextMessage::refreshRequested, this, &FMService::showMessageLog);

    m_sessionEnd = std::make_unique<SessionEndWatch>();
    connect(m_sessionEnd.get(), &SessionEndWatch::sessionEnding, this, &FMService::onSessionEnding);
    m_userId = QString::fromLatin1(QDir::homePath().toUtf8().toHex());
    addLibraryPath(krv::platform::executablePath());
}

FMService::~FMService()
{
    m_sessionEnd.reset();
    if (m_fontManagerWindow)
        m_fontManagerWindow->hide();
    m_fontManagerWindow.reset();
    delete m_scanLogViewer;
    m_server.reset();
    m_recognizer.reset();
    m_controlCenter.reset();
    m_trayIcon.reset();
    if (m_state != NotStarted)
        m_log.log(FMSLog::ServiceStopped, QString());
    m_preferences.reset();
    m_messageLog.reset();
    m_fontManagementService.reset();
    const QStringList connections = QSqlDatabase::connectionNames();
    for (const QString& name : connections)
        QSqlDatabase::removeDatabase(name);
    FMSLog::setInstance(nullptr);
}

QString FMService::versionString() const
{
    return krv::versionString();
}

int FMService::versionNumber() const
{
    return krv::versionNumber();
}

int FMService::port() const
{
    return m_server ? m_server->port() : 0;
}

bool FMService::checkRequiredFiles(const QString& programPath)
{
    const QString folder = QFileInfo(programPath).absolutePath();
    qDebug() << "M_1_"
             << "Checking for files required from service:";
    for (const char* name : helperPrograms) {
        const QString path = folder + QLatin1Char('/') + QLatin1String(name);
        const bool exists = QFile::exists(path);
        qDebug() << "M_1_" << '\t' << path << "exists"
                 << "=" << exists;
        if (!exists) {
            std::printf("File %s does NOT EXISTS!!!\n", qPrintable(path));
            std::fflush(stdout);
            return false;
        }
    }
    return true;
}

bool FMService::start(int* port, bool startFontManager)
{
    if (!checkSettingsFolder()) {
        stop();
        return false;
    }
    if (!acquireInstanceLock(port)) {
        stop();
        return false;
    }
    // The log needs the folder, and a second instance must not write into it.
    m_log.setFolder(krv::userSettingsFolder());
    FMSLog::setInstance(&m_log);

    if (!choosePort(port)) {
        stop();
        return false;
    }

    m_fontManagementService = QSharedPointer<FontManagementService>::create();
    m_server = std::make_unique<api::rest::Server>(m_fontManagementService);
    m_server->addHandler("/service(/.+)?/?", new ServiceResourceHandler(this));
    addRecognizer();

    m_log.log(FMSLog::ServiceStarted, QString());
    qDebug() << "M_1_"
             << "FMService::start() starts";
    m_state = Initializing;
    createTrayIcon();

    connect(m_fontManagementService.data(), &FontManagementService::started, this,
            &FMService::onFontManagementServiceStarted);
    if (startFontManager) {
        showSplashScreen();
        onShowFontManagerTriggered();
        m_splashScreen->raise();
    }
    m_fontManagementService->start();
    return true;
}

void FMService::addRecognizer()
{
    using kerval::recognizer::LocalRecognizer;
    m_recognizer = std::make_shared<LocalRecognizer>(m_fontManagementService, LocalRecognizer::Options::standard());
    using Script = RecognizerResourceHandler::Script;
    for (const Script script : {Script::Modules, Script::Similarity, Script::ShopLink})
        m_server->addHandler(RecognizerResourceHandler::pattern(script),
                             new RecognizerResourceHandler(m_recognizer, script));
}

// Only with the window: a start in the background stays there. It says what is coming while a large library loads, and
// for a small one it stays long enough not to be a flicker.
void FMService::showSplashScreen()
{
    m_splashScreen = std::make_unique<SplashScreenDialog>();
    m_splashScreen->show();
    m_splashShown.start();
}

void FMService::endSplashScreen()
{
    constexpr qint64 shortestMs = 900;
    if (!m_splashScreen)
        return;
    const qint64 left = qMax<qint64>(0, shortestMs - m_splashShown.elapsed());
    QTimer::singleShot(int(left), m_splashScreen.get(), [this] { m_splashScreen.release()->deleteLater(); });
}

bool FMService::checkSettingsFolder()
{
    const QString folder = krv::userSettingsFolder();
    if (folder.isEmpty()) {
        KrvMessage::instance()->info(tr("Can't obtain path to the home folder.\nExiting..."), QString(),
                                     tr("Please check permissions on:\n   \"%1\"").arg(QDir::homePath()), hasDisplay());
        qCritical() << "FMService::start" << __LINE__ << "failed to obtain path to the home folder...Exiting...";
        return false;
    }
    QFile probe(folder + QStringLiteral("/rwtest"));
    // A full disk lets a file be made but not filled.
    const bool writable = probe.open(QIODevice::WriteOnly) && probe.write("rw") == 2 && probe.flush();
    probe.close();
    probe.remove();
    if (!writable) {
        KrvMessage::instance()->info(tr("Can't write to settings folder.\nExiting..."), QString(),
                                     tr("Please check permissions on:\n   \"%1\"").arg(folder), hasDisplay());
        qCritical() << "FMService::start" << __LINE__ << "failed to write to settings folder (" << folder
                    << ")...Exiting...";
    }
    return writable;
}

void FMService::onFontManagementServiceStarted()
{
    endSplashScreen();
    if (m_state != Initializing)
        return;
    const int error = initialize();
    // The port is published when the state becomes Ready, so the listener comes first.
    if (error == 0 && !listen()) {
        fail();
        return;
    }
    onInitializeFinished(error);
    if (error == 0) {
        createControlCenter();
        tellAboutDamagedData();
    }
    qDebug() << "M_1_"
             << "FMService::start() ends";
}

// The window may be made before the port is known, or after.
void FMService::nameRecognitionService()
{
    if (m_fontManagerWindow && port() != 0)
        m_fontManagerWindow->setLocalRecognitionService(QStringLiteral("127.0.0.1:%1").arg(port()));
}

void FMService::fail()
{
    stop();
    m_state = Failed;
    emit stateReadyOrInitialized();
    exit(0);
}

int FMService::initialize()
{
    qDebug() << "M_1_"
             << "FMService::initialize started, thread id:" << QThread::currentThreadId();
    m_state = Initialized;
    return 0;
}

void FMService::onInitializeFinished(int error)
{
    qDebug() << "M_1_"
             << "FMService::onInitializeFinished starts, thread id:" << QThread::currentThreadId()
             << "errorcode:" << error;
    if (error != 0) {
        fail();
        return;
    }
    notify(tr("Service is ready"));
    m_trayIcon->setEnabled(true);
    m_state = Ready;
    emit stateReadyOrInitialized();
}

void FMService::tellAboutDamagedData()
{
    const auto shown = [](const QString& path) { return QDir::toNativeSeparators(path).toHtmlEscaped(); };
    const KrvUserDatabase* userDatabase = m_fontManagementService->userDatabase();
    const QString aside = userDatabase ? userDatabase->setAsideFile() : QString();
    if (!aside.isEmpty()) {
        const QString text =
            userDatabase->hasSalvaged()
                ? tr("The file with your groups, notes and rankings was damaged.\nIt was kept as \"%1\", and Kerval "
                     "started with what could still be read of it.")
                : tr("The file with your groups, notes and rankings could not be read.\nIt was kept as \"%1\", and "
                     "Kerval started with a new one.");
        KrvMessage::instance()->warning(text.arg(shown(aside)));
    }
    if (userDatabase && !userDatabase->isOpen())
        KrvMessage::instance()->warning(
            tr("The file with your groups, notes and rankings cannot be opened. Until Kerval is started again they are "
               "not shown and cannot be changed.\nPlease check permissions on:\n   \"%1\"")
                .arg(shown(krv::userSettingsFolder())));

    switch (m_fontManagementService->catalogueState()) {
    case FontDatabase::Opened:
    case FontDatabase::Created:
        break;
    case FontDatabase::DamagedReplaced:
        KrvMessage::instance()->warning(
            tr("The file of the font library could not be read.\nIt was kept as \"%1\". Its "
               "fonts come back with the next scan.")
                .arg(shown(m_fontManagementService->setAsideCatalogue())));
        break;
    case FontDatabase::OutdatedReplaced:
        KrvMessage::instance()->warning(tr("The file of the font library was made by another version.\nIt was kept as "
                                           "\"%1\". Its fonts come back with the next scan.")
                                            .arg(shown(m_fontManagementService->setAsideCatalogue())));
        break;
    case FontDatabase::CannotReplace:
    case FontDatabase::CannotOpen:
        KrvMessage::instance()->warning(tr("The file of the font library cannot be opened.\nPlease check permissions "
                                           "on:\n   \"%1\"")
                                            .arg(shown(krv::userSettingsFolder())));
        break;
    }
}

void FMService::notify(const QString& text)
{
    constexpr int durationMs = 10000;
    if (m_trayIcon)
        m_trayIcon->showMessage(text, durationMs, QSystemTrayIcon::Information);
}

void FMService::createTrayIcon()
{
    QString title = QStringLiteral("Kerval ") + versionString();
    if (krv::platform::isAdministrator())
        title = tr("Administrator", "On Windows indicates that service is running under admin privileges") +
                QStringLiteral(": ") + title;
    m_trayIcon = std::make_unique<FMSTrayIcon>();
    m_trayIcon->setTitle(title);
    m_trayIcon->setToolTip(title);
    notify(tr("Service is initializing..."));
    m_trayIcon->setEnabled(false);
}

void FMService::createControlCenter()
{
    const auto adder = m_fontManagementService->fontAdder();
    connect(adder.data(), &FontAdder::fontFileSearchFinished, this, &FMService::onSearchingForFontsFinished);
    connect(adder.data(), &FontAdder::fontAddingStopped, this, &FMService::onAddingFontsFinished);
    m_controlCenter = std::make_unique<FMSControlCenter>(adder, m_fontManagementService->repository());
    connect(m_controlCenter.get(), &FMSControlCenter::rescanRequested, m_fontManagementService.data(),
            &FontManagementService::rescanFonts);
    connect(m_controlCenter.get(), &FMSControlCenter::scanLogRequested, this, &FMService::displayLog);

    // Queued, so that the menu has closed before anything opens.
    const auto connectAction = [this](int id, auto* receiver, auto slot, Qt::ConnectionType type) {
        connect(m_trayIcon->action(id), &QAction::triggered, receiver, slot, type);
    };
    connectAction(FMSTrayIcon::QuitAction, this, &QCoreApplication::quit, Qt::QueuedConnection);
    connectAction(FMSTrayIcon::ControlCenterAction, m_controlCenter.get(), &FMSControlCenter::showAndRaise,
                  Qt::QueuedConnection);
    connectAction(FMSTrayIcon::LogAction, this, &FMService::displayLog, Qt::QueuedConnection);
    connectAction(FMSTrayIcon::PreferencesAction, m_preferences.get(), &PreferencesWindow::show, Qt::QueuedConnection);
    connectAction(FMSTrayIcon::CheckForUpdatesAction, this, &FMService::onCheckForUpdateRequestedFromTrayMenu,
                  Qt::QueuedConnection);
    connectAction(FMSTrayIcon::FontManagerAction, this, &FMService::onShowFontManagerTriggered, Qt::DirectConnection);
    connect(m_trayIcon.get(), &FMSTrayIcon::messageClicked, this, &FMService::onNotificationClicked);
}

void FMService::displayLog()
{
    if (!m_scanLogViewer) {
        m_scanLogViewer = new FMSLogViewer;
        connect(m_scanLogViewer, &FMSLogViewer::closed, this, &FMService::onScanLogClosed);
        connect(m_scanLogViewer, &FMSLogViewer::messagesRequested, this, &FMService::showMessageLog);
    }
    m_scanLogViewer->show();
    m_scanLogViewer->raise();
    m_scanLogViewer->activateWindow();
}

void FMService::onScanLogClosed()
{
    m_scanLogViewer->deleteLater();
    m_scanLogViewer = nullptr;
}

void FMService::showMessageLog()
{
    const QString indent = QStringLiteral("    ");
    m_messageLog->setWindowTitle(tr("Kerval Log", "Window title"));
    m_messageLog->clear();
    const QList<krv::debuglog::UserLine> lines = krv::debuglog::userLines();
    for (const krv::debuglog::UserLine& line : lines) {
        QString text = line.text;
        text.replace(QLatin1Char('\n'), QLatin1Char('\n') + indent);
        m_messageLog->append(line.time.toString(Qt::TextDate));
        m_messageLog->append(indent + text);
    }
    m_messageLog->show();
    m_messageLog->raise();
}

void FMService::onCheckForUpdateRequestedFromTrayMenu()
{
    UpdateCheckDialog dialog(m_fontManagementService->createUpdateCheckCommand(), nullptr);
    dialog.exec();
}

void FMService::onNotificationClicked()
{
    if (m_fontManagerWindow)
        onShowFontManagerTriggered();
}

void FMService::onSearchingForFontsFinished()
{
    const auto adder = m_fontManagementService->fontAdder();
    // The run that a search starts begins a moment after the search's end is announced; what it will do is counted by
    // then.
    if (!adder || adder->isAdding() || adder->numberOfFonts() > 0)
        return;
    notify(tr("Scan finished..."));
    KrvMessage::instance()->showPredefined(KrvMessage::FontsAlreadyProcessed, true, false);
}

void FMService::onAddingFontsFinished()
{
    notify(tr("Scan finished..."));
    KrvMessage::instance()->showPredefined(KrvMessage::FontsProcessed, true, false);
}

void FMService::onShowFontManagerTriggered()
{
    // A service that is going down must not open a window over a library that is closing.
    if (!m_server)
        return;
    if (!m_fontManagerWindow) {
        m_fontManagerWindow = QSharedPointer<KrvFontManagerWindow>::create(m_fontManagementService);
        nameRecognitionService();
        connect(m_fontManagerWindow.data(), &KrvFontManagerWindow::scanLogRequested, this, &FMService::displayLog);
        connect(m_fontManagerWindow.data(), &KrvFontManagerWindow::pictureAddressTyped, this, [this](const QUrl& url) {
            if (m_recognizer)
                m_recognizer->permitAddress(url);
        });
        connect(m_fontManagerWindow.data(), &KrvFontManagerWindow::showPreferences, m_preferences.get(),
                &PreferencesWindow::show);
        connect(m_fontManagerWindow.data(), &KrvFontManagerWindow::checkForUpdates, this,
                &FMService::onCheckForUpdateRequestedFromTrayMenu);
    }
    m_fontManagerWindow->show();
}

void FMService::onSessionEnding()
{
    if (m_state == NotStarted || m_state == Initializing)
        m_state = Failed; // releases a launcher that still waits for the port
    stop();
    quit();
}

void FMService::stop()
{
    qDebug() << "M_0_"
             << "FMService::stop starting";
    m_splashScreen.reset();
    // No request may find a library that is closing.
    if (m_server)
        m_server->close();
    m_server.reset();
    m_recognizer.reset();
    if (m_fontManagementService && m_fontManagementService->isStarted())
        m_fontManagementService->stop();
    disconnect(this, nullptr, nullptr, nullptr);
    qDebug() << "M_0_"
             << "FMService::stop ending";
}
