#include "qtService/management/ZipArchive.h"

#include "qtService/app/service/ExportFontsCommand.h"
#include "qtService/management/ExtractFontArchiveCommand.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace kerval::testing;

namespace {

int run(AbstractAsynchronousCommand& command)
{
    command.start();
    command.waitForFinished();
    return command.state();
}

// An archive of one small file under these entry names.
QString writeArchive(const QString& path, const QStringList& entries, const QByteArray& content = "content")
{
    writeFile(path + QStringLiteral(".part"), content);
    ZipArchive archive(path, QString());
    bool written = archive.open(ZipArchive::Write);
    for (const QString& entry : entries)
        written = written && archive.addFile(path + QStringLiteral(".part"), entry);
    if (!written || !archive.close())
        qFatal("the archive could not be written");
    return path;
}

} // namespace

class ZipArchiveTest : public QObject
{
    Q_OBJECT

private slots:
    void bringsFilesBack();
    void extractsFoldersWithTheirChildren();
    void refusesEntriesOutside_data();
    void refusesEntriesOutside();
    void doesNotFollowLinksOutOfTheFolder();
    void namesBrokenArchives_data();
    void namesBrokenArchives();
    void copesWithManyEntries();
    void refusesWhatFitsOnNoDisk();
    void readsArchivesBehindAProgram();
    void copiesStartClosed();
    void keepsFilesOfOneNameApart();
    void failsOnAMissingFile();
    void stopsWhenCancelled();
};

void ZipArchiveTest::bringsFilesBack()
{
    QTemporaryDir folder;
    const QString archivePath = folder.filePath(QStringLiteral("a.zip"));
    const QString letters = QStringLiteral("\u00fcn\u00ef \u2603.ttf");
    QByteArray large(3 * 0x100000 + 17, '\0');
    for (int i = 0; i < large.size(); ++i)
        large[i] = char(i * 7 % 251);
    writeFile(folder.filePath(letters), large);
    writeFile(folder.filePath(QStringLiteral("empty.ttf")), QByteArray());

    ZipArchive writer(archivePath, QString());
    QVERIFY(!writer.addFile(folder.filePath(letters), QString())); // not open
    QVERIFY(writer.open(ZipArchive::Write));
    QVERIFY(writer.addFile(folder.filePath(letters), QString()));
    QVERIFY(writer.addFile(folder.filePath(QStringLiteral("empty.ttf")), QStringLiteral("sub/empty.ttf")));
    QVERIFY(!writer.addFile(folder.filePath(QStringLiteral("missing.ttf")), QString()));
    QVERIFY(!writer.addFile(folder.path(), QString()));
    QVERIFY(writer.close());

    ZipArchive reader(archivePath, QString());
    QVERIFY(reader.open(ZipArchive::Read));
    QCOMPARE(reader.entries(), QStringList({letters, QStringLiteral("sub/empty.ttf")}));
    const QString target = folder.filePath(QStringLiteral("out"));
    writeFile(target + QLatin1Char('/') + letters, "an older file");
    for (const QString& entry : reader.entries())
        QVERIFY(reader.extract(entry, target, false));
    QVERIFY(reader.extract(QStringLiteral("no such entry"), target, false));
    QCOMPARE(readFile(target + QLatin1Char('/') + letters), large);
    QCOMPARE(QFileInfo(target + QStringLiteral("/sub/empty.ttf")).size(), 0);
}

void ZipArchiveTest::extractsFoldersWithTheirChildren()
{
    QTemporaryDir folder;
    const QString path =
        writeArchive(folder.filePath(QStringLiteral("a.zip")),
                     {QStringLiteral("fonts/"), QStringLiteral("fonts/a.ttf"), QStringLiteral("fonts/deep/b.ttf"),
                      QStringLiteral("win\\c.ttf"), QStringLiteral("other.ttf")});
    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read));
    const QString alone = folder.filePath(QStringLiteral("alone"));
    QVERIFY(archive.extract(QStringLiteral("fonts/"), alone, false));
    QCOMPARE(QDir(alone + QStringLiteral("/fonts")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());

    const QString all = folder.filePath(QStringLiteral("all"));
    QVERIFY(archive.extract(QStringLiteral("fonts/"), all, true));
    QVERIFY(QFileInfo(all + QStringLiteral("/fonts/a.ttf")).isFile());
    QVERIFY(QFileInfo(all + QStringLiteral("/fonts/deep/b.ttf")).isFile());
    QVERIFY(!QFile::exists(all + QStringLiteral("/other.ttf")));
    QVERIFY(archive.extract(QStringLiteral("win\\c.ttf"), all, false));
    QVERIFY(QFileInfo(all + QStringLiteral("/win/c.ttf")).isFile());
}

