#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/management/ziparchives.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/qtService/ui/modaldialogs.h"
#include "tests/support/helperprograms.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QtTest>

using namespace kerval::testing;

// Archives on their way from the file manager into the library, through the window.
class ArchiveImportTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        provideHelperPrograms(QStringLiteral(KERVAL_BIN_DIR));
        const QString fonts = QStringLiteral("/usr/share/fonts/truetype/dejavu/");
        m_sans = readFile(fonts + QStringLiteral("DejaVuSans.ttf"));
        m_mono = readFile(fonts + QStringLiteral("DejaVuSansMono.ttf"));
        m_bold = readFile(fonts + QStringLiteral("DejaVuSans-Bold.ttf"));
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_library = std::make_unique<WindowLibrary>();
        m_window = std::make_unique<KrvFontManagerWindow>(m_library->service());
        m_window->show();
    }

    void cleanup()
    {
        m_window.reset();
        m_library.reset();
    }

    void aDroppedArchiveArrivesInTheLibrary()
    {
        const QString archive = writeZip(path("Two Fonts.zip"), {{QStringLiteral("a/Sans.ttf"), m_sans},
                                                                 {QStringLiteral("a/b/Mono.ttf"), m_mono},
                                                                 {QStringLiteral("c"), "-"}});
        writeFile(path("loose/Bold.ttf"), m_bold);
        drop({archive, path("loose")});
        QTRY_COMPARE_WITH_TIMEOUT(repository()->fontCount(), 3, patienceMs);
        const QString place = krv::userSettingsFolder() + QStringLiteral("archives/Two Fonts/");
        checkDownloaded(place + QStringLiteral("a/Sans.ttf"), true);
        checkDownloaded(place + QStringLiteral("a/b/Mono.ttf"), true);
        checkDownloaded(path("loose/Bold.ttf"), false);

        // Once more changes nothing.
        drop({archive});
        QTRY_VERIFY(m_shown.contains(QStringLiteral("FontArchiveImportDialog")));
        QTRY_VERIFY(!adder()->isSearching() && !adder()->isAdding());
        QCOMPARE(repository()->fontCount(), 3);
        QCOMPARE(
            QDir(krv::userSettingsFolder() + QStringLiteral("archives")).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
            QStringList(QStringLiteral("Two Fonts")));

        // The library's own folder is found again after a reset.
        ModalAnswers answers({ModalAnswers::press(QStringLiteral("Yes"))});
        m_window->findChild<QAction*>(QStringLiteral("actionResetFontLibrary"))->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(repository()->fontCount() == 2 && !adder()->isAdding(), patienceMs);
        checkDownloaded(place + QStringLiteral("a/Sans.ttf"), true);
    }

    void aChosenArchiveArrivesInTheLibrary()
    {
        writeZip(path("chosen.ZIP"), {{QStringLiteral("Sans.ttf"), m_sans}});
        ModalAnswers answers({ModalAnswers::typeAndAccept(path("chosen.ZIP"))});
        m_window->findChild<QAction*>(QStringLiteral("actionAddFiles"))->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(repository()->fontCount(), 1, patienceMs);
        checkDownloaded(krv::userSettingsFolder() + QStringLiteral("archives/chosen/Sans.ttf"), true);
    }

    void aRefusedArchiveIsTold()
    {
        const QString good = writeZip(path("good.zip"), {{QStringLiteral("Sans.ttf"), m_sans}});
        const QString evil = writeZip(path("<b>evil.zip"), {{QStringLiteral("../evil.ttf"), m_sans}});
        QString told;
        QString reasons;
        ModalAnswers answers({[](QDialog*) {},
                              [&](QDialog* dialog) {
                                  const auto* box = qobject_cast<QMessageBox*>(dialog);
                                  told = box->text();
                                  reasons = box->informativeText();
                                  QCOMPARE(box->textFormat(), Qt::PlainText);
                                  QTest::keyClick(dialog, Qt::Key_Escape);
                              }});
        drop({evil, good});
        QTRY_COMPARE_WITH_TIMEOUT(repository()->fontCount(), 1, patienceMs);
        QTRY_COMPARE(answers.given(), 2);
        QCOMPARE(told, QStringLiteral("One archive could not be added:"));
        QCOMPARE(reasons, QStringLiteral(
                              "<b>evil.zip: It would write outside its own folder, or one of its files over another."));
        QVERIFY(!QFile::exists(krv::userSettingsFolder() + QStringLiteral("evil.ttf")));
        QVERIFY(!QFile::exists(krv::userSettingsFolder() + QStringLiteral("archives/evil.ttf")));
    }

    void unpackingCanBeCancelled()
    {
        // Enough to be still at it when the button is pressed, and packed in no time.
        ZipContent entries;
        const QByteArray zeros(0x100000, '\0');
        for (int i = 0; i < 63; ++i)
            entries.append({QStringLiteral("font%1.ttf").arg(i), zeros});
        const QString archive = writeZip(path("large.zip"), entries);
        QString operation;
        ModalAnswers answers({[&](QDialog* dialog) {
            const auto* bar = dialog->findChild<QProgressBar*>(QStringLiteral("progressBar"));
            QTRY_VERIFY(bar->value() > 0);
            operation = dialog->findChild<QLabel*>(QStringLiteral("lblOperationName"))->text();
            ModalAnswers::press(QStringLiteral("Cancel"))(dialog);
        }});
        drop({archive});
        QTRY_COMPARE(answers.given(), 1);
        QTRY_VERIFY(!QApplication::activeModalWidget());
        QVERIFY2(operation.startsWith(QStringLiteral("Unpacking")), qPrintable(operation));
        QVERIFY(!adder()->isSearching());
        QCOMPARE(repository()->fontCount(), 0);
        QCOMPARE(QDir(krv::userSettingsFolder() + QStringLiteral("archives"))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList());
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QDialog*>(watched))
            m_shown.append(watched->objectName());
        return QObject::eventFilter(watched, event);
    }

private:
    static constexpr int patienceMs = 60000;

    QString path(const char* name) const { return m_folder->filePath(QLatin1String(name)); }
    QSharedPointer<KrvFontRepository> repository() const { return m_library->service()->repository(); }
    QSharedPointer<FontAdder> adder() const { return m_library->service()->fontAdder(); }

    void drop(const QStringList& files)
    {
        m_shown.clear();
        qApp->installEventFilter(this);
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& file : files)
            urls.append(QUrl::fromLocalFile(file));
        data.setUrls(urls);
        const QPoint place = m_window->rect().center();
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_window.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_window.get(), &event);
        QVERIFY(event.isAccepted());
    }

    void checkDownloaded(const QString& file, bool downloaded)
    {
        const QList<StaticFontPtr> fonts = repository()->fonts();
        for (const StaticFontPtr& font : fonts) {
            if (font->fileName() != file)
                continue;
            QCOMPARE(font->isPurchased(), downloaded);
            QCOMPARE(font->dateDownloaded().toSecsSinceEpoch() > 0, downloaded);
            return;
        }
        QFAIL(qPrintable(file + QStringLiteral(" is not in the library")));
    }

    QByteArray m_sans;
    QByteArray m_mono;
    QByteArray m_bold;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<WindowLibrary> m_library;
    std::unique_ptr<KrvFontManagerWindow> m_window;
    QStringList m_shown;
};

KERVAL_TEST(ArchiveImportTest)
#include "ArchiveImportTest.moc"
