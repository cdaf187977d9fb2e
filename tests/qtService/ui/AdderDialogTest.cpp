#include "qtService/app/core/FMSLog.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/dialogs/FontAdderDialog.h"
#include "qtService/ui/dialogs/FontAdderStatusWidget.h"
#include "qtService/ui/messages/FMSPlainTextMessage.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/support/helperprograms.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using namespace kerval::testing;

// What the user sees and presses while fonts are added. The adder program waits at a gate where a test needs the
// moment to last.
class AdderDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { provideHelperPrograms(QStringLiteral(KERVAL_BIN_DIR)); }

    void init()
    {
        clearSettings();
        m_library = std::make_unique<LibraryFixture>();
        m_gate = m_library->path(QStringLiteral("gate"));
        const QString program = writeScript(m_library->path(QStringLiteral("adder")),
                                            "while [ ! -e '" + m_gate.toUtf8() + "' ]; do sleep 0.02; done\nexec '" +
                                                m_library->adderProgram().toUtf8() + "' \"$@\"\n");
        m_adder = m_library->createAdder(program);
        m_log = std::make_unique<FMSLog>();
        m_log->setFolder(krv::userSettingsFolder());
        FMSLog::setInstance(m_log.get());
        QDir().mkpath(fontFolder());
    }

    void cleanup()
    {
        openGate(); // nobody waits for ever
        m_dialog.reset();
        m_adder.reset();
        m_library.reset();
        FMSLog::setInstance(nullptr);
        m_log.reset();
    }

    void aRunIsPausedAndResumed()
    {
        copyFonts(fontFolder(), 6);
        openDialog();
        m_adder->addFontsFromPaths({fontFolder()});
        QTRY_COMPARE(label("lblStatus"), QStringLiteral("Processed fonts: 0 of 6"));
        QCOMPARE(bar()->maximum(), 6);
        auto* pause = button("btnStartPause");
        QCOMPARE(pause->text(), QStringLiteral("Pause"));
        QTest::mouseClick(pause, Qt::LeftButton);
        // The processes that run are waited for.
        QTRY_COMPARE(label("lblStatus"), QStringLiteral("Pausing scan..."));
        QCOMPARE(bar()->maximum(), 0);
        QVERIFY(!pause->isEnabled() && !button("btnAbort")->isEnabled());
        openGate();
        QTRY_COMPARE(pause->text(), QStringLiteral("Resume"));
        const int running = m_adder->maxRunningJobs();
        QCOMPARE(label("lblStatus"), QStringLiteral("Processed fonts: %1 of 6 (paused)").arg(running));
        QCOMPARE(bar()->value(), running);
        QCOMPARE(m_library->repository->fontCount(), running);
        QCOMPARE(label("lblDatabaseFontCount"), QStringLiteral("Number of fonts in Library: %1").arg(running));
        QTest::keyClick(pause, Qt::Key_Space);
        QTRY_COMPARE_WITH_TIMEOUT(m_library->repository->fontCount(), 6, patienceMs);
        QTRY_VERIFY(!m_adder->isAdding());
        QVERIFY(!pause->isEnabled());
        QCOMPARE(label("lblDatabaseFontCount"), QStringLiteral("Number of fonts in Library: 6"));
    }

    void abortForgetsWhatWaits()
    {
        copyFonts(fontFolder(), 6);
        openDialog();
        m_adder->addFontsFromPaths({fontFolder()});
        QTRY_VERIFY(button("btnAbort")->isEnabled());
        QTest::mouseClick(button("btnAbort"), Qt::LeftButton);
        QTRY_COMPARE(label("lblStatus"), QStringLiteral("Finishing scan..."));
        openGate();
        QTRY_VERIFY_WITH_TIMEOUT(!m_adder->isAdding(), patienceMs);
        // What was being read arrives, the rest does not, and nothing waits for the next start.
        QCOMPARE(m_library->repository->fontCount(), m_adder->maxRunningJobs());
        QCOMPARE(readFile(krv::userSettingsFolder() + QStringLiteral("fontadder.ev")), QByteArray());
        QVERIFY(label("lblStatus").startsWith(QStringLiteral("Last scan: ")));
    }

    void filesThatAreNotProcessedAreListed()
    {
        const QStringList files = copyFonts(fontFolder(), 2);
        writeFile(fontFolder() + QStringLiteral("/nameless.ttf"), namelessFont(readFile(files.first())));
        openGate();
        openDialog();
        QVERIFY(!button("btnWarnings")->isEnabled());
        m_adder->addFontsFromPaths({fontFolder()});
        QTRY_COMPARE(button("btnWarnings")->text(), QStringLiteral("1 warning"));
        writeFile(fontFolder() + QStringLiteral("/hidden.ttf"), renamedFont(readFile(files.first()), '.'));
        m_adder->addFontsFromPaths({fontFolder()});
        QTRY_COMPARE(button("btnWarnings")->text(), QStringLiteral("2 warnings"));
        QTest::mouseClick(button("btnWarnings"), Qt::LeftButton);
        FMSPlainTextMessage* window = openWarnings();
        QVERIFY(window);
        QCOMPARE(window->windowTitle(), QStringLiteral("Scanner Warnings"));
        QCOMPARE(window->findChild<QPlainTextEdit*>()->toPlainText(),
                 QStringLiteral("Following files are not processed:\n"
                                "  %1/hidden.ttf\n    Reason: Font name start with '.', it should remain hidden\n"
                                "  %1/nameless.ttf\n    Reason: Empty PostScript name")
                     .arg(fontFolder()));
        QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("btn_close")), Qt::LeftButton);
        QVERIFY(!window->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(m_library->repository->fontCount() == 2 && !m_adder->isAdding(), patienceMs);
    }

    // The window ends its dialog with the run.
    void warningsStayOpenForTheReader()
    {
        for (const bool isRead : {true, false}) {
            auto parent = std::make_unique<QWidget>();
            auto dialog = std::make_unique<FontAdderDialog>(m_adder, m_library->repository, parent.get());
            dialog->show();
            QVERIFY(QMetaObject::invokeMethod(dialog.get(), "showWarnings"));
            const QPointer<FMSPlainTextMessage> warnings = openWarnings();
            QVERIFY(warnings);
            if (!isRead)
                warnings->close();
            dialog.reset();
            QCOMPARE(warnings && warnings->isVisible(), isRead);
            parent.reset();
            QVERIFY(!warnings);
        }
    }

    void theLogIsAskedFor()
    {
        openDialog();
        QSignalSpy requested(m_dialog.get(), &FontAdderDialog::scanLogRequested);
        QTest::mouseClick(button("btnShowLog"), Qt::LeftButton);
        QCOMPARE(requested.size(), 1);
    }

    void searchingCanBeStopped()
    {
        // Wide enough to be still searched when the button is pressed.
        for (int i = 0; i < 3000; ++i)
            QDir().mkpath(fontFolder() + QStringLiteral("/%1/%2").arg(i % 50).arg(i));
        openDialog();
        QVERIFY(!button("btnAbortFontFileSearch")->isVisible());
        connect(m_adder.data(), &FontAdder::stateChanged, m_dialog.get(), [this] {
            if (m_adder->isSearching() && button("btnAbortFontFileSearch")->isVisible())
                QTest::mouseClick(button("btnAbortFontFileSearch"), Qt::LeftButton);
        });
        QStringList shown;
        connect(m_adder.data(), &FontAdder::stateChanged, m_dialog.get(),
                [this, &shown] { shown.append(label("lblStatus")); });
        m_adder->addFontsFromPaths({fontFolder()});
        QTRY_VERIFY(m_adder->searchDoneOnce() && !m_adder->isSearching());
        QVERIFY2(shown.contains(QStringLiteral("Processed fonts: 0 of 0 (scanning)")), qPrintable(shown.join(u'|')));
        QVERIFY(!button("btnAbortFontFileSearch")->isVisible());
    }

    void theStripFollowsAndSteers()
    {
        copyFonts(fontFolder(), 5);
        FontAdderStatusWidget strip(m_adder, nullptr);
        auto* resume = strip.findChild<QPushButton*>(QStringLiteral("btnResume"));
        auto* abort = strip.findChild<QPushButton*>(QStringLiteral("btnAbort"));
        auto* status = strip.findChild<QLabel*>(QStringLiteral("lblStatus"));
        QVERIFY(!strip.isVisible());
        m_adder->addFontsFromPaths({fontFolder()});
        QTRY_VERIFY(strip.isVisible() && resume->isEnabled());
        QTest::mouseClick(resume, Qt::LeftButton);
        openGate();
        QTRY_COMPARE(status->text(), QStringLiteral("Font Scanner paused"));
        QCOMPARE(resume->text(), QStringLiteral("Resume"));
        QTest::mouseClick(abort, Qt::LeftButton);
        QTRY_VERIFY(!strip.isVisible());
        QCOMPARE(m_library->repository->fontCount(), m_adder->maxRunningJobs());
    }

    // Closing the window is no wish to stop; quitting keeps the rest for the next start.
    void aScanOutlivesTheWindowAndTheProgram()
    {
        m_adder.reset();
        constexpr int many = 100;
        WindowLibrary library;
        const QByteArray font = readFile(systemFontFiles(1).first());
        for (int i = 0; i < many; ++i)
            writeFile(library.path(QStringLiteral("many/%1.ttf").arg(i)), font);
        {
            KrvFontManagerWindow window(library.service());
            window.show();
            library.service()->addFonts({library.path(QStringLiteral("many"))});
            const QSharedPointer<FontAdder> adder = library.service()->fontAdder();
            QTRY_VERIFY(window.findChild<FontAdderDialog*>());
            QTRY_VERIFY(adder->numberOfAddedFonts() > 0);
            QTest::keyClick(window.findChild<FontAdderDialog*>(), Qt::Key_Escape);
            window.close();
            QVERIFY(!window.isVisible());
            const int added = adder->numberOfAddedFonts();
            QTRY_VERIFY(adder->numberOfAddedFonts() > added);
        }
        library.restart();
        const QSharedPointer<FontAdder> adder = library.service()->fontAdder();
        const int stored = library.service()->repository()->fontCount();
        QVERIFY(stored > 0 && stored < many);
        QVERIFY(adder->isPaused());
        QCOMPARE(adder->numberOfFonts(), many - stored);

        KrvFontManagerWindow window(library.service());
        window.show();
        auto* strip = window.findChild<FontAdderStatusWidget*>();
        QVERIFY(strip->isVisible());
        QCOMPARE(strip->findChild<QLabel*>(QStringLiteral("lblStatus"))->text(), QStringLiteral("Font Scanner paused"));
        QTest::mouseClick(strip->findChild<QPushButton*>(QStringLiteral("btnResume")), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(library.service()->repository()->fontCount(), many, patienceMs);
    }

    void aWindowThatIsOpenedLaterShowsTheRun()
    {
        m_adder.reset();
        WindowLibrary library;
        const QByteArray font = readFile(systemFontFiles(1).first());
        for (int i = 0; i < 100; ++i)
            writeFile(library.path(QStringLiteral("many/%1.ttf").arg(i)), font);
        KrvFontManagerWindow window(library.service());
        library.service()->addFonts({library.path(QStringLiteral("many"))});
        const QSharedPointer<FontAdder> adder = library.service()->fontAdder();
        QTRY_VERIFY(adder->isAdding());
        QVERIFY(!window.findChild<FontAdderDialog*>());
        window.show();
        QPointer<FontAdderDialog> dialog = window.findChild<FontAdderDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("btnAbort")), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(!adder->isAdding(), patienceMs);
        QTRY_VERIFY(!dialog);
    }

private:
    static constexpr int patienceMs = 60000;

    QString fontFolder() const { return m_library->path(QStringLiteral("fonts")); }
    void openGate() const { writeFile(m_gate, "open"); }
    void openDialog()
    {
        m_dialog = std::make_unique<FontAdderDialog>(m_adder, m_library->repository, nullptr);
        m_dialog->show();
    }
    static FMSPlainTextMessage* openWarnings()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && qobject_cast<FMSPlainTextMessage*>(widget))
                return static_cast<FMSPlainTextMessage*>(widget);
        }
        return nullptr;
    }
    QPushButton* button(const char* name) const { return m_dialog->findChild<QPushButton*>(QLatin1String(name)); }
    QString label(const char* name) const { return m_dialog->findChild<QLabel*>(QLatin1String(name))->text(); }
    QProgressBar* bar() const { return m_dialog->findChild<QProgressBar*>(QStringLiteral("progressBar")); }

    std::unique_ptr<LibraryFixture> m_library;
    QSharedPointer<FontAdder> m_adder;
    std::unique_ptr<FMSLog> m_log;
    std::unique_ptr<FontAdderDialog> m_dialog;
    QString m_gate;
};

KERVAL_TEST(AdderDialogTest)
#include "AdderDialogTest.moc"
