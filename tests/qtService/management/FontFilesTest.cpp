#include "fontfile/KrvFontFile.h"
#include "qtService/app/core/PathCodec.h"
#include "qtService/management/FindFontFilesCommand.h"
#include "qtService/management/FontQueue.h"
#include "qtService/management/systemfm/FontPlaces.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace kerval::testing;

namespace {

struct Found
{
    QStringList files; // in the order of the signals
    QList<int> faces;
    QHash<QString, int> failed;
};

Found search(const QStringList& paths, int maxDepth = 0)
{
    Found found;
    FindFontFilesCommand command(paths, maxDepth);
    QObject::connect(
        &command, &FindFontFilesCommand::fontFilesFound, &command,
        [&](const QList<QPair<QString, int>>& faces) {
            found.files.append(faces.first().first);
            found.faces.append(faces.size());
        },
        Qt::DirectConnection);
    QObject::connect(
        &command, &FindFontFilesCommand::failedFontFileFound, &command,
        [&](const QString& file, int error) { found.failed.insert(file, error); }, Qt::DirectConnection);
    command.start();
    command.waitForFinished();
    if (command.state() != FindFontFilesCommand::Finished)
        qFatal("the search did not finish");
    return found;
}

// A collection of the same face twice: both entries point at its tables.
QByteArray collectionOf(const QByteArray& font)
{
    QByteArray header("ttcf\x00\x01\x00\x00\x00\x00\x00\x02\x00\x00\x00\x14\x00\x00\x00\x14", 20);
    QByteArray moved = font;
    uchar* const data = reinterpret_cast<uchar*>(moved.data());
    for (int i = 0; i < qFromBigEndian<quint16>(data + 4); ++i) {
        uchar* const offset = data + 12 + 16 * i + 8;
        qToBigEndian<quint32>(qFromBigEndian<quint32>(offset) + 20, offset);
    }
    return header + moved;
}

} // namespace

class FontFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void findsEveryFontOnceInOrder();
    void tellsWhyAFontIsRejected();
    void passesOverWhatIsNoFont();
    void searchesAsDeepAsAsked();
    void followsLinksOnce();
    void keepsOutOfOurOwnFolders();
    void keepsTheSpellingOfNames();
    void stopsWhenCancelled();
    void queueKeepsOrderAndSkipsDoubles();
    void queueFileCarriesAnyName();
    void queueFileMayBeDamaged();

private:
    QByteArray m_font;
};

void FontFilesTest::initTestCase()
{
    m_font = readFile(systemFontFiles(1).first());
}

void FontFilesTest::findsEveryFontOnceInOrder()
{
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("b/two.TTC")), collectionOf(m_font));
    writeFile(folder.filePath(QStringLiteral("a/Arial.TTF")), m_font);
    writeFile(folder.filePath(QStringLiteral("c.otf")), m_font);
    writeFile(folder.filePath(QStringLiteral(".hidden.ttf")), m_font);
    const Found found = search({folder.path() + QStringLiteral("//"), folder.filePath(QStringLiteral("a/../c.otf"))});
    QCOMPARE(found.files,
             QStringList({folder.filePath(QStringLiteral("a/Arial.TTF")), folder.filePath(QStringLiteral("b/two.TTC")),
                          folder.filePath(QStringLiteral("c.otf")), folder.filePath(QStringLiteral("c.otf"))}));
    QCOMPARE(found.faces, QList<int>({1, 2, 1, 1}));
    QVERIFY(found.failed.isEmpty());
}

void FontFilesTest::tellsWhyAFontIsRejected()
{
    QTemporaryDir folder;
    const QString hidden = folder.filePath(QStringLiteral("hidden.ttf"));
    const QString nameless = folder.filePath(QStringLiteral("nameless.ttf"));
    writeFile(hidden, renamedFont(m_font, '.'));
    writeFile(nameless, namelessFont(m_font));
    // "D javuSans" is no PostScript name, but it is not empty either.
    const QString odd = folder.filePath(QStringLiteral("odd.ttf"));
    writeFile(odd, oddlyNamedFont(m_font, ' '));
    const Found found = search({folder.path()});
    QCOMPARE(found.files, QStringList(odd));
    KrvFontFile file(odd);
    QVERIFY(file.open(0));
    const QString name = file.sfntName(6, 3, 0x409, false);
    QVERIFY(name.startsWith(QLatin1String("D ja")));
    QVERIFY(file.postScriptName().isEmpty());
    QCOMPARE(file.sfntName(6, 3, 0x409, false), name);
    QCOMPARE(found.failed.value(hidden), int(FindFontFilesCommand::HiddenFontName));
    QCOMPARE(found.failed.value(nameless), int(FindFontFilesCommand::EmptyPostScriptName));
    QCOMPARE(found.failed.size(), 2);
}

