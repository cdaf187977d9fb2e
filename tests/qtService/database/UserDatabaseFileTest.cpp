#include "qtService/database/KrvUserDatabase.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

using kerval::testing::readFile;
using kerval::testing::writeFile;

namespace {

const QString fontA = QStringLiteral("0000000000000000000000000000000000000000aa");
const QString fontB = QStringLiteral("0000000000000000000000000000000000000000bb");

// Plain SQLite, without anything of ours between.
class PlainFile
{
public:
    explicit PlainFile(const QString& fileName)
        : database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("plain")))
    {
        database.setDatabaseName(fileName);
        database.open();
    }
    ~PlainFile()
    {
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("plain"));
    }
    bool run(const QString& statement) { return QSqlQuery(database).exec(statement); }
    int number(const QString& statement)
    {
        QSqlQuery query(database);
        return query.exec(statement) && query.next() ? query.value(0).toInt() : -1;
    }

    QSqlDatabase database;
};

void makeOldFile(const QString& fileName, int version)
{
    const QString source =
        QStringLiteral(KERVAL_SOURCE_DIR "/tests/qtService/database/data/user-version%1.sql").arg(version);
    PlainFile file(fileName);
    const QStringList statements = QString::fromUtf8(readFile(source)).split(QStringLiteral("\n--\n"));
    for (const QString& statement : statements)
        QVERIFY2(file.run(statement), qPrintable(statement));
}

} // namespace

