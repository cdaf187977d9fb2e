#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/management/ZipArchive.h"
#include "qtService/ui/dialogs/FontExportProgressDialog.h"
#include "qtService/ui/dialogs/UpdateCheckDialog.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/qtService/ui/modaldialogs.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QAction>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace kerval::testing;

// The dialogs that the window's actions open, answered by keys and clicks; files and groups are looked at afterwards.
class WindowDialogsTest : public QObject
{
    Q_OBJECT

public slots:
    void rememberUrl(const QUrl& url) { m_opened.append(url); }

private slots:
    void initTestCase()
    {
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "rememberUrl");
    }
    void cleanupTestCase()
    {
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }

    void init()
    {
        m_opened.clear();
        m_folder = std::make_unique<QTemporaryDir>();
        m_library = std::make_unique<WindowLibrary>();
        m_ids = m_library->addFonts(4);
        m_window = std::make_unique<KrvFontManagerWindow>(m_library->service());
        m_window->show();
        m_view = m_window->findChild<KrvFontsView*>(QStringLiteral("fontsView"));
        m_view->sortByColumn(fonts::FamilyNameColumn, Qt::AscendingOrder);
        QTRY_COMPARE(m_view->model()->rowCount(), 4);
    }
    void cleanup()
    {
        m_window.reset();
        m_library.reset();
    }

    // The dialog is wide enough for its bar alone until then.
    void aFailureIsToldInAllItsLines()
    {
        const QString path =
            m_folder->filePath(QStringLiteral("no such folder ").repeated(20) + QStringLiteral("/a.zip"));
        const ExportFontsCommandPtr command = m_library->service()->exportFonts(path, m_ids);
        FontExportProgressDialog dialog(command, QStringLiteral("Export"), QStringLiteral("Exporting Fonts..."),
                                        nullptr);
        dialog.show();
        command->start();
        const auto* label = dialog.findChild<QLabel*>(QStringLiteral("lblOperationName"));
        QTRY_VERIFY(label->text().contains(path));
        QTRY_VERIFY(label->height() >= label->heightForWidth(label->width()));
        QVERIFY(dialog.rect().contains(label->geometry()));
        QVERIFY(label->heightForWidth(label->width()) > 2 * label->fontMetrics().lineSpacing());
    }

    // Arrows and the space bar alone.
    void groupsAreTickedByKeyboard()
    {
        QList<int> groups;
        for (const char* name : {"One", "Two", "Three"})
            groups.append(m_library->service()->addGroup(QLatin1String(name)));
        QTRY_COMPARE(userGroups()->groupCount(), 3);
        select(2);
        ModalAnswers answers({[](QDialog* dialog) {
                                  auto* list = dialog->findChild<QListWidget*>();
                                  QCOMPARE(dialog->focusWidget(), list);
                                  QPushButton* ok =
                                      dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
                                  QTest::keyClick(list, Qt::Key_Return); // nothing is ticked yet
                                  QVERIFY(dialog->isVisible() && !ok->isEnabled());
                                  QTest::keyClick(list, Qt::Key_Space);
                                  QTest::keyClick(list, Qt::Key_Down);
                                  QTest::keyClick(list, Qt::Key_Down);
                                  QTest::keyClick(list, Qt::Key_Space);
                                  QVERIFY(ok->isEnabled());
                                  QTest::keyClick(dialog, Qt::Key_Return);
                              },
                              [](QDialog* dialog) {
                                  auto* list = dialog->findChild<QListWidget*>();
                                  list->setCurrentRow(1);
                                  QTest::keyClick(list, Qt::Key_Space);
                                  QTest::keyClick(list, Qt::Key_Escape);
                              }});
        trigger("actionAddToGroups");
        QTRY_COMPARE(userGroups()->group(groups.at(0))->fontCount(), 2);
        QTRY_COMPARE(userGroups()->group(groups.at(2))->fontCount(), 2);
        trigger("actionAddToGroups");
        QCOMPARE(answers.given(), 2);
        QCOMPARE(userGroups()->group(groups.at(1))->fontCount(), 0);
    }

    void aCancelledNameChangesNothing()
    {
        const int id = m_library->service()->addGroup(QStringLiteral("Old"));
        QTRY_COMPARE(userGroups()->groupCount(), 1);
        m_window->findChild<SideBarWidget*>()->selectGroup(id);
        QStringList suggestions;
        const auto typeAndEscape = [&suggestions](QDialog* dialog) {
            auto* input = dialog->findChild<QLineEdit*>(QStringLiteral("leInput"));
            suggestions.append(input->text());
            QCOMPARE(input->selectedText(), input->text());
            QTest::keyClicks(input, QStringLiteral("New"));
            QTest::keyClick(input, Qt::Key_Escape);
        };
        ModalAnswers answers({typeAndEscape, typeAndEscape, typeAndEscape});
        trigger("actionRenameGroup");
        trigger("actionDuplicateGroup");
        trigger("actionNewGroup");
        QCOMPARE(answers.given(), 3);
        QCOMPARE(suggestions, QStringList({QStringLiteral("Old"), QStringLiteral("Old"), QStringLiteral("group")}));
        QCOMPARE(userGroups()->groupCount(), 1);
        QCOMPARE(userGroups()->group(id)->name(), QStringLiteral("Old"));
    }

    void chosenFontsAreExported()
    {
        select(2);
        const QString file = m_folder->filePath(QStringLiteral("chosen"));
        ModalAnswers answers({ModalAnswers::typeAndAccept(file), showFileAndClose()});
        trigger("actionExportFonts");
        QCOMPARE(answers.given(), 2);
        ZipArchive archive(file + QStringLiteral(".zip"), QString());
        QVERIFY(archive.open(ZipArchive::Read));
        QCOMPARE(archive.entries(), QStringList({QStringLiteral("font1.ttf"), QStringLiteral("font2.ttf")}));
        QTRY_COMPARE(m_opened, QList<QUrl>{QUrl::fromLocalFile(m_folder->path())});
    }

    void anExportThatCannotBeWrittenIsTold()
    {
        QString told;
        ModalAnswers answers(
            {ModalAnswers::typeAndAccept(m_folder->filePath(QStringLiteral("all.ZIP"))), [&](QDialog* dialog) {
                 QTRY_VERIFY(hasButton(dialog, QStringLiteral("Close")));
                 told = dialog->findChild<QLabel*>(QStringLiteral("lblOperationName"))->text();
                 QVERIFY(!hasButton(dialog, QStringLiteral("Cancel")));
                 QTest::keyClick(dialog, Qt::Key_Escape);
             }});
        QVERIFY(QFile::remove(m_library->font(m_ids.at(3))->fileName()));
        trigger("actionExportAllFonts");
        QCOMPARE(answers.given(), 2);
        QVERIFY2(told.contains(QStringLiteral("all.ZIP")), qPrintable(told));
    }

    void anExportIsCancelled()
    {
        m_library->addFonts(300);
        ModalAnswers answers(
            {ModalAnswers::typeAndAccept(m_folder->filePath(QStringLiteral("all.zip"))), [](QDialog* dialog) {
                 QTRY_VERIFY(dialog->findChild<QProgressBar*>()->value() > 0);
                 ModalAnswers::press(QStringLiteral("Cancel"))(dialog);
             }});
        trigger("actionExportAllFonts");
        QCOMPARE(answers.given(), 2);
        ZipArchive archive(m_folder->filePath(QStringLiteral("all.zip")), QString());
        QTRY_VERIFY(archive.open(ZipArchive::Read));
        QVERIFY(archive.entries().size() < 304);
    }

    void listingsAndSheetsArePrinted()
    {
        select(3);
        QString suggestion;
        const QString listing = m_folder->filePath(QStringLiteral("listing.PDF"));
        const QString sheet = m_folder->filePath(QStringLiteral("sheet"));
        ModalAnswers answers({[&](QDialog* dialog) {
                                  auto* input = dialog->findChild<QLineEdit*>(QStringLiteral("leInput"));
                                  suggestion = input->text();
                                  QTest::keyClicks(input, QStringLiteral("Sphinx of black quartz"));
                                  QTest::keyClick(input, Qt::Key_Return);
                              },
                              ModalAnswers::typeAndAccept(listing), showFileAndClose(),
                              ModalAnswers::typeAndAccept(sheet), showFileAndClose()});
        trigger("actionListing");
        QCOMPARE(answers.given(), 3);
        QCOMPARE(suggestion, QStringLiteral("The quick brown fox jumps over lazy dog"));
        QVERIFY(readFile(listing).startsWith("%PDF"));
        trigger("actionSampleSheet");
        QCOMPARE(answers.given(), 5);
        QVERIFY(readFile(sheet + QStringLiteral(".pdf")).startsWith("%PDF"));
        QTRY_COMPARE(m_opened.size(), 2);
    }

    void printingIsCancelled()
    {
        m_library->addFonts(600);
        const QString listing = m_folder->filePath(QStringLiteral("all.pdf"));
        ModalAnswers answers({[](QDialog* dialog) { dialog->accept(); }, ModalAnswers::typeAndAccept(listing),
                              ModalAnswers::press(QStringLiteral("Cancel"))});
        trigger("actionListingOfAllFonts");
        QCOMPARE(answers.given(), 3);
        // A listing that is given up leaves no half of a file.
        QTRY_COMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList());
    }

    void anExistingFileIsReplacedOnlyWhenTheUserSaysSo()
    {
        const QString file = m_folder->filePath(QStringLiteral("mine.zip"));
        writeFile(file, "keep me");
        select(1);
        ModalAnswers answers({ModalAnswers::typeAndAccept(m_folder->filePath(QStringLiteral("mine"))),
                              ModalAnswers::press(QStringLiteral("No"))});
        trigger("actionExportFonts");
        QCOMPARE(answers.given(), 2);
        QCOMPARE(readFile(file), QByteArray("keep me"));
    }

    void theAboutBoxLeadsToTheSite()
    {
        ModalAnswers answers({[](QDialog* dialog) {
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Kerval Font Manager - About"));
            auto* description = dialog->findChild<QLabel*>(QStringLiteral("lblDescription"));
            QVERIFY(description->text().contains(QStringLiteral("Version: 2.7.1")));
            description->setFocus();
            QTest::keyClick(description, Qt::Key_Tab); // to the link
            QTest::keyClick(description, Qt::Key_Return);
            QTest::keyClick(dialog, Qt::Key_Escape);
        }});
        trigger("actionAbout");
        QCOMPARE(answers.given(), 1);
        QCOMPARE(m_opened.size(), 1);
        QVERIFY(m_opened.first().scheme().startsWith(QStringLiteral("http")));
        trigger("actionHelp");
        QCOMPARE(m_opened.size(), 2);
    }

    void updatesAreLookedFor_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("text");
        QTest::newRow("newer") << QByteArray("{\"version\":\"9.9\",\"winx64_url\":\"http://get.example/k\"}")
                               << QStringLiteral("A new version of Kerval is available.");
        QTest::newRow("latest") << QByteArray("{\"version\":\"2.7.1\",\"winx64_url\":\"http://get.example/k\"}")
                                << QStringLiteral("No updates are available.");
        QTest::newRow("no answer") << QByteArray() << QStringLiteral("Failed to check for updates.");
    }

    void updatesAreLookedFor()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, text);
        QTcpServer server;
        connect(&server, &QTcpServer::newConnection, &server, [&] {
            QTcpSocket* socket = server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket, document] {
                if (!document.isEmpty())
                    socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                                  QByteArray::number(document.size()) + "\r\n\r\n" + document);
                socket->disconnectFromHost();
            });
        });
        QVERIFY(server.listen(QHostAddress::LocalHost));
        setUpdateHost(QStringLiteral("127.0.0.1:%1").arg(server.serverPort()));
        UpdateCheckDialog dialog(m_library->service()->createUpdateCheckCommand(), nullptr);
        ModalAnswers answers({[&](QDialog* shown) {
            auto* description = shown->findChild<QLabel*>(QStringLiteral("lblDescription"));
            auto* close = shown->findChild<QPushButton*>(QStringLiteral("btnClose"));
            QTRY_VERIFY(close->isVisible());
            QVERIFY2(description->text().startsWith(text), qPrintable(description->text()));
            QVERIFY(!shown->findChild<QProgressBar*>()->isVisible());
            if (document.contains("9.9"))
                emit description->linkActivated(QStringLiteral("http://get.example/k"));
            QTest::mouseClick(close, Qt::LeftButton);
        }});
        dialog.exec();
        QCOMPARE(answers.given(), 1);
        QCOMPARE(m_opened.size(), document.contains("9.9") ? 1 : 0);
        setUpdateHost(QString());
    }

    void lookingForUpdatesIsCancelled()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        setUpdateHost(QStringLiteral("127.0.0.1:%1").arg(silent.serverPort()));
        const UpdateCheckCommandPtr command = m_library->service()->createUpdateCheckCommand();
        UpdateCheckDialog dialog(command, nullptr);
        ModalAnswers answers({ModalAnswers::press(QStringLiteral("Cancel"))});
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        QCOMPARE(answers.given(), 1);
        QTRY_COMPARE(command->state(), AbstractAsynchronousCommand::Cancelled);
        setUpdateHost(QString());
    }

