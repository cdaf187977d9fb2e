#include "tests/rest/httpclient.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using kerval::testing::readFile;
using kerval::testing::writeFile;

namespace {

const QStringList sampleFonts = {QStringLiteral("DejaVuSans.ttf"), QStringLiteral("DejaVuSans-Bold.ttf"),
                                 QStringLiteral("DejaVuSansMono.ttf")};
const QString systemFolder = QStringLiteral("/usr/share/fonts/truetype/dejavu/");
constexpr int patienceMs = 60000;

bool isAlive(qint64 process)
{
    // A process that was adopted by nobody stays as a zombie; it has ended all the same.
    const QByteArray status = readFile(QStringLiteral("/proc/%1/stat").arg(process));
    return !status.isEmpty() && !status.mid(status.lastIndexOf(')')).startsWith(") Z");
}

// A user's home with fonts of its own, on which the real launcher, service and adder work; nothing of the machine's own
// configuration is seen. Whatever still runs at the end is killed.
class Home
{
public:
    Home()
    {
        QDir(m_folder.path()).mkpath(QStringLiteral("fonts"));
        QDir(m_folder.path()).mkpath(QStringLiteral("run"));
        QFile::setPermissions(path(QStringLiteral("run")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        writeFile(path(QStringLiteral("fonts.conf")),
                  "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig><dir>" +
                      path(QStringLiteral("fonts")).toUtf8() + "</dir><cachedir>" +
                      path(QStringLiteral("cache/fontconfig")).toUtf8() +
                      "</cachedir><include ignore_missing=\"yes\">" +
                      path(QStringLiteral("config/fontconfig/conf.d")).toUtf8() + "</include></fontconfig>");
    }

    ~Home()
    {
        if (const qint64 process = servicePid())
            ::kill(pid_t(process), SIGKILL);
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }
    QString dataFile(const QString& name) const { return path(QStringLiteral("data/.kerval/") + name); }

    void addFont(const QString& name, const QString& as = QString()) const
    {
        QVERIFY2(QFile::copy(systemFolder + name, path(QStringLiteral("fonts/") + (as.isEmpty() ? name : as))),
                 qPrintable(name));
    }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("run")));
        environment.insert(QStringLiteral("FONTCONFIG_FILE"), path(QStringLiteral("fonts.conf")));
        return environment;
    }

    // What the launcher prints once it ends; its output is read through a pipe to the end, as plug-ins do.
    QByteArray launch(const QStringList& arguments = {})
    {
        QProcess launcher;
        launcher.setProcessEnvironment(environment());
        launcher.start(QStringLiteral(KERVAL_BIN_DIR "/kerval"), arguments);
        if (!launcher.waitForFinished(patienceMs))
            return "the launcher does not end";
        const QByteArray output = launcher.readAllStandardOutput();
        m_port = quint16(output.mid(6).trimmed().toInt());
        return output;
    }

    quint16 port() const { return m_port; }

    // The service's process, as its lock file names it; 0 when none runs.
    qint64 servicePid() const
    {
        const qint64 process = readFile(dataFile(QStringLiteral("service.lock"))).split('\n').value(0).toLongLong();
        return process > 0 && isAlive(process) ? process : 0;
    }

    HttpReply request(const QByteArray& method, const QString& path) const
    {
        return HttpClient(m_port).send(method, path);
    }

    // Names of the catalogued files, sorted.
    QStringList catalogued() const
    {
        QStringList names;
        const QJsonArray list = request("GET", QStringLiteral("/fonts")).json().array();
        for (const QJsonValue& font : list)
            names.append(font.toObject().value(QLatin1String("fileName")).toString().section(QLatin1Char('/'), -1));
        names.sort();
        return names;
    }

    void startScan() const { request("POST", QStringLiteral("/service/launchFontManager")); }

    bool waitUntilGone() const
    {
        return QTest::qWaitFor([this] { return servicePid() == 0; }, patienceMs);
    }

private:
    QTemporaryDir m_folder;
    quint16 m_port = 0;
};

QByteArray portLine(quint16 port)
{
    return "Port: " + QByteArray::number(port) + "\n ";
}

} // namespace