void FontFilesTest::passesOverWhatIsNoFont()
{
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("text.txt")), "text");
    writeFile(folder.filePath(QStringLiteral("text.ttf")), "text");
    writeFile(folder.filePath(QStringLiteral("empty.ttf")), QByteArray());
    writeFile(folder.filePath(QStringLiteral("cut.ttf")), m_font.left(100));
    writeFile(folder.filePath(QStringLiteral("renamed.txt")), m_font);
    const QByteArray pipe = QFile::encodeName(folder.filePath(QStringLiteral("pipe.ttf")));
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("pipe.ttf")), folder.filePath(QStringLiteral("to-pipe.ttf"))));
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("nowhere")), folder.filePath(QStringLiteral("dangling.ttf"))));
    writeFile(folder.filePath(QStringLiteral("closed/a.ttf")), m_font);
    QFile::setPermissions(folder.filePath(QStringLiteral("closed")), QFile::Permissions());
    writeFile(folder.filePath(QStringLiteral("good.ttf")), m_font);

    const Found found = search({folder.path(), folder.filePath(QStringLiteral("pipe.ttf")),
                                folder.filePath(QStringLiteral("gone.ttf")), QString()});
    QFile::setPermissions(folder.filePath(QStringLiteral("closed")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    // The superuser reads closed folders.
    QVERIFY(found.files.contains(folder.filePath(QStringLiteral("good.ttf"))));
    QCOMPARE(found.files.size(), ::geteuid() == 0 ? 2 : 1);
    QVERIFY(found.failed.isEmpty());
}

void FontFilesTest::searchesAsDeepAsAsked()
{
    QTemporaryDir folder;
    for (const char* name : {"0.ttf", "1/1.ttf", "1/2/2.ttf"})
        writeFile(folder.filePath(QLatin1String(name)), m_font);
    QCOMPARE(search({folder.path()}, 1).files.size(), 2);
    QCOMPARE(search({folder.path()}, 2).files.size(), 3);
    QCOMPARE(search({folder.path()}, 0).files.size(), 3);
    QCOMPARE(search({folder.path()}, -1).files.size(), 3);
}

void FontFilesTest::followsLinksOnce()
{
    QTemporaryDir folder;
    QTemporaryDir other;
    const QDir fonts(folder.path());
    writeFile(fonts.filePath(QStringLiteral("real/a.ttf")), m_font);
    writeFile(other.filePath(QStringLiteral("sub/b.ttf")), m_font);
    // To itself, upwards, to a sibling that comes later, and twice to a folder elsewhere.
    QVERIFY(QFile::link(folder.path(), fonts.filePath(QStringLiteral("real/loop"))));
    QVERIFY(QFile::link(fonts.filePath(QStringLiteral("real")), fonts.filePath(QStringLiteral("alias"))));
    QVERIFY(QFile::link(fonts.filePath(QStringLiteral("real/a.ttf")), fonts.filePath(QStringLiteral("a-link.ttf"))));
    QVERIFY(QFile::link(other.path(), fonts.filePath(QStringLiteral("one"))));
    QVERIFY(QFile::link(other.path(), fonts.filePath(QStringLiteral("two"))));
    const Found found = search({folder.path()});
    QCOMPARE(found.files, QStringList({fonts.filePath(QStringLiteral("real/a.ttf")),
                                       fonts.filePath(QStringLiteral("one/sub/b.ttf"))}));
    // Asked for by name, a link is a file like any other.
    QCOMPARE(search({fonts.filePath(QStringLiteral("a-link.ttf"))}).files.size(), 1);
}

void FontFilesTest::keepsOutOfOurOwnFolders()
{
    const auto places = kerval::systemfm::FontPlaces::ofUser();
    QTemporaryDir session;
    writeFile(places.placed + QStringLiteral("/00/copy.ttf"), m_font);
    writeFile(places.userFonts + QStringLiteral("/own.ttf"), m_font);
    writeFile(session.filePath(QStringLiteral("00/link.ttf")), m_font);
    QVERIFY(QFile::link(session.path(), places.sessionLink));
    const Found found = search({places.userFonts, places.placed + QStringLiteral("/00/copy.ttf"), session.path()});
    QCOMPARE(found.files, QStringList(places.userFonts + QStringLiteral("/own.ttf")));
    QVERIFY(QDir(places.userFonts).removeRecursively());
}

void FontFilesTest::keepsTheSpellingOfNames()
{
    QTemporaryDir folder;
    const QString composed = folder.filePath(QStringLiteral("\u00e9.ttf"));
    const QString decomposed = folder.filePath(QStringLiteral("e\u0301x.ttf"));
    writeFile(composed, m_font);
    writeFile(decomposed, m_font);
    writeFile(folder.filePath(QStringLiteral("Case.ttf")), m_font);
    writeFile(folder.filePath(QStringLiteral("case.ttf")), m_font);
    writeFile(folder.filePath(QStringLiteral("line\nbreak |||0x \".ttf")), m_font);
    const QByteArray invalid = QFile::encodeName(folder.path()) + "/caf\xe9.ttf";
    FILE* const file = std::fopen(invalid.constData(), "wb");
    QVERIFY(file);
    std::fwrite(m_font.constData(), 1, size_t(m_font.size()), file);
    std::fclose(file);

    const Found found = search({folder.path()});
    QCOMPARE(found.files.size(), 5);
    QVERIFY(found.files.contains(composed) && found.files.contains(decomposed));
    QCOMPARE(search({folder.filePath(QStringLiteral("e\u0301.ttf"))}).files, QStringList(composed));
    ::unlink(invalid.constData());
}

void FontFilesTest::stopsWhenCancelled()
{
    QTemporaryDir folder;
    for (int i = 0; i < 50; ++i)
        writeFile(folder.filePath(QStringLiteral("%1.ttf").arg(i)), m_font);
    FindFontFilesCommand command({folder.path()}, 0);
    int found = 0;
    connect(
        &command, &FindFontFilesCommand::fontFilesFound, &command,
        [&] {
            if (++found == 5)
                command.cancel();
        },
        Qt::DirectConnection);
    command.start();
    command.waitForFinished();
    QCOMPARE(found, 5);
    QCOMPARE(command.state(), FindFontFilesCommand::Cancelled);
}

void FontFilesTest::queueKeepsOrderAndSkipsDoubles()
{
    FontQueue queue;
    const QString file = QStringLiteral("/a.ttf");
    QVERIFY(queue.append({file, 1}));
    QVERIFY(queue.append({file, 0}));
    QVERIFY(!queue.append({file, 1}));
    QCOMPARE(queue.takeFirst(), FontQueue::Face(file, 1));
    QVERIFY(queue.append({file, 1}));
    QCOMPARE(queue.faces(), QList<FontQueue::Face>({{file, 0}, {file, 1}}));
    queue.clear();
    QVERIFY(queue.isEmpty() && !queue.contains({file, 0}));
}

void FontFilesTest::queueFileCarriesAnyName()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("fontadder.ev"));
    const QList<FontQueue::Face> faces = {
        {QStringLiteral("/a\nb.ttf"), 0}, {QStringLiteral("/\u4e00 |||.ttc"), 31}, {QStringLiteral("/0x41.ttf"), 2}};
    QVERIFY(FontQueue::save(path, faces));
    QVERIFY(readFile(path).endsWith("\n0x32\n"));
    QCOMPARE(FontQueue::load(path), faces);
    QVERIFY(FontQueue::load(folder.filePath(QStringLiteral("missing"))).isEmpty());
    QVERIFY(!FontQueue::save(folder.filePath(QStringLiteral("no/folder")), faces));
}

void FontFilesTest::queueFileMayBeDamaged()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("fontadder.ev"));
    writeFile(path, "/plain.ttf\n3\n0x2f612e747466\nno number\n\n0\n/neg.ttf\n-1\n" +
                        krv::encodePath(QStringLiteral("/b")) + "\n0x30\n0x2f63");
    QCOMPARE(FontQueue::load(path),
             QList<FontQueue::Face>({{QStringLiteral("/plain.ttf"), 3}, {QStringLiteral("/b"), 0}}));
}

KERVAL_TEST(FontFilesTest)
#include "FontFilesTest.moc"
