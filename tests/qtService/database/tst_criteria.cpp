#include "qtService/database/CachedFindMathingFontsCommand.h"
#include "qtService/database/CompiledCriteria.h"
#include "qtService/database/FoldedSearch.h"
#include "qtService/database/FontOrder.h"
#include "qtService/database/MatchingCriteria.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "tests/support/testregistry.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using M = MatchingCriteria;

Q_DECLARE_METATYPE(QList<QVariant>)

namespace {

QString name(const char* text)
{
    return QLatin1String(text);
}

StaticFontPtr sampleFont()
{
    auto font = StaticFontPtr::create();
    font->setId(7);
    font->setFamilyName(QStringLiteral("Große Antiqua"));
    font->setFileName(QStringLiteral("/f/GA.ttf"));
    font->setFoundry(QStringLiteral("Beta"));
    font->setIsBold(true);
    font->setHwe(170);
    font->setSupportedSubsets({1, 4, 70});
    font->setVendorUrl(QUrl(QStringLiteral("http://beta.example/x")));
    font->setDateActivated(QDateTime::fromSecsSinceEpoch(1000));
    font->setLicense(QStringLiteral("Free of charge. ").repeated(50) + QStringLiteral("Signed: Wölfchen"));
    font->setOtherInfo2(QStringLiteral("Serif"));
    font->setSerifStyle(9);
    return font;
}

} // namespace

class TestCriteria : public QObject
{
    Q_OBJECT

private slots:
    void leaves_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("matches");
        const auto row = [](const char* title, int flags, const char* property, const QVariant& value, bool matches) {
            QTest::newRow(title) << flags << name(property) << value << matches;
        };
        const auto ints = [](const QList<int>& list) { return QVariant::fromValue(list); };
        const auto set = [](const QSet<int>& numbers) { return QVariant::fromValue(numbers); };
        row("equal int", M::Equal, "id", 7, true);
        row("equal int as text", M::Equal, "id", QStringLiteral("7"), true);
        row("int is no other text", M::Equal, "id", QStringLiteral("x"), false);
        row("int is no fraction", M::Equal, "id", 7.5, false);
        row("int is no list", M::Equal, "id", ints({7}), false);
        row("not equal", M::NotEqual, "id", 7, false);
        row("equal bool", M::Equal, "isBold", true, true);
        row("bool as number", M::Equal, "isBold", 1, true);
        row("computed bool", M::Equal, "isSerif", true, true);
        row("computed bool, false", M::Equal, "isSymbol", false, true);
        row("equal byte", M::Equal, "serifStyle", 9, true);
        row("equal text", M::Equal, "foundry", QStringLiteral("Beta"), true);
        row("equal text minds case", M::Equal, "foundry", QStringLiteral("beta"), false);
        row("equal empty text", M::Equal, "designer", QString(), true);
        row("own text", M::Equal, "fileName", QStringLiteral("/f/GA.ttf"), true);
        row("equal url", M::Equal, "vendorUrl", QUrl(QStringLiteral("http://beta.example/x")), true);
        row("equal moment", M::Equal, "dateActivated", QDateTime::fromSecsSinceEpoch(1000), true);
        row("not the epoch", M::NotEqual, "dateActivated", QDateTime::fromSecsSinceEpoch(0), true);
        row("equal set", M::Equal, "supportedSubsets", set({70, 1, 4}), true);
        row("unknown property", M::Equal, "onlinseSource", QStringLiteral("x"), false);
        row("unknown property, not", M::NotEqual, "onlinseSource", QStringLiteral("x"), true);