void ZipArchiveTest::refusesEntriesOutside_data()
{
    QTest::addColumn<QString>("entry");
    QTest::newRow("parent") << QStringLiteral("../evil.ttf");
    QTest::newRow("parent from below") << QStringLiteral("a/b/../../../evil.ttf");
    QTest::newRow("absolute") << QStringLiteral("/tmp/kerval-evil.ttf");
    QTest::newRow("backslashes") << QStringLiteral("..\\evil.ttf");
    QTest::newRow("drive") << QStringLiteral("C:\\evil.ttf");
    QTest::newRow("folder") << QStringLiteral("../evil/");
    QTest::newRow("nothing") << QStringLiteral(".");
}

void ZipArchiveTest::refusesEntriesOutside()
{
    QFETCH(QString, entry);
    QTemporaryDir folder;
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")),
                                      {QStringLiteral("first.ttf"), entry, QStringLiteral("last.ttf")});
    const QString target = folder.filePath(QStringLiteral("in/out"));
    ExtractFontArchiveCommand command(ZipArchive(path, QString()), target, false);
    QCOMPARE(run(command), int(AbstractAsynchronousCommand::Failed));
    QVERIFY(QFile::exists(target + QStringLiteral("/first.ttf"))); // what was written stays
    QVERIFY(!QFile::exists(target + QStringLiteral("/last.ttf")));
    QCOMPARE(QDir(folder.filePath(QStringLiteral("in"))).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("out")));
    QVERIFY(!QFile::exists(QStringLiteral("/tmp/kerval-evil.ttf")));
}

void ZipArchiveTest::doesNotFollowLinksOutOfTheFolder()
{
    QTemporaryDir folder;
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")),
                                      {QStringLiteral("link/x.ttf"), QStringLiteral("file.ttf")});
    const QDir target(folder.filePath(QStringLiteral("out")));
    const QString outside = folder.filePath(QStringLiteral("outside"));
    QVERIFY(QDir().mkpath(target.path()) && QDir().mkpath(outside));
    writeFile(folder.filePath(QStringLiteral("victim")), "untouched");
    QVERIFY(QFile::link(outside, target.filePath(QStringLiteral("link"))));
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("victim")), target.filePath(QStringLiteral("file.ttf"))));

    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read));
    QVERIFY(!archive.extract(QStringLiteral("link/x.ttf"), target.path(), false));
    QVERIFY(QDir(outside).isEmpty());
    // A link in the file's own place is replaced.
    QVERIFY(archive.extract(QStringLiteral("file.ttf"), target.path(), false));
    QCOMPARE(readFile(folder.filePath(QStringLiteral("victim"))), QByteArray("untouched"));
}

void ZipArchiveTest::namesBrokenArchives_data()
{
    QTest::addColumn<int>("damage"); // -1: a changed byte in the content, else the bytes that are left
    QTest::newRow("empty") << 0;
    QTest::newRow("no directory") << 60;
    QTest::newRow("wrong check sum") << -1;
}

void ZipArchiveTest::namesBrokenArchives()
{
    QFETCH(int, damage);
    QTemporaryDir folder;
    QByteArray content(20000, Qt::Uninitialized);
    for (int i = 0; i < content.size(); ++i)
        content[i] = char(i * i % 255);
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")), {QStringLiteral("x.ttf")}, content);
    QByteArray bytes = readFile(path);
    if (damage >= 0)
        bytes.truncate(damage);
    else
        bytes[bytes.size() / 2] = char(bytes.at(bytes.size() / 2) ^ 0x55);
    writeFile(path, bytes);

    const QString target = folder.filePath(QStringLiteral("out"));
    ExtractFontArchiveCommand command(ZipArchive(path, QString()), target, true);
    QCOMPARE(run(command), int(AbstractAsynchronousCommand::Failed));
    QVERIFY(!QFile::exists(target + QStringLiteral("/x.ttf")));
}

void ZipArchiveTest::copesWithManyEntries()
{
    QTemporaryDir folder;
    QStringList names;
    for (int i = 0; i < 66000; ++i) // more than an old archive can count
        names.append(QStringLiteral("%1/f%2.ttf").arg(i % 100).arg(i));
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")), names, "x");
    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read));
    QCOMPARE(archive.entries().size(), names.size());
    const QString target = folder.filePath(QStringLiteral("out"));
    for (int i = 0; i < names.size(); i += 13)
        QVERIFY(archive.extract(names.at(i), target, false));
    QCOMPARE(readFile(target + QLatin1Char('/') + names.at(13 * 5000)), QByteArray("x"));
}

void ZipArchiveTest::refusesWhatFitsOnNoDisk()
{
    QTemporaryDir folder;
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")), {QStringLiteral("x.ttf")});
    QByteArray bytes = readFile(path);
    // The uncompressed size in the directory, as 64 bits in an extra field: 2^60.
    const int directory = bytes.lastIndexOf(QByteArray("PK\x01\x02", 4));
    QVERIFY(directory > 0);
    bytes.replace(directory + 24, 4, QByteArray(4, '\xff'));
    bytes.replace(directory + 30, 2, QByteArray("\x0c\x00", 2));
    bytes.insert(directory + 46 + 5, QByteArray("\x01\x00\x08\x00\x00\x00\x00\x00\x00\x00\x00\x10", 12));
    const int end = bytes.lastIndexOf(QByteArray("PK\x05\x06", 4));
    bytes[end + 12] = char(bytes.at(end + 12) + 12);
    writeFile(path, bytes);

    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read));
    QVERIFY(!archive.extract(QStringLiteral("x.ttf"), folder.filePath(QStringLiteral("out")), false));
}

