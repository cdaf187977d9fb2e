#include "qtService/management/ArchivesFolder.h"
#include "qtService/management/ImportFontArchivesCommand.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/qtService/management/ziparchives.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace kerval::testing;

using Error = ImportFontArchivesCommand::Error;

// Archives of fonts on their way into the library's folder.
class FontArchivesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_font = readFile(systemFontFiles(1).first());
        m_other = renamedFont(m_font, 'Q');
    }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_archives = m_folder->filePath(QStringLiteral("archives"));
    }

    void fontsArriveInAFolderOfTheirOwn()
    {
        const QString archive =
            writeZip(m_folder->filePath(QStringLiteral("Nice Family v2.1.zip")),
                     {{QStringLiteral("Nice/"), {}},
                      {QStringLiteral("Nice/desktop/deep/a.ttf"), m_font},
                      {QStringLiteral("Nice/b.ttf"), m_other},
                      {QStringLiteral("Nice/b.ttf.onlineinfo"), "[General]\nOnlineSource=somebody else\n"},
                      {QStringLiteral("licence.txt"), "yours"}});
        ImportFontArchivesCommand command({archive}, m_archives);
        QSignalSpy progress(&command, &AbstractAsynchronousCommand::progressChanged);
        run(&command);
        QCOMPARE(command.state(), AbstractAsynchronousCommand::Finished);
        QCOMPARE(command.results().size(), 1);
        QCOMPARE(command.results().first().folder, m_archives + QStringLiteral("/Nice Family v2.1"));
        QVERIFY(progress.size() > 1);
        QCOMPARE(command.progressCurrent(), command.progressTotal());

        const QDir place(command.results().first().folder);
        QCOMPARE(readFile(place.filePath(QStringLiteral("Nice/desktop/deep/a.ttf"))), m_font);
        QCOMPARE(readFile(place.filePath(QStringLiteral("licence.txt"))), QByteArray("yours"));
        QVERIFY(!QFile::exists(place.filePath(QStringLiteral("licence.txt.onlineinfo"))));
        for (const char* name : {"Nice/desktop/deep/a.ttf.onlineinfo", "Nice/b.ttf.onlineinfo"}) {
            QSettings info(place.filePath(QLatin1String(name)), QSettings::IniFormat);
            info.setIniCodec("UTF-8");
            QCOMPARE(info.value(QStringLiteral("Purchased")).toBool(), true);
            QCOMPARE(info.value(QStringLiteral("OnlineSource")).toString(), QString());
            QVERIFY(info.value(QStringLiteral("DownloadedDate")).toDateTime().isValid());
        }
        QCOMPARE(QDir(m_archives).entryList(everything), QStringList(place.dirName()));
    }

    void anArchiveIsNotDoubled()
    {
        const QString archive = writeZip(m_folder->filePath(QStringLiteral("one.zip")),
                                         {{QStringLiteral("a.ttf"), m_font}, {QStringLiteral("sub/b.ttf"), m_other}});
        const QString place = import({archive}).first().folder;
        writeFile(place + QStringLiteral("/a.ttf.onlineinfo"), "changed by the user");
        const QString renamed = m_folder->filePath(QStringLiteral("one (copy).ZIP"));
        QVERIFY(QFile::copy(archive, renamed));
        QCOMPARE(import({renamed}).first().folder, place);

        // What was deleted comes back, what is there stays as it is.
        QVERIFY(QFile::remove(place + QStringLiteral("/sub/b.ttf")));
        QCOMPARE(import({renamed, archive}).last().folder, place);
        QCOMPARE(readFile(place + QStringLiteral("/sub/b.ttf")), m_other);
        QCOMPARE(readFile(place + QStringLiteral("/a.ttf.onlineinfo")), QByteArray("changed by the user"));
        QCOMPARE(QDir(m_archives).entryList(everything), QStringList(QStringLiteral("one")));
    }

    void takenNamesGetANumber()
    {
        const QString first =
            writeZip(m_folder->filePath(QStringLiteral("fonts.zip")), {{QStringLiteral("a.ttf"), m_font}});
        QDir(m_folder->path()).mkdir(QStringLiteral("sub"));
        const QString second =
            writeZip(m_folder->filePath(QStringLiteral("sub/fonts.zip")), {{QStringLiteral("a.ttf"), m_other}});
        const QList<ImportFontArchivesCommand::Result> results = import({first, second});
        QCOMPARE(results.first().folder, m_archives + QStringLiteral("/fonts"));
        QCOMPARE(results.last().folder, m_archives + QStringLiteral("/fonts (2)"));
        QCOMPARE(readFile(results.last().folder + QStringLiteral("/a.ttf")), m_other);
    }

    void foldersCanBeFoundWhateverTheArchiveIsCalled_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("folder");
        QTest::newRow("hidden") << QStringLiteral(".secret.zip") << QStringLiteral("secret");
        QTest::newRow("nothing but dots") << QStringLiteral("...zip") << QStringLiteral("archive");
        QTest::newRow("line break") << QStringLiteral("a\nb?.zip") << QStringLiteral("a_b_");
        QTest::newRow("long") << QString(250, QLatin1Char('x')) + QStringLiteral(".zip")
                              << QString(200, QLatin1Char('x'));
    }

    void foldersCanBeFoundWhateverTheArchiveIsCalled()
    {
        QFETCH(QString, name);
        QFETCH(QString, folder);
        const QString plain =
            writeZip(m_folder->filePath(QStringLiteral("plain.zip")), {{QStringLiteral("a.ttf"), m_font}});
        const QString archive = m_folder->filePath(name);
        QVERIFY(QFile::rename(plain, archive));
        QVERIFY(ImportFontArchivesCommand::isArchive(archive));
        QCOMPARE(import({archive}).first().folder, m_archives + QLatin1Char('/') + folder);
    }

    void refusedArchivesLeaveNothing_data()
    {
        QTest::addColumn<ZipContent>("entries");
        QTest::addColumn<int>("error");
        const auto font = QPair<QString, QByteArray>(QStringLiteral("first.ttf"), m_font);
        QTest::newRow("parent") << ZipContent{font, {QStringLiteral("../../evil.ttf"), m_font}} << int(Error::Unsafe);
        QTest::newRow("absolute") << ZipContent{font, {QStringLiteral("/tmp/evil.ttf"), m_font}} << int(Error::Unsafe);
        QTest::newRow("file as folder") << ZipContent{font, {QStringLiteral("first.ttf/second.ttf"), m_font}}
                                        << int(Error::Unsafe);
        QTest::newRow("folder as file") << ZipContent{{QStringLiteral("a/b.ttf"), m_font},
                                                      {QStringLiteral("a"), m_font}}
                                        << int(Error::Unsafe);
        QTest::newRow("no fonts") << ZipContent{{QStringLiteral("readme.ttf"), "not a font"}} << int(Error::NoFonts);
        QTest::newRow("nothing") << ZipContent{} << int(Error::NoFonts);
        QTest::newRow("bomb") << ZipContent{font, {QStringLiteral("zeros.ttf"), QByteArray(70 << 20, '\0')}}
                              << int(Error::TooLarge);
    }

    void refusedArchivesLeaveNothing()
    {
        QFETCH(ZipContent, entries);
        QFETCH(int, error);
        const QString archive = writeZip(m_folder->filePath(QStringLiteral("in/bad.zip")), entries);
        checkRefused(archive, error);
    }

    void damagedArchivesLeaveNothing_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("no archive") << int(Error::NoArchive);
        QTest::newRow("damaged content") << int(Error::Damaged);
        QTest::newRow("password") << int(Error::Encrypted);
    }

    void damagedArchivesLeaveNothing()
    {
        QFETCH(int, error);
        const QString archive = writeZip(
            m_folder->filePath(QStringLiteral("in/bad.zip")),
            {{QStringLiteral("a.ttf"), m_font}, {QStringLiteral("b.ttf"), m_other}, {QStringLiteral("c"), "text"}});
        QByteArray bytes = readFile(archive);
        if (error == Error::NoArchive)
            bytes = "<html>404 not found</html>";
        else if (error == Error::Damaged)
            bytes[bytes.size() / 2] = char(bytes.at(bytes.size() / 2) ^ 0x55);
        else // the last entry's flags in the directory
            bytes[bytes.lastIndexOf(QByteArray("PK\x01\x02", 4)) + 8] = 1;
        writeFile(archive, bytes);
        checkRefused(archive, error);
    }

    void oneBadArchiveDoesNotStopTheOthers()
    {
        const QString bad = m_folder->filePath(QStringLiteral("bad.zip"));
        writeFile(bad, "nothing");
        const QString good =
            writeZip(m_folder->filePath(QStringLiteral("good.zip")), {{QStringLiteral("a.ttf"), m_font}});
        ImportFontArchivesCommand command({bad, good}, m_archives);
        run(&command);
        QCOMPARE(command.state(), AbstractAsynchronousCommand::Finished);
        QCOMPARE(command.results().first().error, Error::NoArchive);
        QVERIFY(!command.results().last().folder.isEmpty());
    }

    void cancellingKeepsWhatIsWhole()
    {
        const QString whole =
            writeZip(m_folder->filePath(QStringLiteral("whole.zip")), {{QStringLiteral("a.ttf"), m_font}});
        const QString half =
            writeZip(m_folder->filePath(QStringLiteral("half.zip")),
                     {{QStringLiteral("a.ttf"), m_other}, {QStringLiteral("b.ttf"), m_other + m_other}});
        ImportFontArchivesCommand command({whole, half}, m_archives);
        QSignalSpy ended(&command, &ImportFontArchivesCommand::ended);
        connect(
            &command, &AbstractAsynchronousCommand::progressChanged, &command,
            [&command](int total, int current) {
                if (current > total / 2 && current < total)
                    command.cancel();
            },
            Qt::DirectConnection);
        run(&command);
        QCOMPARE(command.state(), AbstractAsynchronousCommand::Cancelled);
        QCOMPARE(ended.size(), 1);
        QCOMPARE(command.results().size(), 1);
        QCOMPARE(QDir(m_archives).entryList(everything), QStringList(QStringLiteral("whole")));
    }

    void leftoversOfAKilledImportGo()
    {
        const ArchivesFolder folder(m_archives);
        const QString unpacked = folder.createUnpackingFolder();
        writeFile(unpacked + QStringLiteral("/sub/a.ttf"), m_font);
        writeFile(m_archives + QStringLiteral("/kept/a.ttf"), m_font);
        folder.removeLeftovers();
        QCOMPARE(QDir(m_archives).entryList(everything), QStringList(QStringLiteral("kept")));
    }

    void namesOfOldToolsAreRead()
    {
        const QString archive =
            writeZip(m_folder->filePath(QStringLiteral("old.zip")), {{QStringLiteral("Gr__e.ttf"), m_font}});
        QByteArray bytes = readFile(archive);
        bytes.replace("Gr__e.ttf", "Gr\x94\xe1"
                                   "e.ttf"); // in the code page of its time
        writeFile(archive, bytes);
        const QString folder = import({archive}).first().folder;
        QVERIFY(QFile::exists(folder + QString::fromUtf8("/Größe.ttf")));
    }

private:
    static constexpr QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

    static void run(ImportFontArchivesCommand* command)
    {
        command->start();
        command->waitForFinished();
    }

    QList<ImportFontArchivesCommand::Result> import(const QStringList& archives) const
    {
        ImportFontArchivesCommand command(archives, m_archives);
        run(&command);
        return command.results();
    }

    void checkRefused(const QString& archive, int error) const
    {
        ImportFontArchivesCommand command({archive}, m_archives);
        run(&command);
        QCOMPARE(command.state(), AbstractAsynchronousCommand::Failed);
        QCOMPARE(int(command.results().first().error), error);
        QVERIFY(command.results().first().folder.isEmpty());
        QCOMPARE(QDir(m_archives).entryList(everything), QStringList());
        QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("evil.ttf"))));
        QVERIFY(!QFile::exists(QStringLiteral("/tmp/evil.ttf")));
    }

    QByteArray m_font;
    QByteArray m_other;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_archives;
};

KERVAL_TEST(FontArchivesTest)
#include "FontArchivesTest.moc"