        row("in list", M::InList, "id", ints({3, 7}), true);
        row("in list of variants", M::InList, "id", QVariantList{QStringLiteral("7")}, true);
        row("in empty list", M::InList, "id", ints({}), false);
        row("not in empty list", M::InList | M::Not, "id", ints({}), true);
        row("text in list", M::InList, "foundry", QStringList{name("Alpha"), name("Beta")}, true);
        row("moment in list", M::InList, "dateActivated", QVariantList{QDateTime::fromSecsSinceEpoch(1000)}, true);
        row("sets share one", M::InList, "supportedSubsets", set({9, 70}), true);
        row("sets share none", M::InList, "supportedSubsets", set({9, 71}), false);

        row("less", M::Less, "hwe", 171, true);
        row("not less", M::Less, "hwe", 170, false);
        row("less or equal", M::LessOrEqual, "hwe", 170, true);
        row("greater", M::Greater, "hwe", 169, true);
        row("greater or equal", M::GreaterOrEqual, "hwe", 171, false);
        row("later", M::Greater, "dateActivated", QDateTime::fromSecsSinceEpoch(999), true);
        row("bits in common", M::BitwiseAnd, "hwe", 2, true); // 170 = 10101010b
        row("no bits in common", M::BitwiseAnd, "hwe", 1, false);
        row("either has bits", M::BitwiseOr, "hhe", 0, false);
        row("complement", M::BitwiseNot, "hwe", 0, true);
        row("bits differ", M::BitwiseXor, "hwe", 170, false);
        row("first operator decides", M::Equal | M::Less, "hwe", 171, false);

