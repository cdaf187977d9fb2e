#include "qtService/database/StaticFont.h"
#include "qtService/ui/filter/FontFilterCriteria.h"
#include "qtService/ui/filter/FontFiltersState.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/support/testregistry.h"

#include <QDataStream>
#include <QSignalSpy>
#include <QtTest>

namespace {

using Change = std::function<void(FontFiltersState&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class FilterStateTest : public QObject
{
    Q_OBJECT

private slots:
    void everySetterAnnouncesEvenTheSameValue()
    {
        FontFiltersState state;
        QSignalSpy spy(&state, &FontFiltersState::changed);
        state.setWeight(0);
        state.setFormats({});
        state.setSerifs(true);
        state.setTextSearchFields({});
        QCOMPARE(spy.count(), 4);
    }

    void clearingKeepsTheSearchFields()
    {
        FontFiltersState state;
        state.setTextSearchFields({0, 504});
        QVERIFY(state.isCleared());
        state.setFormats({QStringLiteral("TrueType"), QStringLiteral("OpenType")});
        state.setAngle(3);
        QVERIFY(!state.isCleared());
        QSignalSpy cleared(&state, &FontFiltersState::cleared);
        state.clear();
        QCOMPARE(cleared.count(), 1);
        QVERIFY(state.isCleared());
        QCOMPARE(state.textSearchFields(), (QList<int>{0, 504}));
        state.setFormats({QStringLiteral("TrueType"), QStringLiteral("OpenType"), QStringLiteral("Type 1")});
        QVERIFY(state.isCleared());
    }

    void itSurvivesBeingStored()
    {
        FontFiltersState state;
        state.setTextSearch(QStringLiteral("a b"));
        state.setUnicodeSubsets({1, 31});
        state.setMonospaced(false);
        state.setRating(4);
        state.setFontActivity(FontFiltersState::TemporarilyActive);
        QByteArray bytes;
        QDataStream writer(&bytes, QIODevice::WriteOnly);
        writer << QVariant::fromValue(state);
        QVariant restored;
        QDataStream reader(bytes);
        reader >> restored;
        const auto copy = restored.value<FontFiltersState>();
        QCOMPARE(copy.textSearch(), state.textSearch());
        QCOMPARE(copy.unicodeSubsets(), state.unicodeSubsets());
        QCOMPARE(copy.monospaced(), false);
        QCOMPARE(copy.rating(), 4);
        QCOMPARE(copy.fontActivity(), FontFiltersState::TemporarilyActive);
    }

    void filtersFindFonts_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("found");
        QTest::newRow("nothing set finds all") << Change([](FontFiltersState&) {}) << "ABC";
        QTest::newRow("each word in some field")
            << Change([](FontFiltersState& s) { s.setTextSearch(QStringLiteral(" BOLD  meier ")); }) << "B";
        QTest::newRow("only in chosen fields") << Change([](FontFiltersState& s) {
            s.setTextSearch(QStringLiteral("meier"));
            s.setTextSearchFields({0});
        }) << "";
        QTest::newRow("two formats") << Change([](FontFiltersState& s) {
            s.setFormats({QStringLiteral("OpenType"), QStringLiteral("Type 1")});
        }) << "BC";
        QTest::newRow("no serifs") << Change([](FontFiltersState& s) { s.setSerifs(false); }) << "BC";
        QTest::newRow("neither serif nor sans: nothing") << Change([](FontFiltersState& s) {
            s.setSerifs(false);
            s.setSanserifs(false);
        }) << "";
        QTest::newRow("foundry") << Change([](FontFiltersState& s) { s.setFoundry(QStringLiteral("Meier")); }) << "B";
        QTest::newRow("lightest bucket") << Change([](FontFiltersState& s) { s.setWeight(1); }) << "A";
        QTest::newRow("bucket's lower bound belongs to it")
            << Change([](FontFiltersState& s) { s.setWeight(2); }) << "B";
        QTest::newRow("heaviest bucket is open") << Change([](FontFiltersState& s) { s.setWeight(5); }) << "C";
        QTest::newRow("upright") << Change([](FontFiltersState& s) { s.setAngle(1); }) << "AC";
        QTest::newRow("slanted a little") << Change([](FontFiltersState& s) { s.setAngle(2); }) << "B";
        QTest::newRow("all asked character sets") << Change([](FontFiltersState& s) {
            s.setUnicodeSubsets({0, 4});
        }) << "AC";
        QTest::newRow("class keyword") << Change([](FontFiltersState& s) { s.setClasses({QStringLiteral("Comic")}); })
                                       << "C";
        QTest::newRow("rating") << Change([](FontFiltersState& s) { s.setRating(0); }) << "ABC";
    }

    void filtersFindFonts()
    {
        QFETCH(Change, change);
        QFETCH(QString, found);
        TestLibrary library;
        const StaticFontPtr a = TestLibrary::makeFont(QStringLiteral("/a.ttf"), QStringLiteral("a"));
        const StaticFontPtr b = TestLibrary::makeFont(QStringLiteral("/b.otf"), QStringLiteral("b"));
        const StaticFontPtr c = TestLibrary::makeFont(QStringLiteral("/c.pfb"), QStringLiteral("c"));
        a->setFamilyName(QStringLiteral("A"));
        a->setFormat(QStringLiteral("TrueType"));
        a->setOtherInfo2(QStringLiteral("Serif"));
        a->setHwe(99);
        a->setSupportedSubsets({0, 1, 4});
        b->setFamilyName(QStringLiteral("B"));
        b->setStyleName(QStringLiteral("Bold Italic"));
        b->setFormat(QStringLiteral("OpenType"));
        b->setFoundry(QStringLiteral("Meier"));
        b->setHwe(100);
        b->setItalicAngle(14);
        b->setSupportedSubsets({0, 1});
        c->setFamilyName(QStringLiteral("C"));
        c->setStyleName(QStringLiteral("Bold"));
        c->setFormat(QStringLiteral("Type 1"));
        c->setOtherInfo2(QStringLiteral("Comic,Headline"));
        c->setHwe(2000);
        c->setSupportedSubsets({0, 4});
        library.addFonts({a, b, c});

        FontFiltersState state;
        change(state);
        QString names;
        const QList<StaticFontPtr> fonts = library.repository->findMatchingFonts(criteriaForFilters(state));
        for (const StaticFontPtr& font : fonts)
            names += font->familyName();
        QCOMPARE(names, found);
    }
};

KERVAL_TEST(FilterStateTest)
#include "FilterStateTest.moc"