// What opening does to the file, whatever it finds there.
class UserDatabaseFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        m_fileName = m_folder->filePath(QStringLiteral("user.db"));
    }

    void makesAMissingOrEmptyFile_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("missing") << false;
        QTest::newRow("left empty by a killed start") << true;
    }

    void makesAMissingOrEmptyFile()
    {
        QFETCH(bool, exists);
        if (exists)
            writeFile(m_fileName, QByteArray());
        KrvUserDatabase database;
        QVERIFY(database.open(m_fileName));
        QCOMPARE(database.userVersion(), 6);
        QVERIFY(database.setAsideFile().isEmpty());
        QVERIFY(database.addGroup(QStringLiteral("first"), 0) > 0);
        PlainFile file(m_fileName);
        QCOMPARE(file.number(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'trigger'")), 5);
    }

    void upgradesWithNothingLost_data()
    {
        QTest::addColumn<int>("version");
        QTest::newRow("version 3") << 3;
        QTest::newRow("version 4") << 4;
        QTest::newRow("version 5") << 5;
    }

    void upgradesWithNothingLost()
    {
        QFETCH(int, version);
        makeOldFile(m_fileName, version);
        {
            KrvUserDatabase database;
            QVERIFY(database.open(m_fileName));
            QCOMPARE(database.userVersion(), 6);
            QCOMPARE(database.ranking(fontA), 5);
            QCOMPARE(database.note(fontA), QStringLiteral("Für die Überschrift; 100 % \"gut\""));
            QCOMPARE(database.isHidden(fontA), false);
            QCOMPARE(database.isHidden(fontB), version >= 4);
            QCOMPARE(database.fontData(fontA).familyName, version >= 5 ? QStringLiteral("Hausschrift") : QString());
            QCOMPARE(database.groupName(7), QStringLiteral("Plakate"));
            QCOMPARE(database.groupName(8), QStringLiteral("O'Neill \"quoted\""));
            QCOMPARE(database.groups().size(), 2);
            QCOMPARE(database.groupFontHashes({7}), QStringList{fontA});
            QCOMPARE(database.groupFontHashes({8}), QStringList{fontB});

            QVERIFY(database.setHidden({fontA}, true));
            QVERIFY(database.setUserDefinedFamilyName({fontB}, QStringLiteral("new")));
            QVERIFY(database.addFontsToGroup({QStringLiteral("new font")}, 7));
        }
        PlainFile file(m_fileName);
        QCOMPARE(file.number(QStringLiteral("SELECT COUNT(*) FROM tag")), 1);
        QCOMPARE(file.number(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name IN ('on_insert_font', "
                                            "'index_id_orig_font')")),
                 0);
    }

    void keepsTheFileOfTheFirstUpgrade()
    {
        makeOldFile(m_fileName, 3);
        const QByteArray old = readFile(m_fileName);
        {
            KrvUserDatabase database;
            QVERIFY(database.open(m_fileName));
        }
        QCOMPARE(readFile(m_fileName + QStringLiteral(".version3")), old);
        // An older file put back by hand does not overwrite what was kept.
        writeFile(m_fileName + QStringLiteral(".version3"), "kept");
        QVERIFY(QFile::remove(m_fileName));
        makeOldFile(m_fileName, 3);
        KrvUserDatabase database;
        QVERIFY(database.open(m_fileName));
        QCOMPARE(readFile(m_fileName + QStringLiteral(".version3")), QByteArray("kept"));
    }

    void finishesAnUpgradeThatStoppedHalfWay()
    {
        makeOldFile(m_fileName, 3);
        {
            PlainFile file(m_fileName);
            QVERIFY(file.run(QStringLiteral("ALTER TABLE font ADD COLUMN hidden BOOL DEFAULT FALSE")));
            QVERIFY(file.run(QStringLiteral("drop trigger on_insert_font")));
        }
        KrvUserDatabase database;
        QVERIFY(database.open(m_fileName));
        QCOMPARE(database.userVersion(), 6);
        QCOMPARE(database.ranking(fontA), 5);
    }

    void leavesTheOldFileUsableWhenAStepFails()
    {
        makeOldFile(m_fileName, 4);
        {
            PlainFile file(m_fileName);
            QVERIFY(file.run(QStringLiteral("CREATE VIEW user_defined_family AS SELECT 1 AS id")));
        }
        const QByteArray old = readFile(m_fileName);
        {
            KrvUserDatabase database;
            QVERIFY(!database.open(m_fileName));
            QVERIFY(!database.setHidden({fontA}, true));
            QCOMPARE(database.addGroup(QStringLiteral("x"), 0), 0);
        }
        QCOMPARE(readFile(m_fileName), old);
    }

    void leavesOtherVersionsAlone_data()
    {
        QTest::addColumn<int>("version");
        QTest::newRow("without a version") << 0;
        QTest::newRow("current") << 6;
        QTest::newRow("of a later program") << 9;
    }

    void leavesOtherVersionsAlone()
    {
        QFETCH(int, version);
        makeOldFile(m_fileName, 5);
        {
            PlainFile file(m_fileName);
            QVERIFY(file.run(QStringLiteral("PRAGMA user_version = %1").arg(version)));
        }
        KrvUserDatabase database;
        QVERIFY(database.open(m_fileName));
        QCOMPARE(database.userVersion(), version);
        QCOMPARE(QDir(m_folder->path()).entryList({QStringLiteral("*.version*")}), QStringList());
        QCOMPARE(database.fontData(fontA).familyName, QStringLiteral("Hausschrift"));
    }

    void setsADamagedFileAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QString sound = m_sound.filePath(QStringLiteral("sound.db"));
        if (!QFile::exists(sound))
            makeOldFile(sound, 5);
        const QByteArray bytes = readFile(sound);
        QTest::newRow("text") << QByteArray("This is not a database, but long enough to be looked at. ").repeated(40);
        QTest::newRow("few bytes") << QByteArray("x");
        QTest::newRow("cut off") << bytes.left(bytes.size() / 2);
        QByteArray overwritten = bytes;
        for (int at = 4096; at < overwritten.size(); at += 4096)
            overwritten.replace(at, 64, QByteArray(64, '\xA5'));
        QTest::newRow("pages overwritten") << overwritten;
    }

    void setsADamagedFileAside()
    {
        QFETCH(QByteArray, content);
        writeFile(m_fileName, content);
        KrvUserDatabase database;
        QVERIFY(database.open(m_fileName));
        QVERIFY(!database.setAsideFile().isEmpty());
        QVERIFY(database.setAsideFile().contains(QDate::currentDate().toString(Qt::ISODate)));
        QCOMPARE(readFile(database.setAsideFile()), content);
        QCOMPARE(database.userVersion(), 6);
        const int before = database.groups().size();
        QVERIFY(database.addGroup(QStringLiteral("new"), 0) > 0);
        QCOMPARE(database.groups().size(), before + 1);
    }

    // Whatever page is bad, or where the file ends: what the others hold comes back, and nothing points nowhere.
    void takesOverWhatCanBeReadOfADamagedFile()
    {
        constexpr int count = 400;
        const auto hash = [](int i) { return QStringLiteral("%1").arg(i, 42, 10, QLatin1Char('0')); };
        const QString sound = m_folder->filePath(QStringLiteral("sound.db"));
        {
            KrvUserDatabase database;
            QVERIFY(database.open(sound));
            QVERIFY(database.beginTransaction());
            for (int i = 0; i < count; ++i) {
                const int group = database.addGroup(QStringLiteral("group %1").arg(i), i / 2);
                QVERIFY(group > 0 && database.setNote({hash(i)}, QString(100, QLatin1Char('n')) + QString::number(i)));
                QVERIFY(database.addFontsToGroup({hash(i), hash(0)}, group));
            }
            QVERIFY(database.endTransaction(true));
        }
        const QByteArray bytes = readFile(sound);
        const auto notesIn = [&](const KrvUserDatabase& database) {
            int found = 0;
            for (int i = 0; i < count; ++i)
                found += database.note(hash(i)).endsWith(QLatin1Char('n') + QString::number(i));
            return found;
        };
        int files = 0;
        int groups = 0;
        int notes = 0;
        for (int at = 8192; at < bytes.size(); at += 4096) {
            QByteArray damaged = bytes;
            damaged.replace(at, 4096, QByteArray(4096, '\xA5'));
            if (files % 4 == 3)
                damaged.truncate(at);
            writeFile(m_fileName, damaged);
            {
                KrvUserDatabase database;
                QVERIFY(database.open(m_fileName));
                if (database.setAsideFile().isEmpty())
                    continue; // a page that is not in use
                QCOMPARE(readFile(database.setAsideFile()), damaged);
                ++files;
                groups += database.groups().size();
                notes += notesIn(database);
            }
            {
                PlainFile file(m_fileName);
                QCOMPARE(file.number(QStringLiteral("SELECT COUNT(*) FROM belongs_to WHERE id_font NOT IN "
                                                    "(SELECT id FROM font) OR id_group NOT IN (SELECT id FROM "
                                                    "`group`)")),
                         0);
                QCOMPARE(file.number(QStringLiteral("PRAGMA user_version")), 6);
            }
            QVERIFY(QFile::remove(m_fileName));
        }
        QVERIFY(files > 20);
        QVERIFY2(groups > files * count * 7 / 10, qPrintable(QString::number(double(groups) / files)));
        QVERIFY2(notes > files * count * 6 / 10, qPrintable(QString::number(double(notes) / files)));

        // Leaves of the notes at the beginning, in the middle and at the end, which the number of rows cannot tell.
        {
            PlainFile file(sound);
            QVERIFY(file.run(QStringLiteral("UPDATE sqlite_sequence SET seq = 9223372036854775807")));
        }
        QByteArray damaged = readFile(sound);
        for (int i : {20, 200, 399}) {
            const int at = damaged.indexOf(QByteArray(100, 'n') + QByteArray::number(i)) / 4096 * 4096;
            damaged.replace(at, 4096, QByteArray(4096, '\xA5'));
        }
        writeFile(m_fileName, damaged);
        KrvUserDatabase database;
        QVERIFY(database.open(m_fileName));
        QVERIFY(database.hasSalvaged());
        QCOMPARE(database.groups().size(), count);
        QVERIFY2(notesIn(database) > count * 6 / 10, qPrintable(QString::number(notesIn(database))));
    }

    void triesAgainWhenThereWasNoRoomToReadADamagedFile()
    {
        makeOldFile(m_fileName, 5);
        QByteArray damaged = readFile(m_fileName);
        damaged.replace(damaged.size() - 4096, 64, QByteArray(64, '\xA5'));
        writeFile(m_fileName, damaged);
        // Stands where the copy is to be read from, as nothing else can be made to fail on every machine.
        const QString obstacle = m_fileName + QStringLiteral(".damaged.copy");
        QVERIFY(QDir().mkdir(obstacle));
        for (int attempt = 0; attempt < 2; ++attempt) {
            KrvUserDatabase database;
            QVERIFY(!database.open(m_fileName));
            QVERIFY(!database.isOpen());
        }
        QCOMPARE(readFile(m_fileName + QStringLiteral(".damaged")), damaged);

        QVERIFY(QDir().rmdir(obstacle));
        KrvUserDatabase database;
        QVERIFY(database.open(m_fileName));
        QVERIFY(database.hasSalvaged());
        QVERIFY(database.setAsideFile().contains(QLatin1String(".damaged-")));
        QCOMPARE(readFile(database.setAsideFile()), damaged);
        QCOMPARE(database.groupName(7), QStringLiteral("Plakate"));
        QCOMPARE(QDir(m_folder->path()).entryList({QStringLiteral("*.damaged*")}, QDir::Files).size(), 1);
    }

    void reportsWhatItCannotOpen()
    {
        QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("user.db")));
        KrvUserDatabase database;
        QVERIFY(!database.open(m_fileName));
        QVERIFY(!database.isOpen());
        QVERIFY(database.setAsideFile().isEmpty());
        QVERIFY(QFileInfo(m_fileName).isDir());
        QVERIFY(!database.addFontsToGroup({fontA}, 1));
        QCOMPARE(database.userVersion(), 0);
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QTemporaryDir m_sound;
    QString m_fileName;
};

KERVAL_TEST(UserDatabaseFileTest)
#include "UserDatabaseFileTest.moc"