        row("contains minds case", M::Contains, "familyName", QStringLiteral("antiqua"), false);
        row("contains", M::Contains, "familyName", QStringLiteral("Anti"), true);
        row("contains empty", M::Contains, "familyName", QString(), true);
        row("starts", M::StartsWith, "fileName", QStringLiteral("/f/"), true);
        row("ends", M::EndsWith, "fileName", QStringLiteral(".ttf"), true);
        row("not ends", M::EndsWith | M::Not, "fileName", QStringLiteral(".ttf"), false);
        row("in a number's digits", M::Contains, "hwe", QStringLiteral("7"), true);
        row("in a url", M::Contains, "vendorUrl", QStringLiteral("beta."), true);
        row("set contains all", M::Contains, "supportedSubsets", set({1, 70}), true);
        row("set lacks one", M::Contains, "supportedSubsets", set({1, 5}), false);
        row("set contains one", M::Contains, "supportedSubsets", 4, true);
        row("nothing asked", 0, "id", 99, true);
        row("only not asked", M::Not, "id", 99, true);
    }

    void leaves()
    {
        QFETCH(int, flags);
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        QFETCH(bool, matches);
        QCOMPARE(CompiledCriteria(M::leaf(flags, property, value)).matches(*sampleFont()), matches);
    }

    void caseCanBeIgnored()
    {
        const auto finds = [](int flags, const char* property, const QString& word) {
            return CompiledCriteria(M::leaf(flags, name(property), word, Qt::CaseInsensitive)).matches(*sampleFont());
        };
        QVERIFY(finds(M::Contains, "familyName", QStringLiteral("ANTI")));
        QVERIFY(finds(M::StartsWith, "familyName", QStringLiteral("gro")));
        QVERIFY(finds(M::EndsWith, "familyName", QStringLiteral("QUA")));
        QVERIFY(finds(M::Contains, "license", QStringLiteral("WÖLFCHEN"))); // a long, shared text
        QVERIFY(finds(M::Contains, "fileName", QStringLiteral("ga.TTF")));  // a text of its own
        QVERIFY(!finds(M::Contains, "familyName", QStringLiteral("grosse")));
    }

    void fontHashIsComputedForTheQuestion()
    {
        const StaticFontPtr font = sampleFont();
        const QString hash = sampleFont()->fontHash();
        QVERIFY(CompiledCriteria(M::leaf(M::InList, name("fontHash"), QStringList{hash})).matches(*font));
        QVERIFY(!CompiledCriteria(M::leaf(M::Equal, name("fontHash"), QString())).matches(*sampleFont()));
    }

    void groupsJoinTheirChildren()
    {
        const auto yes = M::leaf(M::Equal, name("id"), 7);
        const auto no = M::leaf(M::Equal, name("id"), 8);
        const auto matches = [](const MatchingCriteriaPtr& criteria) {
            return CompiledCriteria(criteria).matches(*sampleFont());
        };
        QVERIFY(matches(MatchingCriteriaPtr()));
        QVERIFY(matches(M::allOf()));
        QVERIFY(matches(M::anyOf()));
        QVERIFY(matches(M::allOf({yes, M::anyOf()})));
        QVERIFY(matches(M::allOf({yes, yes})));
        QVERIFY(!matches(M::allOf({yes, no})));
        QVERIFY(matches(M::anyOf({no, yes})));
        QVERIFY(!matches(M::anyOf({no, no})));
        QVERIFY(matches(M::allOf({yes, M::anyOf({no, M::allOf({yes, yes})})})));
        QVERIFY(!matches(M::allOf({M::anyOf({no, no}), yes})));

        const auto group = M::allOf({yes});
        QVERIFY(!group->isEmpty());
        QVERIFY(group->child(0) == yes);
        QVERIFY(!group->child(1));
        QVERIFY(M::anyOf()->isEmpty());
        QVERIFY(!yes->isEmpty());
    }

    // Case-insensitive search over folded texts finds what QString finds.
    void foldedSearchAgreesWithQString()
    {
        const QString letters = QStringLiteral("abcABC äÄßẞ-.ıİKkſs") + QString::fromUcs4(U"\U00010400\U00010428");
        QRandomGenerator random(4711);
        const auto text = [&](int longest) {
            QString result;
            const int length = random.bounded(longest + 1);
            while (result.size() < length) {
                const int i = random.bounded(letters.size());
                if (letters.at(i).isHighSurrogate())
                    result += letters.mid(i, 2);
                else if (!letters.at(i).isLowSurrogate())
                    result += letters.at(i);
            }
            return result;
        };
        for (int i = 0; i < 20000; ++i) {
            const QString haystack = text(30);
            const QString word = text(3);
            const bool expected = haystack.contains(word, Qt::CaseInsensitive);
            if (fms::FoldedWord(word).isIn(fms::foldedText(haystack)) != expected)
                QFAIL(qPrintable(haystack + QStringLiteral(" / ") + word));
        }
    }

    // Random criteria over random records, in memory and through SQL. Texts and values are such that both mean the
    // same: LIKE knows no other case than ASCII's, and stored moments of 0 are absent.
    void memoryAndSqlAgree()
    {
        QTemporaryDir folder;
        RelationalFontRepositoryStrategy strategy(
            QSharedPointer<FontDatabase>::create(folder.filePath(QStringLiteral("fms.db"))));
        QRandomGenerator random(99);
        const QStringList words{name(""), name("alpha"), name("beta"), name("alphabeta")};
        QList<StaticFontPtr> fonts;
        for (int i = 0; i < 200; ++i) {
            fonts.append(StaticFontPtr::create());
            fonts.last()->setFamilyName(words.at(random.bounded(4)));
            fonts.last()->setFoundry(words.at(random.bounded(4)));
            fonts.last()->setHwe(random.bounded(4));
            fonts.last()->setIsBold(random.bounded(2));
            QSet<int> subsets;
            for (int s = 0; s < 4; ++s) {
                if (random.bounded(2))
                    subsets.insert(s * 11);
            }
            fonts.last()->setSupportedSubsets(subsets);
        }
        QVERIFY(strategy.addFonts(fonts));

        const std::function<MatchingCriteriaPtr(int)> make = [&](int depth) {
            if (depth > 0 && random.bounded(3) == 0) {
                auto group = random.bounded(2) ? M::allOf() : M::anyOf();
                for (int i = random.bounded(4); i > 0; --i)
                    group->append(make(depth - 1));
                return group;
            }
            const int negation = random.bounded(4) ? 0 : int(M::Not);
            switch (random.bounded(4)) {
            case 0: {
                static const int operators[] = {M::Equal, M::Contains, M::StartsWith, M::EndsWith};
                return M::leaf(negation | operators[random.bounded(4)], name("familyName"),
                               words.at(random.bounded(4)));
            }
            case 1: {
                static const int operators[] = {M::Equal,          M::Less,       M::LessOrEqual, M::Greater,
                                                M::GreaterOrEqual, M::BitwiseAnd, M::BitwiseXor,  M::BitwiseOr};
                // NOT a & b is (NOT a) & b in no reading of SQL: the operator binds closer.
                return M::leaf(negation | operators[random.bounded(8)], name("hwe"), random.bounded(4));
            }
            case 2:
                return M::leaf(negation | M::InList, name("foundry"), QStringList(words.mid(random.bounded(4), 2)));
            default: {
                const QSet<int> asked{random.bounded(4) * 11, random.bounded(4) * 11};
                return M::leaf(negation | (random.bounded(2) ? M::InList : M::Contains), name("supportedSubsets"),
                               QVariant::fromValue(asked));
            }
            }
        };
        for (int round = 0; round < 300; ++round) {
            const auto criteria = M::allOf({make(2), make(2)});
            const CompiledCriteria compiled(criteria);
            QList<int> expected;
            for (const StaticFontPtr& font : qAsConst(fonts)) {
                if (compiled.matches(*font))
                    expected.append(font->id());
            }
            QCOMPARE(strategy.findMatchingFontIds(criteria), expected);
        }
    }

    void conditionWithoutColumnIsPutToTheId()
    {
        QTemporaryDir folder;
        RelationalFontRepositoryStrategy strategy(
            QSharedPointer<FontDatabase>::create(folder.filePath(QStringLiteral("fms.db"))));
        QVERIFY(strategy.addFonts({StaticFontPtr::create(), StaticFontPtr::create()}));
        QCOMPARE(strategy.findMatchingFontIds(M::leaf(M::Equal, name("isHidden"), 2)), QList<int>{2});
    }

    void cachedCommandKeepsOrderAndSorts()
    {
        QList<StaticFontPtr> fonts;
        for (int id : {5, 3, 9, 1}) {
            fonts.append(StaticFontPtr::create());
            fonts.last()->setId(id);
            fonts.last()->setFamilyName(QString::number(id % 3));
        }
        const auto ids = [&](const char* order, Qt::SortOrder direction) {
            CachedFindMathingFontsCommand command(fonts, M::leaf(M::Greater, name("id"), 1), true);
            command.setOrdering(name(order), direction);
            command.start();
            command.waitForFinished();
            return command.fontIds();
        };
        QCOMPARE(ids("", Qt::AscendingOrder), (QList<int>{5, 3, 9}));
        QCOMPARE(ids("id", Qt::AscendingOrder), (QList<int>{3, 5, 9}));
        QCOMPARE(ids("familyName", Qt::DescendingOrder), (QList<int>{5, 3, 9}));
        QCOMPARE(ids("supportedSubsets", Qt::AscendingOrder), (QList<int>{5, 3, 9}));
        QVERIFY(!FontOrder(name("nonsense")).isValid());
    }

    void cancelledCommandDoesNothing()
    {
        CachedFindMathingFontsCommand command({sampleFont()}, MatchingCriteriaPtr(), false);
        QSignalSpy spy(&command, &AbstractAsynchronousCommand::stateChanged);
        command.cancel();
        command.start();
        command.waitForFinished();
        QCOMPARE(command.state(), AbstractAsynchronousCommand::Cancelled);
        QVERIFY(command.fonts().isEmpty());
        QCOMPARE(spy.count(), 1);
    }
};

KERVAL_TEST(TestCriteria)

#include "tst_criteria.moc"