void ZipArchiveTest::readsArchivesBehindAProgram()
{
    QTemporaryDir folder;
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")), {QStringLiteral("x.ttf")});
    writeFile(path, QByteArray(1000, 'p') + readFile(path) + "what was appended");
    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read));
    QVERIFY(archive.extract(QStringLiteral("x.ttf"), folder.filePath(QStringLiteral("out")), false));
    QCOMPARE(readFile(folder.filePath(QStringLiteral("out/x.ttf"))), QByteArray("content"));
}

void ZipArchiveTest::copiesStartClosed()
{
    QTemporaryDir folder;
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")), {QStringLiteral("x.ttf")});
    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read));
    ZipArchive copy(archive);
    QCOMPARE(copy.mode(), int(ZipArchive::Closed));
    QVERIFY(copy.open(ZipArchive::Read));
    copy.close();
    QVERIFY(archive.extract(QStringLiteral("x.ttf"), folder.filePath(QStringLiteral("out")), false));
    QVERIFY(!ZipArchive(folder.path(), QString()).open(ZipArchive::Read));
}

void ZipArchiveTest::keepsFilesOfOneNameApart()
{
    QTemporaryDir folder;
    QStringList paths;
    for (const char* path : {"a/font.ttf", "b/font.ttf", "c/FONT.ttf", "d/font (2).ttf", "e/noext", "f/noext"}) {
        paths.append(folder.filePath(QLatin1String(path)));
        writeFile(paths.last(), path);
    }
    const QString path = folder.filePath(QStringLiteral("export.zip"));
    writeFile(path, "what was here before");
    ExportFontsCommand command(ZipArchive(path, QString()), paths);
    QSignalSpy progress(&command, &AbstractAsynchronousCommand::progressChanged);
    QCOMPARE(command.progressTotal(), paths.size());
    QCOMPARE(run(command), int(AbstractAsynchronousCommand::Finished));
    QCOMPARE(command.progressCurrent(), paths.size());

    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read));
    const QStringList expected = {QStringLiteral("font.ttf"),     QStringLiteral("font (2).ttf"),
                                  QStringLiteral("FONT (3).ttf"), QStringLiteral("font (2) (2).ttf"),
                                  QStringLiteral("noext"),        QStringLiteral("noext (2)")};
    QCOMPARE(archive.entries(), expected);
    const QString target = folder.filePath(QStringLiteral("out"));
    QVERIFY(archive.extract(expected.at(1), target, false));
    QCOMPARE(readFile(target + QStringLiteral("/font (2).ttf")), QByteArray("b/font.ttf"));
}

void ZipArchiveTest::failsOnAMissingFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("export.zip"));
    writeFile(folder.filePath(QStringLiteral("a.ttf")), "a");
    ExportFontsCommand command(ZipArchive(path, QString()),
                               {folder.filePath(QStringLiteral("a.ttf")), folder.filePath(QStringLiteral("gone.ttf"))});
    QCOMPARE(run(command), int(AbstractAsynchronousCommand::Failed));
    QCOMPARE(command.progressCurrent(), 1);
    ZipArchive archive(path, QString());
    QVERIFY(archive.open(ZipArchive::Read)); // what was packed can be read
    QCOMPARE(archive.entries(), QStringList(QStringLiteral("a.ttf")));

    ExportFontsCommand nowhere(ZipArchive(folder.filePath(QStringLiteral("no/such/folder.zip")), QString()), {});
    QCOMPARE(run(nowhere), int(AbstractAsynchronousCommand::Failed));
}

void ZipArchiveTest::stopsWhenCancelled()
{
    QTemporaryDir folder;
    QStringList names;
    for (int i = 0; i < 500; ++i)
        names.append(QStringLiteral("f%1.ttf").arg(i));
    const QString path = writeArchive(folder.filePath(QStringLiteral("a.zip")), names);
    const QString target = folder.filePath(QStringLiteral("out"));
    ExtractFontArchiveCommand command(ZipArchive(path, QString()), target, true);
    connect(
        &command, &AbstractAsynchronousCommand::progressChanged, &command,
        [&command](int, int current) {
            if (current == 3)
                command.cancel();
        },
        Qt::DirectConnection);
    QCOMPARE(run(command), int(AbstractAsynchronousCommand::Cancelled));
    QCOMPARE(QDir(target).entryList(QDir::Files).size(), 3);
}

KERVAL_TEST(ZipArchiveTest)
#include "ZipArchiveTest.moc"
