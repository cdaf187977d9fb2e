#include "qtService/database/KrvUserDatabase.h"
#include "qtService/database/UserDatabaseTransaction.h"
#include "tests/support/testregistry.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>
#include <vector>

namespace {

QString hashOf(int number)
{
    return QStringLiteral("%1").arg(number, 42, 16, QLatin1Char('0'));
}

QStringList hashes(int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list.append(hashOf(i));
    return list;
}

} // namespace

class UserDatabaseTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        m_database.reset(new KrvUserDatabase);
        QVERIFY(m_database->open(m_folder->filePath(QStringLiteral("user.db"))));
    }

    void cleanup()
    {
        m_database.reset();
        QSqlDatabase::removeDatabase(QStringLiteral("look"));
    }

    void takesAnyText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("quotes") << QStringLiteral("it's \"so\" `called`");
        QTest::newRow("percent signs") << QStringLiteral("100 %1 %% %s %2");
        QTest::newRow("statement") << QStringLiteral("'); DROP TABLE 'group'; --");
        QTest::newRow("placeholders") << QStringLiteral("? :name @x $y");
        QTest::newRow("scripts") << QStringLiteral("Ελληνικά 漢字 العربية \U0001F600 e\u0301");
        QTest::newRow("lines and tabs") << QStringLiteral(" first\r\n\tsecond ");
        QTest::newRow("long") << QString(10000, QLatin1Char('x'));
    }

    void takesAnyText()
    {
        QFETCH(QString, text);
        const int groupId = m_database->addGroup(text, 0);
        QVERIFY(groupId > 0);
        QCOMPARE(m_database->groupName(groupId), text);
        QVERIFY(m_database->renameGroup(groupId, text + text));
        KrvUserDatabase::GroupFilter filter;
        filter.names = QStringList{text + text, QStringLiteral("other")};
        QCOMPARE(m_database->groups(filter).size(), 1);
        QVERIFY(m_database->setNote({text}, text));
        QVERIFY(m_database->setUserDefinedFamilyName({text}, text));
        QVERIFY(m_database->addFontsToGroup({text}, groupId));
        reopen();
        QCOMPARE(m_database->note(text), text);
        QCOMPARE(m_database->userDefinedFamilyNames({text}), QStringList{text});
        QCOMPARE(m_database->groupFontHashes({groupId}), QStringList{text});
        QCOMPARE(m_database->groupName(groupId), text + text);
    }

    void holdsTenThousandMembers()
    {
        const QStringList fonts = hashes(10000);
        const int groupId = m_database->addGroup(QStringLiteral("big"), 0);
        QVERIFY(m_database->addFontsToGroup(fonts, groupId));
        QCOMPARE(m_database->groupFontHashes({groupId}).toSet(), fonts.toSet());
        KrvUserDatabase::GroupFilter filter;
        filter.fontHashes = fonts.mid(0, 7777);
        QCOMPARE(m_database->groups(filter).value(0).fontCount, 7777);
        QVERIFY(m_database->setNote(fonts, QStringLiteral("one note")));
        QVERIFY(m_database->setUserDefinedFamilyName(fonts, QStringLiteral("one family")));
        QVERIFY(m_database->setHidden(fonts, true));
        QVERIFY(m_database->setRanking(fonts, 3));
        reopen();
        for (const QString& font : fonts) {
            const KrvUserDatabase::FontData data = m_database->fontData(font);
            QVERIFY(data.isHidden && data.ranking == 3 && data.note == QLatin1String("one note"));
        }
        QCOMPARE(m_database->notes(fonts), QStringList{QStringLiteral("one note")});
        QCOMPARE(m_database->userDefinedFamilyNames(fonts), QStringList{QStringLiteral("one family")});
        QCOMPARE(m_database->familyFontHashes({number(QStringLiteral("SELECT id FROM user_defined_family"))}).size(),
                 10000);
        QVERIFY(m_database->removeFontsFromGroup(fonts.mid(1), groupId));
        QCOMPARE(m_database->groupFontHashes({groupId}), fonts.mid(0, 1));
        QVERIFY(m_database->removeNote(fonts));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM note")), 0);
    }

    void deletesAGroupWithItsWholeTree()
    {
        QSignalSpy removed(m_database.data(), &KrvUserDatabase::groupRemoved);
        int parent = m_database->addGroup(QStringLiteral("root"), 0);
        const int root = parent;
        const int other = m_database->addGroup(QStringLiteral("other"), 0);
        for (int depth = 0; depth < 5; ++depth) {
            parent = m_database->addGroup(QStringLiteral("child"), parent);
            QVERIFY(m_database->addFontsToGroup(hashes(3), parent));
        }
        QVERIFY(m_database->addFontsToGroup(hashes(1), other));
        QVERIFY(!m_database->updateGroup(root, QString(), parent));
        QVERIFY(m_database->removeGroup(root));
        QCOMPARE(removed.size(), 6);
        QCOMPARE(m_database->groups().size(), 1);
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM belongs_to")), 1);
        QVERIFY(!m_database->removeGroup(root));
        QVERIFY(!m_database->renameGroup(root, QStringLiteral("gone")));
        QVERIFY(!m_database->addFontsToGroup(hashes(1), root));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM belongs_to")), 1);
    }

    void sharesOneRowForOneNote()
    {
        const QString text = QStringLiteral("shared");
        QVERIFY(m_database->setNote({hashOf(1)}, text));
        QVERIFY(m_database->setNote({hashOf(2)}, text));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM note")), 1);
        QVERIFY(m_database->removeNote({hashOf(1)}));
        QCOMPARE(m_database->note(hashOf(1)), QString());
        QCOMPARE(m_database->note(hashOf(2)), text);
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM note")), 1);
        QVERIFY(m_database->setNote({hashOf(2)}, QString()));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM note")), 0);
    }

    void answersAFailedInsertWithZero()
    {
        QSqlQuery query(plain());
        QVERIFY(query.prepare(QStringLiteral("INSERT INTO font (filehash) VALUES (NULL)")));
        QCOMPARE(m_database->execInsertQuery(query), 0);
    }

    void announcesOnlyWhatIsCommitted()
    {
        QSignalSpy noted(m_database.data(), &KrvUserDatabase::noteChanged);
        QSignalSpy added(m_database.data(), &KrvUserDatabase::groupAdded);
        {
            UserDatabaseTransaction outer(*m_database);
            QVERIFY(m_database->setNote({hashOf(1)}, QStringLiteral("kept")));
            {
                UserDatabaseTransaction inner(*m_database);
                QVERIFY(m_database->setNote({hashOf(1)}, QStringLiteral("lost")));
                QVERIFY(m_database->addGroup(QStringLiteral("lost"), 0) > 0);
                QCOMPARE(m_database->note(hashOf(1)), QStringLiteral("lost"));
            }
            QCOMPARE(m_database->note(hashOf(1)), QStringLiteral("kept"));
            QCOMPARE(noted.size(), 0);
            QVERIFY(outer.commit());
        }
        QCOMPARE(noted.size(), 1);
        QCOMPARE(added.size(), 0);
        {
            UserDatabaseTransaction transaction(*m_database);
            QVERIFY(m_database->setHidden({hashOf(1)}, true));
        }
        QVERIFY(!m_database->isHidden(hashOf(1)));
        reopen();
        QCOMPARE(m_database->note(hashOf(1)), QStringLiteral("kept"));
        QVERIFY(m_database->groups().isEmpty());
    }

    void servesManyThreads()
    {
        const int groupId = m_database->addGroup(QStringLiteral("shared"), 0);
        QAtomicInt failures;
        const auto work = [&](int worker) {
            for (int i = 0; i < 20; ++i) {
                const QStringList fonts{hashOf(worker * 1000 + i), hashOf(worker * 1000 + i + 500)};
                if (!m_database->setHidden(fonts, true) || !m_database->addFontsToGroup(fonts, groupId) ||
                    !m_database->setNote(fonts, QStringLiteral("by %1").arg(worker)))
                    ++failures;
                if (!m_database->isHidden(fonts.first()) || m_database->groups().isEmpty())
                    ++failures;
            }
        };
        std::vector<std::thread> threads;
        for (int worker = 0; worker < 8; ++worker)
            threads.emplace_back(work, worker);
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(int(failures), 0);
        QCOMPARE(m_database->groupFontHashes({groupId}).size(), 8 * 40);
        reopen();
        QCOMPARE(m_database->allFontHashes().size(), 8 * 40);
        QCOMPARE(m_database->note(hashOf(7000)), QStringLiteral("by 7"));
        QCOMPARE(number(QStringLiteral("SELECT COUNT(*) FROM note")), 8);
    }

private:
    void reopen()
    {
        m_database.reset(new KrvUserDatabase);
        QVERIFY(m_database->open(m_folder->filePath(QStringLiteral("user.db"))));
    }

    QSqlDatabase plain()
    {
        const QString name = QStringLiteral("look");
        if (QSqlDatabase::contains(name))
            return QSqlDatabase::database(name);
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(m_folder->filePath(QStringLiteral("user.db")));
        database.open();
        return database;
    }

    int number(const QString& statement)
    {
        int value = -1;
        {
            QSqlQuery query(plain());
            if (query.exec(statement) && query.next())
                value = query.value(0).toInt();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("look"));
        return value;
    }

    QScopedPointer<QTemporaryDir> m_folder;
    QScopedPointer<KrvUserDatabase> m_database;
};

KERVAL_TEST(UserDatabaseTest)
#include "UserDatabaseTest.moc"