// The way a new user goes: start, scan, list, stop; and what may come between.
class EndToEndTest : public QObject
{
    Q_OBJECT

private slots:
    void fontsGoFromTheDiskToTheAnswer()
    {
        Home home;
        for (const QString& name : sampleFonts)
            home.addFont(name);
        home.addFont(sampleFonts.first(), QString::fromUtf8("Größe & 'Nr. 2'.TTF"));
        writeFile(home.path(QStringLiteral("fonts/broken.ttf")), QByteArray("\0\1\0\0broken", 10));
        writeFile(home.path(QStringLiteral("fonts/empty.otf")), QByteArray());
        const QStringList expected = QStringList(sampleFonts) << QString::fromUtf8("Größe & 'Nr. 2'.TTF");

        const QByteArray printed = home.launch({QStringLiteral("--async")});
        QCOMPARE(printed, portLine(home.port()));
        QVERIFY(home.port() >= 33000);
        const HttpReply description = home.request("GET", QStringLiteral("/service"));
        QCOMPARE(description.json().object().value(QLatin1String("version")).toInt(), 20701);
        QCOMPARE(QByteArray::fromHex(description.json().object().value(QLatin1String("user_id")).toString().toLatin1()),
                 home.path(QStringLiteral(".")).chopped(2).toUtf8());
        QCOMPARE(home.catalogued(), QStringList());

        home.startScan();
        QStringList sorted = expected;
        sorted.sort();
        QTRY_COMPARE_WITH_TIMEOUT(home.catalogued(), sorted, patienceMs);
        const QJsonArray page = home.request("GET", QStringLiteral("/fonts?page=1&page_size=2")).json().array();
        QVERIFY(page.size() <= expected.size());
        QVERIFY(readFile(home.dataFile(QStringLiteral("fontslog"))).contains("||||5||||"));

        // A second start finds the first and prints its port.
        const quint16 port = home.port();
        QCOMPARE(home.launch({QStringLiteral("--async")}), portLine(port));

        QCOMPARE(::kill(pid_t(home.servicePid()), SIGTERM), 0);
        QVERIFY(home.waitUntilGone());
        QVERIFY(readFile(home.dataFile(QStringLiteral("fontslog"))).trimmed().endsWith("||||8||||"));

        // The next start takes the same port and still knows the fonts.
        QCOMPARE(home.launch({QStringLiteral("--async")}), portLine(port));
        QCOMPARE(home.catalogued(), sorted);
    }

    void aKilledScanLosesNothing()
    {
        Home home;
        for (int i = 0; i < 30; ++i) {
            for (const QString& name : sampleFonts)
                home.addFont(name, QStringLiteral("%1-%2").arg(i).arg(name));
        }
        home.launch({QStringLiteral("--async")});
        home.startScan();
        QTRY_VERIFY_WITH_TIMEOUT(!readFile(home.dataFile(QStringLiteral("fontadder.ev"))).isEmpty(), patienceMs);
        QCOMPARE(::kill(pid_t(home.servicePid()), SIGKILL), 0);
        QVERIFY(home.waitUntilGone());

        home.launch({QStringLiteral("--async")});
        // What was queued waits for the user; a rescan picks it up as well as what is not known yet.
        const int known = home.catalogued().size();
        QVERIFY(known <= 90);
        home.startScan();
        if (known == 0)
            QTRY_COMPARE_WITH_TIMEOUT(home.catalogued().size(), 90, patienceMs);
    }

    void aForeignListenerIsPassedBy_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("one that never answers") << QStringLiteral("127.0.0.1");
        QTest::newRow("on another address") << QStringLiteral("127.0.0.2");
    }

    void aForeignListenerIsPassedBy()
    {
        QFETCH(QString, address);
        Home home;
        QTcpServer foreign;
        QVERIFY(foreign.listen(QHostAddress(address)));
        writeFile(home.dataFile(QStringLiteral("port.ini")),
                  "[General]\nPort=" + QByteArray::number(foreign.serverPort()) + "\n");
        home.launch({QStringLiteral("--async")});
        QVERIFY(home.port() != foreign.serverPort());
        QCOMPARE(home.request("GET", QStringLiteral("/service")).status, 200);
    }

    void anUnusableStoredPortCountsAsNone_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("negative") << QByteArray("-4");
        QTest::newRow("too large") << QByteArray("70000");
        QTest::newRow("no number") << QByteArray("\"abc\"");
    }

    void anUnusableStoredPortCountsAsNone()
    {
        QFETCH(QByteArray, stored);
        Home home;
        writeFile(home.dataFile(QStringLiteral("port.ini")), "[General]\nPort=" + stored + "\n");
        home.launch({QStringLiteral("--async")});
        QVERIFY(home.port() >= 33000);
    }

    void anEmptyLockFileIsNoInstance()
    {
        Home home;
        writeFile(home.dataFile(QStringLiteral("service.lock")), QByteArray());
        home.launch({QStringLiteral("--async")});
        QVERIFY(home.port() >= 33000);
        const qint64 process = home.servicePid();
        QVERIFY(process != 0);
        // That of a running service stays, whatever it says.
        QVERIFY(QFile::resize(home.dataFile(QStringLiteral("service.lock")), 0));
        QCOMPARE(home.launch({QStringLiteral("--async")}), portLine(home.port()));
        ::kill(pid_t(process), SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(!isAlive(process), patienceMs);
    }

    void foreignDatabasesAreMovedAside()
    {
        Home home;
        writeFile(home.dataFile(QStringLiteral("fms.db")), "this is no database, but somebody may want it back");
        writeFile(home.dataFile(QStringLiteral("user.db")), "nor is this");
        home.launch({QStringLiteral("--async")});
        QCOMPARE(home.request("GET", QStringLiteral("/groups")).status, 200);
        const QStringList kept = QDir(home.dataFile(QString())).entryList({QStringLiteral("*.db*")}, QDir::Files);
        int found = 0;
        for (const QString& name : kept) {
            const QByteArray content = readFile(home.dataFile(name));
            found += content.startsWith("this is no database") || content.startsWith("nor is this");
        }
        QCOMPARE(found, 2);
    }

    void aReadOnlyDataFolderIsToldByPortZero()
    {
        Home home;
        // A file where the folder should be: unwritable even for root.
        writeFile(home.path(QStringLiteral("data")), "in the way");
        QCOMPARE(home.launch({QStringLiteral("--async")}), QByteArray("Port: 0\n "));
    }
};

KERVAL_TEST(EndToEndTest)
#include "EndToEndTest.moc"
