#include "qtService/database/DatabaseTableGateway.h"
#include "qtService/database/FontDatabase.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QFile>
#include <QSet>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

using kerval::testing::readFile;
using kerval::testing::writeFile;

namespace {

StaticFontPtr fontAt(const QString& path)
{
    auto font = StaticFontPtr::create();
    font->setFileName(path);
    return font;
}

void run(const QString& fileName, const QStringList& statements)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("by hand"));
        database.setDatabaseName(fileName);
        QVERIFY(database.open());
        QSqlQuery query(database);
        for (const QString& statement : statements)
            QVERIFY2(query.exec(statement), qPrintable(statement));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("by hand"));
}

void runInThread(const std::function<void()>& work)
{
    const QScopedPointer<QThread> thread(QThread::create(work));
    thread->start();
    thread->wait();
}

} // namespace

class TestFontDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        m_file = m_folder->filePath(QStringLiteral("fms.db"));
    }

    void newFileGetsBothTables()
    {
        const FontDatabase database(m_file);
        QCOMPARE(database.fileState(), FontDatabase::Created);
        const QSqlDatabase connection = database.connectionFactory()->database();
        const QSqlRecord font = connection.record(QStringLiteral("font"));
        QCOMPARE(font.count(), 63);
        for (int i = 0; i < font.count(); ++i)
            QCOMPARE(database.fontColumn(font.fieldName(i)), FontDatabase::FontTableColumn(i));
        QCOMPARE(font.fieldName(62), QStringLiteral("is_purchased"));
        QCOMPARE(connection.record(QStringLiteral("feature")).count(), 3);
        QCOMPARE(database.fontColumnName(FontDatabase::filter_bits), QStringLiteral("filter_bits"));
        QCOMPARE(database.plainFontColumns().size(), 19);
        QSqlQuery query(connection);
        QVERIFY(query.exec(QStringLiteral("PRAGMA user_version")) && query.next());
        QCOMPARE(query.value(0).toInt(), 1);
        QVERIFY(query.exec(QStringLiteral("PRAGMA journal_mode")) && query.next());
        QCOMPARE(query.value(0).toString(), QStringLiteral("wal"));
    }

    void databaseWithTablesIsLeftAlone()
    {
        run(m_file, {QStringLiteral("CREATE TABLE other (x)")});
        {
            const FontDatabase database(m_file);
            QCOMPARE(database.connectionFactory()->database().tables(), QStringList{QStringLiteral("other")});
        }
        // The service, which cannot work with it, has it moved first.
        QString moved;
        QCOMPARE(FontDatabase::prepareFile(m_file, &moved), FontDatabase::OutdatedReplaced);
        QVERIFY(QFile::exists(moved));
        QVERIFY(!QFile::exists(m_file));
    }

    void reopenedCatalogueKeepsItsFonts()
    {
        {
            RelationalFontRepositoryStrategy strategy(QSharedPointer<FontDatabase>::create(m_file));
            QVERIFY(strategy.addFont(fontAt(QStringLiteral("/f/a.ttf"))));
        }
        const auto database = QSharedPointer<FontDatabase>::create(m_file);
        QCOMPARE(database->fileState(), FontDatabase::Opened);
        QCOMPARE(RelationalFontRepositoryStrategy(database).fontCount(), 1);
    }

    void fileThatIsNoDatabaseIsMovedAside()
    {
        writeFile(m_file, QByteArray("this is no database, but long enough to look at. ").repeated(100));
        const QByteArray content = readFile(m_file);
        const auto database = QSharedPointer<FontDatabase>::create(m_file);
        QCOMPARE(database->fileState(), FontDatabase::DamagedReplaced);
        QCOMPARE(readFile(database->movedFileName()), content);
        QVERIFY(RelationalFontRepositoryStrategy(database).addFont(StaticFontPtr::create()));
    }

    // Damage behind the header shows when the table is read. What can still be read of it is kept for the rescan.
    void damagedCatalogueIsReplacedAndItsPathsAreKept()
    {
        constexpr int count = 3000;
        makeCatalogueWithABadPage(count);
        const auto database = QSharedPointer<FontDatabase>::create(m_file);
        RelationalFontRepositoryStrategy strategy(database);
        QVERIFY(strategy.fonts().isEmpty());
        QCOMPARE(database->fileState(), FontDatabase::DamagedReplaced);
        QVERIFY(QFile::exists(database->movedFileName()));
        const QList<QByteArray> lines =
            readFile(m_folder->filePath(QStringLiteral("olddbfontfiles.ev"))).trimmed().split('\n');
        QVERIFY2(lines.size() > count * 9 / 10 && lines.size() < count, qPrintable(QString::number(lines.size())));
        QVERIFY(lines.contains("/fonts/0.ttf"));
        QVERIFY(lines.contains("/fonts/2999.ttf"));

        QVERIFY(strategy.addFont(fontAt(QStringLiteral("/fonts/new.ttf"))));
        QCOMPARE(strategy.fonts().size(), 1);
    }

    // It cannot be replaced under another thread's connection, and what a scan brought would be there twice.
    void nothingIsAddedToAnUnreadCatalogue()
    {
        makeCatalogueWithABadPage(3000);
        const auto database = QSharedPointer<FontDatabase>::create(m_file);
        RelationalFontRepositoryStrategy strategy(database);
        runInThread([&] { strategy.fonts(); });
        QCOMPARE(database->fileState(), FontDatabase::CannotOpen);
        QVERIFY(!strategy.addFont(fontAt(QStringLiteral("/fonts/new.ttf"))));
    }

    // Features are not read at the start. Fonts could be neither added nor removed for ever after.
    void damageMetInUseIsLookedIntoAtTheNextStart()
    {
        makeCatalogue(100);
        int page = 0;
        {
            const FontDatabase database(m_file);
            QSqlQuery query(database.connectionFactory()->database());
            QVERIFY(query.exec(QStringLiteral("SELECT rootpage FROM sqlite_master WHERE name = "
                                              "'index_feature_font_id'")));
            QVERIFY(query.next());
            page = query.value(0).toInt();
        }
        QByteArray bytes = readFile(m_file);
        bytes.replace((page - 1) * 4096, 4096, QByteArray(4096, char(0xA5)));
        writeFile(m_file, bytes);
        {
            const auto database = QSharedPointer<FontDatabase>::create(m_file);
            QCOMPARE(database->fileState(), FontDatabase::Opened);
            RelationalFontRepositoryStrategy strategy(database);
            const QList<StaticFontPtr> fonts = strategy.fonts();
            QCOMPARE(fonts.size(), 100);
            QVERIFY(!strategy.removeFonts(fonts));
        }
        const auto database = QSharedPointer<FontDatabase>::create(m_file);
        QCOMPARE(database->fileState(), FontDatabase::DamagedReplaced);
        QVERIFY(RelationalFontRepositoryStrategy(database).addFont(fontAt(QStringLiteral("/fonts/new.ttf"))));
        QVERIFY(readFile(m_folder->filePath(QStringLiteral("olddbfontfiles.ev"))).contains("/fonts/99.ttf\n"));
        QCOMPARE(FontDatabase(m_file).fileState(), FontDatabase::Opened);
    }

    void catalogueOfAnotherFormatIsReplaced_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("newer version") << "PRAGMA user_version = 2";
        QTest::newRow("missing column") << "ALTER TABLE font DROP COLUMN filehash";
    }

    void catalogueOfAnotherFormatIsReplaced()
    {
        QFETCH(QString, change);
        {
            RelationalFontRepositoryStrategy strategy(QSharedPointer<FontDatabase>::create(m_file));
            QVERIFY(strategy.addFonts({fontAt(QStringLiteral("/f/a.ttc")), fontAt(QStringLiteral("/f/a.ttc")),
                                       fontAt(QStringLiteral("/f/b\nc.ttf"))}));
        }
        run(m_file, {change});
        writeFile(m_folder->filePath(QStringLiteral("olddbfontfiles.ev")), "/f/waiting.ttf\n");
        const FontDatabase database(m_file);
        QCOMPARE(database.fileState(), FontDatabase::OutdatedReplaced);
        QCOMPARE(readFile(m_folder->filePath(QStringLiteral("olddbfontfiles.ev"))),
                 QByteArray("/f/waiting.ttf\n/f/a.ttc\n"));
    }

    void staleJournalIsNotAppliedToTheNewFile()
    {
        writeFile(m_file, QByteArray("no database at all ").repeated(500));
        writeFile(m_file + QStringLiteral("-wal"), QByteArray("left over"));
        const FontDatabase database(m_file);
        QCOMPARE(database.fileState(), FontDatabase::DamagedReplaced);
        QCOMPARE(database.connectionFactory()->database().tables().count(QStringLiteral("font")), 1);
    }

    void unusableFolderIsTold()
    {
        const FontDatabase database(m_folder->filePath(QStringLiteral("missing/fms.db")));
        QCOMPARE(database.fileState(), FontDatabase::CannotOpen);
        QVERIFY(database.movedFileName().isEmpty());
    }

    void connectionsBelongToThreads()
    {
        const FontDatabase database(m_file);
        const auto factory = database.connectionFactory();
        const QString mine = factory->database().connectionName();
        QCOMPARE(factory->database().connectionName(), mine);
        QString other;
        runInThread([&] {
            other = factory->database().connectionName();
            QCOMPARE(factory->connectionNames().size(), 2);
            QCOMPARE(factory->database().tables().count(QStringLiteral("font")), 1);
        });
        QVERIFY(other != mine);
        QCOMPARE(other.section(QLatin1Char('}'), 0, 0), mine.section(QLatin1Char('}'), 0, 0));
        // It went with its thread.
        QCOMPARE(factory->connectionNames(), QStringList{mine});
        QVERIFY(!QSqlDatabase::connectionNames().contains(other));
    }

    void factoryClosesWhatThreadsLeaveOpen()
    {
        QString name;
        QSemaphore opened;
        QSemaphore gone;
        const QScopedPointer<QThread> thread([&] {
            auto database = QSharedPointer<FontDatabase>::create(m_file);
            auto* const worker = QThread::create([&, factory = database->connectionFactory()]() mutable {
                name = factory->database().connectionName();
                factory.clear();
                opened.release();
                gone.acquire();
            });
            worker->start();
            opened.acquire();
            return worker;
        }());
        QVERIFY(!QSqlDatabase::connectionNames().contains(name));
        gone.release();
        thread->wait();
    }

    void writersOfManyThreadsLoseNothing()
    {
        const auto database = QSharedPointer<FontDatabase>::create(m_file);
        RelationalFontRepositoryStrategy strategy(database);
        constexpr int threads = 4;
        constexpr int batches = 20;
        QVector<QThread*> workers;
        for (int t = 0; t < threads; ++t) {
            workers.append(QThread::create([&strategy, t] {
                for (int b = 0; b < batches; ++b) {
                    QVERIFY(
                        strategy.addFonts({fontAt(QStringLiteral("/%1/%2").arg(t).arg(b)), StaticFontPtr::create()}));
                    QVERIFY(strategy.fontCount() > 0);
                }
            }));
            workers.last()->start();
        }
        for (QThread* worker : qAsConst(workers))
            worker->wait();
        qDeleteAll(workers);
        QCOMPARE(strategy.fontCount(), threads * batches * 2);
    }

    void gatewayReportsRefusals()
    {
        const FontDatabase database(m_file);
        QSqlQuery query(database.connectionFactory()->database());
        QVERIFY(query.exec(QStringLiteral("CREATE TRIGGER refuse BEFORE INSERT ON font WHEN new.face_name = 'bad' "
                                          "BEGIN SELECT RAISE(FAIL, 'refused'); END")));
        RelationalFontRepositoryStrategy strategy(QSharedPointer<FontDatabase>::create(m_file));
        const QList<StaticFontPtr> fonts{StaticFontPtr::create(), StaticFontPtr::create(), StaticFontPtr::create()};
        fonts.at(1)->setFamilyName(QStringLiteral("bad"));
        QVERIFY(!strategy.addFonts(fonts));
        QVERIFY(fonts.at(0)->id() > 0);
        QCOMPARE(fonts.at(1)->id(), fms::StaticFont::NewId);
        QVERIFY(fonts.at(2)->id() > fonts.at(0)->id());
        QCOMPARE(strategy.fontCount(), 2);
    }

    void gatewayReadsRowsInAnyOrder()
    {
        const auto database = QSharedPointer<FontDatabase>::create(m_file);
        RelationalFontRepositoryStrategy strategy(database);
        for (int i = 0; i < 5; ++i)
            QVERIFY(strategy.addFont(fontAt(QString(QLatin1Char('a' + char(i))))));
        using Gateway = DatabaseTableGateway<FontDatabase::FontTableColumn>;
        Gateway::Order order;
        order.column = FontDatabase::file_name;
        order.order = Qt::DescendingOrder;
        order.limit = 3;
        const auto rows = database->fontGateway()->select({FontDatabase::file_name, FontDatabase::id}, order);
        QCOMPARE(rows->value(0, FontDatabase::file_name).toString(), QStringLiteral("e"));
        QCOMPARE(rows->rowCount(), 3);
        QCOMPARE(rows->value(2, 0).toString(), QStringLiteral("c"));
        QCOMPARE(rows->value(0, 1).toInt(), 5);
        QVERIFY(!rows->value(0, 2).isValid());
        QVERIFY(!rows->value(0, -1).isValid());
        QCOMPARE(rows->columns(), (QList<FontDatabase::FontTableColumn>{FontDatabase::file_name, FontDatabase::id}));
        QCOMPARE(database->fontGateway()->columnNames(rows->columns()),
                 (QStringList{QStringLiteral("file_name"), QStringLiteral("id")}));
        QVERIFY(!rows->hasRow(3));
    }

private:
    void makeCatalogue(int count)
    {
        RelationalFontRepositoryStrategy strategy(QSharedPointer<FontDatabase>::create(m_file));
        QList<StaticFontPtr> fonts;
        for (int i = 0; i < count; ++i) {
            fonts.append(fontAt(QStringLiteral("/fonts/%1.ttf").arg(i)));
            fonts.last()->setDescription(QStringLiteral("some description that fills the page %1").arg(i));
        }
        QVERIFY(strategy.addFonts(fonts));
    }

    // The damage lies behind the header, in the midst of the table.
    void makeCatalogueWithABadPage(int count)
    {
        makeCatalogue(count);
        QByteArray bytes = readFile(m_file);
        const int middle = bytes.size() / 2 / 4096 * 4096;
        bytes.replace(middle, 4096, QByteArray(4096, char(0xA5)));
        writeFile(m_file, bytes);
    }

    QScopedPointer<QTemporaryDir> m_folder;
    QString m_file;
};

KERVAL_TEST(TestFontDatabase)

#include "tst_fontdatabase.moc"
