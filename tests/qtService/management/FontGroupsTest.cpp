#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"
#include "qtService/management/FontMembers.h"
#include "qtService/management/RecentlyAddedFontsGroup.h"
#include "qtService/management/SystemFontsGroup.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/qtService/management/StandardGroups.h"
#include "tests/support/testregistry.h"

#include <QtConcurrent>
#include <QtTest>

#include <thread>

using Ids = SystemFontGroupList;

class FontGroupsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_library.reset(new TestLibrary);
        m_groups.reset(new StandardGroups(m_library->repository, m_library->userDatabase.data()));
    }

    void cleanup()
    {
        m_groups.reset();
        m_library.reset();
    }

    void keepsAnOrderedSet()
    {
        FontMembers members;
        members.assign({5, 3, 9, 3});
        QCOMPARE(members.ids(), (QList<int>{5, 3, 9}));
        const FontMembers before = members;
        QCOMPARE(members.insert({9, 1, 1, 2}), (QList<int>{1, 2}));
        QCOMPARE(members.erase({3, 7, 9, 3}), (QList<int>{3, 9}));
        QCOMPARE(members.ids(), (QList<int>{5, 1, 2}));
        QCOMPARE(members.insert({3}), QList<int>{3});
        QCOMPARE(members.inOrder({3, 2, 100, 5}), (QList<int>{5, 2, 3}));
        QCOMPARE(before.ids(), (QList<int>{5, 3, 9}));
        QVERIFY(before.contains(9) && !members.contains(9));
    }

    void hasTheNamesThatTheInterfaceShows_data()
    {
        QTest::addColumn<int>("groupId");
        QTest::addColumn<QString>("name");
        QTest::newRow("all") << int(Ids::AllFonts) << QStringLiteral("All Fonts");
        QTest::newRow("active") << int(Ids::ActiveFonts) << QStringLiteral("Active Fonts");
        QTest::newRow("inactive") << int(Ids::InactiveFonts) << QStringLiteral("Inactive Fonts");
        QTest::newRow("system") << int(Ids::SystemFonts) << QStringLiteral("System Fonts");
        QTest::newRow("added") << int(Ids::RecentlyAddedFonts) << QStringLiteral("Recently Added");
        QTest::newRow("duplicates") << int(Ids::DuplicateFonts) << QStringLiteral("Duplicated Fonts");
        QTest::newRow("activated") << int(Ids::RecentlyActivatedFonts) << QStringLiteral("Recently Activated");
        QTest::newRow("deactivated") << int(Ids::RecentlyDeactivatedFonts) << QStringLiteral("Recently Deactivated");
        QTest::newRow("hidden") << int(Ids::HiddenFonts) << QStringLiteral("Hidden Fonts");
    }

    void hasTheNamesThatTheInterfaceShows()
    {
        QFETCH(int, groupId);
        QFETCH(QString, name);
        QCOMPARE(m_groups->group(groupId)->name(), name);
    }

    void tellsSystemFontsByFolderAndName_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<bool>("isSystemFont");
        QTest::newRow("listed") << QStringLiteral("/usr/share/fonts/truetype/arial.ttf") << true;
        QTest::newRow("folder spelt otherwise") << QStringLiteral("/USR/share/Fonts/arial.ttf") << true;
        QTest::newRow("name spelt otherwise") << QStringLiteral("/usr/share/fonts/ARIAL.TTF") << false;
        QTest::newRow("not listed") << QStringLiteral("/usr/share/fonts/other.ttf") << false;
        QTest::newRow("elsewhere") << QStringLiteral("/home/me/arial.ttf") << false;
        QTest::newRow("folder of a longer name") << QStringLiteral("/usr/share/fonts-extra/arial.ttf") << false;
    }

    void tellsSystemFontsByFolderAndName()
    {
        QFETCH(QString, fileName);
        QFETCH(bool, isSystemFont);
        const QList<int> ids = m_library->addFonts({TestLibrary::makeFont(fileName, fileName)});
        QCOMPARE(m_groups->members(Ids::SystemFonts), isSystemFont ? QSet<int>{ids.first()} : QSet<int>());
        const SystemFontsGroup made(m_groups->existing, QStringLiteral("/usr/share/fonts"),
                                    {QStringLiteral("arial.ttf")});
        QCOMPARE(made.fontCount(), int(isSystemFont));
    }

    void announcesEveryFontThatDoesNotBelong()
    {
        const QList<int> ids = addFonts(3);
        QSignalSpy removed(m_groups->group(Ids::ActiveFonts).data(), &FontCollectionInterface::fontsRemoved);
        const StaticFontPtr font = m_library->repository->font(ids[0]);
        font->setUserNote(QStringLiteral("x"));
        m_library->repository->updateFonts({font}, {QStringLiteral("userNote")});
        QCOMPARE(removed.size(), 1);
        QCOMPARE(removed.first().first().value<QList<int>>(), QList<int>{ids[0]});
    }

    void pullsInTheNextOfTheRecentFonts()
    {
        const QList<int> ids = addFonts(StandardGroups::RecentLimit + 3);
        const FontGroupPtr recent = m_groups->group(Ids::RecentlyAddedFonts);
        QCOMPARE(recent->fontCount(), int(StandardGroups::RecentLimit));
        QCOMPARE(recent->fontIdList().first(), ids.last());
        QVERIFY(!recent->containsFont(ids[2]));
        m_library->repository->removeFont(m_library->repository->font(ids.last()));
        QCOMPARE(recent->fontCount(), int(StandardGroups::RecentLimit));
        QVERIFY(recent->containsFont(ids[2]));
        // A font added now is the newest, whatever its date.
        const int old =
            m_library->addFonts({TestLibrary::makeFont(QStringLiteral("/old.ttf"), QString(), 0, 5)}).first();
        QCOMPARE(recent->fontIdList().first(), old);
        QCOMPARE(recent->fonts().first()->id(), old);
    }

    void searchesMembersOnly()
    {
        const QList<int> ids = addFonts(30);
        hide(ids.mid(0, 10));
        const FontGroupPtr all = m_groups->group(Ids::AllFonts);
        QCOMPARE(all->fonts().size(), 20);
        QVERIFY(!all->font(ids[3]) && all->font(ids[12]));
        const auto some = MatchingCriteria::allOf({MatchingCriteria::idIn({ids[15], ids[3], ids[12]})});
        QCOMPARE(all->findMatchingFontIds(some), (QList<int>{ids[12], ids[15]}));
        const auto one =
            MatchingCriteria::leaf(MatchingCriteria::EndsWith, QStringLiteral("fileName"), QStringLiteral("9.ttf"));
        QCOMPARE(all->findMatchingFontIds(one), (QList<int>{ids[19], ids[29]}));
        const auto notOne = MatchingCriteria::leaf(MatchingCriteria::NotEqual, QStringLiteral("id"), ids[19]);
        QCOMPARE(all->findMatchingFontIds(MatchingCriteria::allOf({one, notOne})), QList<int>{ids[29]});
        // The group's order, which for this one is not the catalogue's.
        const FontGroupPtr recent = m_groups->group(Ids::RecentlyAddedFonts);
        QCOMPARE(recent->findMatchingFontIds(MatchingCriteria::allOf()), recent->fontIdList());
    }

    void neverFindsAFontThatIsGone()
    {
        const QList<int> ids = addFonts(3);
        const auto search =
            m_groups->group(Ids::AllFonts)->createFindMathingFontsCommand(MatchingCriteria::allOf(), true);
        m_library->repository->removeFont(m_library->repository->font(ids[1]));
        search->start();
        search->waitForFinished();
        QCOMPARE(search->fontIds(), (QList<int>{ids[0], ids[2]}));
    }

    void listsAnIdTwiceThatIsAddedTwice()
    {
        FontGroupList list;
        const auto first = makeFontGroup<FontGroup>(m_groups->existing, QStringLiteral("first"));
        const auto second = makeFontGroup<FontGroup>(m_groups->existing, QStringLiteral("second"));
        QSignalSpy counted(&list, &FontGroupList::groupFontCountChanged);
        QSignalSpy renamed(&list, &FontGroupList::groupRenamed);
        QSignalSpy changed(&list, &FontGroupList::groupCountChanged);
        list.addGroup(4, first);
        list.addGroup(4, second);
        QCOMPARE(list.groupIdList(), (QList<int>{4, 4}));
        QCOMPARE(list.groupCount(), 1);
        QCOMPARE(list.group(4), second);
        addFonts(1);
        QCOMPARE(counted.size(), 1);
        first->setName(QStringLiteral("nobody hears this"));
        second->setName(QStringLiteral("new"));
        QCOMPARE(renamed.size(), 1);
        list.removeGroup(4);
        list.removeGroup(5);
        QVERIFY(!list.containsGroup(4) && !list.group(4));
        QCOMPARE(changed.size(), 3);
    }

    void followsTheGroupsOfTheUserDatabase()
    {
        const QList<int> ids = addFonts(3);
        KrvUserDatabase& database = *m_library->userDatabase;
        int parent = 0;
        onAnotherThread([&] { parent = database.addGroup(QStringLiteral("parent"), 0); });
        // Listed when the call returns, whatever the thread; alive on this one.
        QVERIFY(m_groups->user->containsGroup(parent));
        QCOMPARE(m_groups->group(parent)->thread(), QThread::currentThread());
        const int child = database.addGroup(QStringLiteral("child"), parent);
        const QStringList hashes{hashOf(ids[0]), hashOf(ids[2])};
        onAnotherThread([&] { database.addFontsToGroup(hashes, child); });
        QTRY_COMPARE(m_groups->members(child), (QSet<int>{ids[0], ids[2]}));
        QSignalSpy renamed(m_groups->user.data(), &FontGroupList::groupRenamed);
        QVERIFY(database.renameGroup(child, QStringLiteral("new %1")));
        QCOMPARE(m_groups->group(child)->name(), QStringLiteral("new %1"));
        QCOMPARE(renamed.size(), 1);
        QVERIFY(database.removeGroup(parent));
        QVERIFY(m_groups->user->groupIdList().isEmpty());
    }

    void isMadeAndDroppedOnAnotherThread()
    {
        addFonts(3);
        QPointer<FontGroupList> list;
        QPointer<FontGroup> group;
        QSharedPointer<FontGroupList> kept;
        onAnotherThread([&] {
            kept = makeFontGroupList<FontGroupList>();
            const auto all = makeFontGroup<FontGroup>(m_groups->existing, QStringLiteral("all"));
            kept->addGroup(1, all);
            list = kept.data();
            group = all.data();
        });
        QCOMPARE(list->thread(), QThread::currentThread());
        QCOMPARE(group->thread(), QThread::currentThread());
        QSignalSpy counted(kept.data(), &FontGroupList::groupFontCountChanged);
        m_library->addFonts({TestLibrary::makeFont(QStringLiteral("/more.ttf"), QString())});
        QCOMPARE(counted.size(), 1);
        QCOMPARE(group->fontCount(), 4);
        onAnotherThread([&] { kept.reset(); });
        QVERIFY(list);
        QTRY_VERIFY(!list && !group);
    }

    void isAskedFromThePoolWhileItChanges()
    {
        QList<int> ids = addFonts(400);
        const int groupId = m_library->userDatabase->addGroup(QStringLiteral("asked"), 0);
        QStringList hashes;
        for (int id : qAsConst(ids))
            hashes.append(hashOf(id));
        QAtomicInt stop;
        QAtomicInt faults;
        QList<QFuture<void>> askers;
        for (int asker = 0; asker < 3; ++asker) {
            askers.append(QtConcurrent::run([&] {
                while (!stop) {
                    for (int group : m_groups->groupIds()) {
                        const FontGroupPtr asked = m_groups->group(group);
                        if (!asked)
                            continue;
                        // Hidden and shown together, so half of them is a half-made change.
                        const int count = asked->fontCount();
                        if (group == Ids::AllFonts && count != 200 && count != 400)
                            ++faults;
                        asked->fonts();
                        asked->findMatchingFontIds(MatchingCriteria::allOf({MatchingCriteria::idIn(ids.mid(0, 9))}));
                        asked->name();
                    }
                }
            }));
        }
        for (int round = 0; round < 8; ++round) {
            hide(ids.mid(0, 200), round % 2 == 0);
            m_library->userDatabase->addFontsToGroup(hashes.mid(round * 10, 30), groupId);
            m_library->userDatabase->renameGroup(groupId, QString::number(round));
            // And as the commands do it: changed on a pool thread, followed here.
            onAnotherThread([&] {
                const StaticFontPtr font = m_library->repository->font(ids[300]);
                font->setUserRanking(round);
                m_library->repository->updateFonts({font}, {QStringLiteral("userRanking")});
            });
            QCoreApplication::processEvents();
        }
        stop = 1;
        for (QFuture<void>& asker : askers)
            asker.waitForFinished();
        QCOMPARE(int(faults), 0);
        QCOMPARE(m_groups->group(Ids::AllFonts)->fontCount(), 400);
        QCOMPARE(m_groups->group(groupId)->fontCount(), 100);
    }

private:
    // Waiting for a run on the pool may carry it out here.
    static void onAnotherThread(const std::function<void()>& work) { std::thread(work).join(); }

    QList<int> addFonts(int count)
    {
        QList<StaticFontPtr> fonts;
        for (int i = 0; i < count; ++i) {
            const QString name = QStringLiteral("/fonts/%1.ttf").arg(i);
            fonts.append(TestLibrary::makeFont(name, name, 0, 1000 + uint(i)));
        }
        return m_library->addFonts(fonts);
    }

    void hide(const QList<int>& ids, bool hidden = true)
    {
        QList<StaticFontPtr> fonts;
        for (int id : ids) {
            fonts.append(m_library->repository->font(id));
            fonts.last()->setIsHidden(hidden);
        }
        m_library->repository->updateFonts(fonts, {QStringLiteral("isHidden")});
    }

    QString hashOf(int id) const { return m_library->repository->font(id)->fontHash(); }

    QScopedPointer<TestLibrary> m_library;
    QScopedPointer<StandardGroups> m_groups;
};

KERVAL_TEST(FontGroupsTest)
#include "FontGroupsTest.moc"
