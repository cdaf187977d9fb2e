#include "qtService/database/KrvFontRepository.h"

#include "qtService/database/FontRepositoryStrategy.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/StaticFont.h"
#include "tests/qtService/database/FakeFontManagerStrategy.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/support/testregistry.h"

#include <QtTest>

using kerval::systemfm::ActivityType;

namespace {

QList<StaticFontPtr> someFonts(int count)
{
    QList<StaticFontPtr> fonts;
    for (int i = 0; i < count; ++i)
        fonts.append(TestLibrary::makeFont(QStringLiteral("/fonts/font%1.ttf").arg(i), QString::number(i)));
    return fonts;
}

MatchingCriteriaPtr condition(int flags, const char* property, const QVariant& value)
{
    return MatchingCriteria::allOf({MatchingCriteria::leaf(flags, QLatin1String(property), value)});
}

QList<QList<int>> idLists(const QSignalSpy& spy)
{
    QList<QList<int>> lists;
    for (const QList<QVariant>& arguments : spy)
        lists.append(arguments.first().value<QList<int>>());
    return lists;
}

} // namespace

class KrvFontRepositoryTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_library.reset(new TestLibrary); }
    void cleanup() { m_library.reset(); }

    void announcesWhatComesAndGoes()
    {
        KrvFontRepository& repository = *m_library->repository;
        QSignalSpy added(&repository, &FontCollectionInterface::fontsAdded);
        QSignalSpy removed(&repository, &FontCollectionInterface::fontsRemoved);
        QSignalSpy counted(&repository, &FontCollectionInterface::fontCountChanged);
        QSignalSpy foundries(&repository, &KrvFontRepository::foundriesChanged);
        const QList<StaticFontPtr> fonts = someFonts(3);
        const QList<int> ids = m_library->addFonts(fonts);
        QCOMPARE(idLists(added), QList<QList<int>>{ids});
        QCOMPARE(counted.size(), 1);
        QCOMPARE(foundries.size(), 1);
        QCOMPARE(repository.fontIdList(), ids);
        QVERIFY(repository.containsFont(fonts.first()) && repository.hasFonts());
        QVERIFY(repository.removeFont(fonts.first()));
        QCOMPARE(idLists(removed), (QList<QList<int>>{{ids.first()}}));
        QVERIFY(!repository.font(ids.first()));
        QVERIFY(repository.removeAll());
        QCOMPARE(idLists(removed).last(), ids.mid(1));
        QVERIFY(!repository.hasFonts());
        QCOMPARE(foundries.size(), 2);
    }

    void countsDuplicatesByContentAndFace()
    {
        const auto first = TestLibrary::makeFont(QStringLiteral("/a.ttf"), QStringLiteral("same"));
        const auto second = TestLibrary::makeFont(QStringLiteral("/b.ttf"), QStringLiteral("same"));
        const auto otherFace = TestLibrary::makeFont(QStringLiteral("/b.ttf"), QStringLiteral("same"), 1);
        m_library->addFonts({first, otherFace});
        QSignalSpy changed(m_library->repository.data(), &FontCollectionInterface::fontsChanged);
        m_library->addFonts({second});
        QCOMPARE(first->duplicateCount(), 1);
        QCOMPARE(second->duplicateCount(), 1);
        QCOMPARE(otherFace->duplicateCount(), 0);
        QCOMPARE(idLists(changed).value(0).toSet(), (QSet<int>{first->id(), second->id()}));

        m_library->restart();
        QCOMPARE(m_library->repository->font(first->id())->duplicateCount(), 1);
        QVERIFY(m_library->repository->removeFont(m_library->repository->font(second->id())));
        QCOMPARE(m_library->repository->font(first->id())->duplicateCount(), 0);
    }

    void mergesAndStoresTheUsersData()
    {
        const QList<StaticFontPtr> fonts = someFonts(4);
        m_library->addFonts(fonts);
        fonts[1]->setIsHidden(true);
        fonts[1]->setUserNote(QStringLiteral("note"));
        fonts[2]->setUserRanking(4);
        fonts[2]->setUserDefinedFamilyName(QStringLiteral("family"));
        QSignalSpy changed(m_library->repository.data(), &FontCollectionInterface::fontsChanged);
        QVERIFY(m_library->repository->updateFonts(fonts, {QStringLiteral("isHidden"), QStringLiteral("userNote"),
                                                           QStringLiteral("userRanking"),
                                                           QStringLiteral("userDefinedFamilyName")}));
        QCOMPARE(changed.size(), 1);
        const auto hidden = condition(MatchingCriteria::Equal, "isHidden", true);
        QCOMPARE(m_library->repository->findMatchingFontIds(hidden), QList<int>{fonts[1]->id()});

        m_library->restart();
        QCOMPARE(m_library->repository->findMatchingFontIds(hidden), QList<int>{fonts[1]->id()});
        const StaticFontPtr again = m_library->repository->font(fonts[2]->id());
        QCOMPARE(again->userRanking(), 4);
        QCOMPARE(again->userDefinedFamilyName(), QStringLiteral("family"));
        QCOMPARE(m_library->repository->font(fonts[1]->id())->userNote(), QStringLiteral("note"));

        // The user's data waits for the font to come back.
        const StaticFontPtr noted = m_library->repository->font(fonts[1]->id());
        QVERIFY(m_library->repository->removeFont(noted));
        const auto same = TestLibrary::makeFont(noted->fileName(), QStringLiteral("1"));
        m_library->addFonts({same});
        QVERIFY(same->isHidden());
        QCOMPARE(same->userNote(), QStringLiteral("note"));
    }

    void storesWhatTheCatalogueHolds()
    {
        const QList<StaticFontPtr> fonts = someFonts(2);
        m_library->addFonts(fonts);
        fonts[0]->setOnlineSource(QStringLiteral("web"));
        QVERIFY(m_library->repository->updateFonts({fonts[0]}, {QStringLiteral("onlineSource")}));
        m_library->restart();
        QCOMPARE(m_library->repository->font(fonts[0]->id())->onlineSource(), QStringLiteral("web"));
    }

    void givesRefusedUserDataBack()
    {
        const QList<StaticFontPtr> fonts = someFonts(1);
        m_library->addFonts(fonts);
        KrvUserDatabase closed;
        KrvFontRepository repository(m_library->strategy, &closed, m_library->systemFontManager.data());
        QSignalSpy changed(&repository, &FontCollectionInterface::fontsChanged);
        fonts[0]->setIsHidden(true);
        QVERIFY(!repository.updateFonts(fonts, {QStringLiteral("isHidden")}));
        QVERIFY(!fonts[0]->isHidden());
        QCOMPARE(changed.size(), 0);
    }

    void followsTheSystemsActiveFonts()
    {
        const QList<StaticFontPtr> fonts = someFonts(3);
        const QList<int> ids = m_library->addFonts(fonts);
        QCOMPARE(fonts[0]->activityType(), 0);
        QSignalSpy changed(m_library->repository.data(), &FontCollectionInterface::fontsChanged);
        m_library->systemFonts->setActive({{QStringLiteral("/fonts/font1.ttf"), ActivityType::TemporarilyActive},
                                           {QStringLiteral("/fonts/FONT2.ttf"), ActivityType::PermanentlyActive}});
        QTRY_COMPARE(idLists(changed), (QList<QList<int>>{{ids[1]}}));
        QCOMPARE(fonts[1]->activityType(), 1);
        QCOMPARE(m_library->repository->findMatchingFontIds(condition(MatchingCriteria::NotEqual, "activityType", 0)),
                 QList<int>{ids[1]});

        // A change made through the repository holds against what the system said before.
        fonts[1]->setActivityType(0);
        fonts[2]->setActivityType(2);
        QVERIFY(m_library->repository->updateFonts({fonts[1], fonts[2]}, {QStringLiteral("activityType")}));
        m_library->repository->applyUserData(fonts);
        QCOMPARE(fonts[1]->activityType(), 0);
        QCOMPARE(fonts[2]->activityType(), 2);
    }

    void answersConditionsOfBothKindsTogether()
    {
        const QList<StaticFontPtr> fonts = someFonts(20);
        const QList<int> ids = m_library->addFonts(fonts);
        for (int i = 0; i < 20; i += 2)
            fonts[i]->setIsHidden(true);
        QVERIFY(m_library->repository->updateFonts(fonts, {QStringLiteral("isHidden")}));
        const auto criteria = condition(MatchingCriteria::Equal, "isHidden", true);
        criteria->append(MatchingCriteria::idIn({ids[9], ids[8], ids[2], 12345}));
        criteria->append(
            MatchingCriteria::leaf(MatchingCriteria::EndsWith, QStringLiteral("fileName"), QStringLiteral("2.ttf")));
        QCOMPARE(m_library->repository->findMatchingFontIds(criteria), QList<int>{ids[2]});
        const auto either =
            MatchingCriteria::anyOf({MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("isHidden"), true),
                                     MatchingCriteria::leaf(MatchingCriteria::Equal, QStringLiteral("id"), ids[1])});
        QCOMPARE(m_library->repository->findMatchingFontIds(MatchingCriteria::allOf({either})).size(), 11);
        QCOMPARE(m_library->repository->findMatchingFonts(MatchingCriteria::allOf()).size(), 20);
    }

private:
    QScopedPointer<TestLibrary> m_library;
};

KERVAL_TEST(KrvFontRepositoryTest)
#include "KrvFontRepositoryTest.moc"
