#include "qtService/app/FMSControlCenter.h"
#include "qtService/app/FMSLogViewer.h"
#include "qtService/app/FMSTrayIcon.h"
#include "qtService/app/FMService.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/dialogs/SplashScreenDialog.h"
#include "qtService/ui/dialogs/UpdateCheckDialog.h"
#include "qtService/ui/messages/FMSPlainTextMessage.h"
#include "qtService/ui/preferences/PreferencesWindow.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/qtService/ui/modaldialogs.h"
#include "tests/support/helperprograms.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QtTest>

using namespace kerval::testing;

namespace {

// The visible window of a class; null when there is none.
template <class Window>
Window* visible()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        auto* window = qobject_cast<Window*>(widget);
        if (window && window->isVisible())
            return window;
    }
    return nullptr;
}

QPushButton* button(const QWidget* window, const char* name)
{
    return window->findChild<QPushButton*>(QLatin1String(name));
}

QMessageBox* boxSaying(const QString& text)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        auto* box = qobject_cast<QMessageBox*>(widget);
        if (box && box->isVisible() && box->text().contains(text))
            return box;
    }
    return nullptr;
}

constexpr int patienceMs = 20000;

} // namespace

// One run of the service from its start to its end, steered by its tray menu; the tests follow one another.
class ServiceApplicationTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The platform of the tests has no notification area, and the framework's icon complains of that.
        allowFrameworkWarning(QStringLiteral("systemTrayWindowChanged"));
        provideHelperPrograms(QStringLiteral(KERVAL_BIN_DIR));
        const QByteArray root = QFile::encodeName(m_folder.path());
        copyFonts(m_folder.filePath(QStringLiteral("sys")), 3);
        writeFile(m_folder.filePath(QStringLiteral("fonts.conf")),
                  "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\"><fontconfig><dir>" +
                      root + "/sys</dir><cachedir>" + root + "/cache</cachedir></fontconfig>");
        qputenv("FONTCONFIG_FILE", root + "/fonts.conf");
        writeFile(krv::userSettingsFolder() + QStringLiteral("fms.db"), "this is no database");
        writeFile(krv::userSettingsFolder() + QStringLiteral("user.db"), "nor is this");
    }

    void theSplashScreenStandsUntilTheLibraryIsOpen()
    {
        int port = 0;
        QVERIFY(service()->start(&port, true));
        QVERIFY(port >= 33000);
        const auto* splash = visible<SplashScreenDialog>();
        QVERIFY(splash);
        QCOMPARE(splash->findChild<QLabel*>(QStringLiteral("lblVersion"))->text(), QStringLiteral("Version: 2.7.1"));
        QVERIFY(visible<KrvFontManagerWindow>());
        QVERIFY(!trayMenu()->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(service()->state(), int(FMService::Ready), patienceMs);
        QTRY_VERIFY(!visible<SplashScreenDialog>());
        QVERIFY(trayMenu()->isEnabled());
    }

    void damagedFilesAreTold()
    {
        const QString folder = krv::userSettingsFolder();
        for (const char* text : {"Its fonts come back with the next scan", "groups, notes and rankings"}) {
            QTRY_VERIFY(boxSaying(QLatin1String(text)));
            QMessageBox* box = boxSaying(QLatin1String(text));
            const QString aside = box->text().section(QLatin1Char('"'), 1, 1);
            QVERIFY2(aside.startsWith(folder) && QFile::exists(aside), qPrintable(aside));
            QTest::keyClick(box, Qt::Key_Return);
            QVERIFY(!boxSaying(QLatin1String(text)));
        }
    }

    // An empty library is scanned by the window; the end of it is a notice that can be switched off.
    void theFirstScanEndsWithANotice()
    {
        QTRY_VERIFY_WITH_TIMEOUT(boxSaying(QStringLiteral("Font(s) are now processed.")), patienceMs);
        boxSaying(QStringLiteral("Font(s) are now processed."))->close();
        QTRY_VERIFY(!QApplication::activeModalWidget());
    }

    void theMenuHoldsWhatThereIs()
    {
        QStringList texts;
        for (const QAction* action : trayMenu()->actions())
            texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
        QCOMPARE(texts,
                 QStringList({QStringLiteral("Font Manager"), QStringLiteral("&Control Center"), QStringLiteral("-"),
                              QStringLiteral("&Log"), QStringLiteral("-"), QStringLiteral("&Preferences"),
                              QStringLiteral("&Check for Updates"), QStringLiteral("-"), QStringLiteral("&Quit")}));
    }

    void theWindowComesBack()
    {
        visible<KrvFontManagerWindow>()->close();
        QVERIFY(!visible<KrvFontManagerWindow>());
        choose("Font Manager");
        QVERIFY(visible<KrvFontManagerWindow>());
    }

    void theControlCenterScans()
    {
        choose("Control Center");
        QTRY_VERIFY(visible<FMSControlCenter>());
        auto* center = visible<FMSControlCenter>();
        QVERIFY(center->windowTitle().endsWith(QStringLiteral("Kerval Control Center - 2.7.1")));
        QCOMPARE(center->findChild<QLabel*>(QStringLiteral("la_dbfontcount"))->text(),
                 QStringLiteral("Database font count : 3"));
        QVERIFY(!button(center, "btn_errors")->isVisible());
        QVERIFY(!button(center, "btn_resume")->isEnabled() && !button(center, "btn_abort")->isEnabled());
        copyFonts(m_folder.filePath(QStringLiteral("more")), 5);
        QVERIFY(
            QDir().rename(m_folder.filePath(QStringLiteral("more")), m_folder.filePath(QStringLiteral("sys/more"))));
        QTest::mouseClick(button(center, "btn_scan"), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(center->findChild<QLabel*>(QStringLiteral("la_dbfontcount"))->text(),
                                  QStringLiteral("Database font count : 8"), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(button(center, "btn_scan")->isEnabled(), patienceMs);
        QTRY_VERIFY(boxSaying(QStringLiteral("Font(s) are now processed.")));
        boxSaying(QStringLiteral("Font(s) are now processed."))->close();

        // Once more finds nothing, and says so.
        QTRY_VERIFY(button(center, "btn_scan")->isEnabled());
        QTest::mouseClick(button(center, "btn_scan"), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(boxSaying(QStringLiteral("Font(s) are already processed.")), patienceMs);
        boxSaying(QStringLiteral("Font(s) are already processed."))->close();
        center->close();
    }

    void warningsAndLogAreAtHandAfterAFailure()
    {
        // Nobody lists such a font but the user's own folder.
        FontAdder::setScanPaths({m_folder.filePath(QStringLiteral("mine"))});
        writeFile(m_folder.filePath(QStringLiteral("mine/nameless.ttf")),
                  namelessFont(readFile(systemFontFiles(1).first())));
        choose("Control Center");
        QTRY_VERIFY(visible<FMSControlCenter>());
        auto* center = visible<FMSControlCenter>();
        QTRY_VERIFY(button(center, "btn_scan")->isEnabled());
        QTest::mouseClick(button(center, "btn_scan"), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(button(center, "btn_errors")->isVisible(), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(button(center, "btn_scan")->isEnabled(), patienceMs);
        QCOMPARE(button(center, "btn_errors")->text(), QStringLiteral("1 warning"));
        QTest::mouseClick(button(center, "btn_errors"), Qt::LeftButton);
        auto* warnings = visible<FMSPlainTextMessage>();
        QVERIFY(warnings);
        QVERIFY(warnings->findChild<QPlainTextEdit*>()->toPlainText().contains(
            QStringLiteral("nameless.ttf\n    Reason: Empty PostScript name")));
        QVERIFY(!button(warnings, "btn_refresh")->isVisible());
        QTest::mouseClick(button(warnings, "btn_close"), Qt::LeftButton);
        QTest::mouseClick(button(center, "btn_showLog"), Qt::LeftButton);
        QVERIFY(visible<FMSLogViewer>());
        visible<FMSLogViewer>()->close();
        center->close();
        QTRY_VERIFY(boxSaying(QStringLiteral("already processed")));
        boxSaying(QStringLiteral("already processed"))->close();
    }

    void theLogFollowsEvents()
    {
        choose("Log");
        QTRY_VERIFY(visible<FMSLogViewer>());
        auto* viewer = visible<FMSLogViewer>();
        const auto* model = viewer->findChild<QTableView*>(QStringLiteral("tv_log"))->model();
        const auto typeAt = [model](int row) { return model->index(row, 1).data().toString(); };
        QCOMPARE(typeAt(0), QStringLiteral("Service started"));
        const int rows = model->rowCount();
        QVERIFY(rows > 8);
        FMSLog::logEvent(FMSLog::Message, QStringLiteral("a message"));
        QTRY_COMPARE(model->rowCount(), rows + 1);
        QCOMPARE(typeAt(rows), QStringLiteral("Message"));

        QTest::mouseClick(button(viewer, "btn_messages"), Qt::LeftButton);
        auto* messages = visible<FMSPlainTextMessage>();
        QVERIFY(messages);
        QCOMPARE(messages->windowTitle(), QStringLiteral("Kerval Log"));
        const auto* text = messages->findChild<QPlainTextEdit*>(QStringLiteral("ed_msg"));
        QVERIFY(text->isReadOnly());
        QTest::mouseClick(button(messages, "btn_refresh"), Qt::LeftButton);
        QVERIFY(messages->isVisible());
        QTest::mouseClick(button(messages, "btn_close"), Qt::LeftButton);
        QVERIFY(!messages->isVisible());
        QTest::mouseClick(button(viewer, "btn_close"), Qt::LeftButton);
        QTRY_VERIFY(!visible<FMSLogViewer>());
        choose("Log"); // a new one
        QTRY_VERIFY(visible<FMSLogViewer>());
        QTest::keyClick(visible<FMSLogViewer>(), Qt::Key_Escape);
        QTRY_VERIFY(!visible<FMSLogViewer>());
    }

    void preferencesAndUpdatesOpen()
    {
        choose("Preferences");
        QTRY_VERIFY(visible<PreferencesWindow>());
        QTest::keyClick(visible<PreferencesWindow>(), Qt::Key_Escape);
        QVERIFY(!visible<PreferencesWindow>());
        visible<KrvFontManagerWindow>()->findChild<QAction*>(QStringLiteral("actionPreferences"))->trigger();
        QVERIFY(visible<PreferencesWindow>());
        visible<PreferencesWindow>()->close();

        QString title;
        const auto close = [&title](QDialog* dialog) {
            QTRY_VERIFY(button(dialog, "btnClose")->isVisible());
            title = dialog->windowTitle();
            QTest::mouseClick(button(dialog, "btnClose"), Qt::LeftButton);
        };
        ModalAnswers answers({close, close});
        choose("Check for Updates");
        QTRY_COMPARE(answers.given(), 1);
        QTRY_COMPARE(title, QStringLiteral("Kerval - Check for Updates"));
        visible<KrvFontManagerWindow>()->findChild<QAction*>(QStringLiteral("actionCheckForUpdates"))->trigger();
        QCOMPARE(answers.given(), 2);
    }

    void onlyADoubleClickOnTheTrayOpensTheWindow()
    {
        FMSTrayIcon tray;
        QSignalSpy opened(tray.action(FMSTrayIcon::FontManagerAction), &QAction::triggered);
        const auto activate = [&tray](QSystemTrayIcon::ActivationReason reason) {
            QMetaObject::invokeMethod(&tray, "onTrayActivated", Q_ARG(QSystemTrayIcon::ActivationReason, reason));
        };
        activate(QSystemTrayIcon::Trigger);
        activate(QSystemTrayIcon::Context);
        QCOMPARE(opened.size(), 0);
        activate(QSystemTrayIcon::DoubleClick);
        QCOMPARE(opened.size(), 1);
        tray.setEnabled(false); // while the service starts
        activate(QSystemTrayIcon::DoubleClick);
        QCOMPARE(opened.size(), 1);
    }

    void quitEndsTheProgram()
    {
        QTimer::singleShot(0, this, [this] { choose("Quit"); });
        QCOMPARE(QCoreApplication::exec(), 0);
        service()->stop();
        const QStringList lines = QString::fromUtf8(readFile(krv::userSettingsFolder() + QStringLiteral("fontslog")))
                                      .split(QLatin1Char('\n'));
        QVERIFY(lines.first().contains(QStringLiteral("||||7||||")));
    }

private:
    static FMService* service() { return static_cast<FMService*>(QCoreApplication::instance()); }

    static QMenu* trayMenu()
    {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        for (QWidget* widget : widgets) {
            auto* menu = qobject_cast<QMenu*>(widget);
            if (menu && !menu->actions().isEmpty() && menu->actions().last()->text() == QLatin1String("&Quit"))
                return menu;
        }
        qFatal("no tray menu");
        return nullptr;
    }

    static void choose(const char* text)
    {
        for (QAction* action : trayMenu()->actions()) {
            if (action->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
                action->trigger();
                return;
            }
        }
        QFAIL(text);
    }

    QTemporaryDir m_folder;
};

KERVAL_TEST(ServiceApplicationTest)
#include "ServiceApplicationTest.moc"