private:
    QSharedPointer<UserFontGroupList> userGroups() const { return m_library->service()->userFontGroups(); }
    void trigger(const char* name) const { m_window->findChild<QAction*>(QLatin1String(name))->trigger(); }

    void select(int count) const
    {
        const auto place = [this](int row) {
            return m_view->visualRect(m_view->model()->index(row, fonts::FamilyNameColumn)).center();
        };
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, place(0));
        if (count > 1)
            QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ShiftModifier, place(count - 1));
    }

    static bool hasButton(const QDialog* dialog, const QString& text)
    {
        const QList<QPushButton*> buttons = dialog->findChildren<QPushButton*>();
        return std::any_of(buttons.begin(), buttons.end(), [&](const QPushButton* button) {
            return button->isVisible() && button->text().remove(QLatin1Char('&')) == text;
        });
    }
    static ModalAnswers::Answer showFileAndClose()
    {
        return [](QDialog* dialog) {
            const QString show = QStringLiteral("Show in Windows Explorer");
            QTRY_VERIFY_WITH_TIMEOUT(hasButton(dialog, show), 30000);
            QVERIFY(!hasButton(dialog, QStringLiteral("Cancel")));
            ModalAnswers::press(show)(dialog);
            QVERIFY(dialog->isVisible());
            ModalAnswers::press(QStringLiteral("Close"))(dialog);
        };
    }
    static void setUpdateHost(const QString& host)
    {
        QSettings settings(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
        settings.setValue(QStringLiteral("Updates/Host"), host);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<WindowLibrary> m_library;
    std::unique_ptr<KrvFontManagerWindow> m_window;
    KrvFontsView* m_view = nullptr;
    QList<int> m_ids;
    QList<QUrl> m_opened;
};

KERVAL_TEST(WindowDialogsTest)
#include "WindowDialogsTest.moc"
