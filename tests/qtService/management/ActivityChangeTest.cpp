#include "qtService/management/FontActivityChangeCommand.h"
#include "qtService/management/SystemFontsGroup.h"
#include "qtService/management/systemfm/SystemFontManager.h"
#include "tests/qtService/database/FakeFontManagerStrategy.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/support/testregistry.h"

#include <QSignalSpy>
#include <QtTest>

using namespace kerval::systemfm;

namespace {

// Refuses files by their names, some only when the batch is carried out.
class RefusingStrategy : public FakeFontManagerStrategy
{
public:
    QHash<QString, int> activatePermanently(const QString& fileName, const QStringList& fontNames) override
    {
        asked.append({fileName, fontNames});
        if (fileName.contains(QLatin1String("late")))
            failing.insert(fileName, RegistrationFailed);
        return sameForAll(fontNames, fileName.contains(QLatin1String("unloadable")) ? LoadFailed
                                     : fileName.contains(QLatin1String("refused"))  ? RegistrationFailed
                                                                                    : Done);
    }
    QHash<QString, int> endBatch() override { return std::exchange(failing, {}); }
    void notifyFontChange() override { ++notified; }

    QList<QPair<QString, QStringList>> asked;
    QHash<QString, int> failing;
    int notified = 0;
};

} // namespace

class ActivityChangeTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_library.reset(new TestLibrary); }
    void everyFontHasItsOwnOutcome();
    void namesInUseAreConflicts();
    void aCollectionGoesAsAWhole();
    void systemFontsStay();
    void datesTellWhatHappenedWhen();
    void cancellingKeepsWhatIsDone();

private:
    QHash<int, ActivityChangeResult> run(const QList<int>& ids, ActivityType type,
                                         const QSharedPointer<FontGroup>& systemFonts = {},
                                         SystemFontManager* manager = nullptr)
    {
        FontActivityChangeCommand command(m_library->repository, systemFonts, ids, type,
                                          manager ? manager : m_library->systemFontManager.data());
        QSignalSpy current(&command, &FontActivityChangeCommand::currentFontChanged);
        command.start();
        command.waitForFinished();
        [&] {
            QCOMPARE(command.state(), AbstractAsynchronousCommand::Finished);
            QCOMPARE(command.progressTotal(), ids.size());
            QCOMPARE(command.progressCurrent(), ids.size());
        }();
        return command.results();
    }
    StaticFontPtr add(const QString& file, const QString& postScriptName, int face = 0)
    {
        const StaticFontPtr font = TestLibrary::makeFont(file, file, face);
        font->setPostScriptName(postScriptName);
        m_library->addFonts({font});
        return m_library->repository->font(font->id());
    }

    QScopedPointer<TestLibrary> m_library;
};

void ActivityChangeTest::everyFontHasItsOwnOutcome()
{
    auto strategy = std::make_unique<RefusingStrategy>();
    RefusingStrategy* const system = strategy.get();
    SystemFontManager manager(std::move(strategy), nullptr);
    const StaticFontPtr good = add(QStringLiteral("/x/good.ttf"), QStringLiteral("Good"));
    const StaticFontPtr refused = add(QStringLiteral("/x/refused.ttf"), QStringLiteral("Refused"));
    const StaticFontPtr late = add(QStringLiteral("/x/late.ttf"), QStringLiteral("Late"));
    const StaticFontPtr unloadable = add(QStringLiteral("/x/unloadable.ttf"), QStringLiteral("Unloadable"));
    const StaticFontPtr nameless = add(QString(), QStringLiteral("Nameless"));
    const auto results =
        run({good->id(), 4711, refused->id(), late->id(), unloadable->id(), nameless->id(), good->id()},
            PermanentlyActive, {}, &manager);
    QCOMPARE(results.size(), 6);
    QCOMPARE(results[good->id()].error, 0);
    QCOMPARE(results[4711].error, 20);
    QCOMPARE(results[refused->id()].error, 17);
    QCOMPARE(results[late->id()].error, 17);
    QCOMPARE(results[unloadable->id()].error, 18);
    QCOMPARE(results[nameless->id()].error, 23);
    QCOMPARE(system->notified, 1);
    QCOMPARE(good->activityType(), int(PermanentlyActive));
    for (const StaticFontPtr& font : {refused, late, unloadable, nameless})
        QCOMPARE(font->activityType(), int(Inactive));
}

void ActivityChangeTest::namesInUseAreConflicts()
{
    const StaticFontPtr first = add(QStringLiteral("/x/first.ttf"), QStringLiteral("Same"));
    const StaticFontPtr second = add(QStringLiteral("/x/second.ttf"), QStringLiteral("Same"));
    const StaticFontPtr gone = add(QStringLiteral("/x/gone.ttf"), QStringLiteral("Same"));
    const StaticFontPtr unnamed = add(QStringLiteral("/x/unnamed.ttf"), QString());
    const StaticFontPtr unnamedToo = add(QStringLiteral("/x/unnamed too.ttf"), QString());

    auto results = run({first->id(), second->id(), unnamed->id(), unnamedToo->id()}, TemporarilyActive);
    QCOMPARE(results[first->id()].error, 0);
    QCOMPARE(results[second->id()].error, 18);
    QCOMPARE(results[second->id()].conflictingFontId, first->id());
    QCOMPARE(results[unnamed->id()].error, 0);
    QCOMPARE(results[unnamedToo->id()].error, 0);

    results = run({second->id()}, PermanentlyActive);
    QCOMPARE(results[second->id()].error, 18);
    QCOMPARE(results[second->id()].conflictingFontId, first->id());
    QCOMPARE(second->activityType(), int(Inactive));

    // Again for itself, and beside one whose file is gone, is none.
    QCOMPARE(run({first->id()}, PermanentlyActive)[first->id()].error, 0);
    QCOMPARE(run({first->id()}, Inactive)[first->id()].error, 0);
    QCOMPARE(run({gone->id()}, PermanentlyActive)[gone->id()].error, 0);
    gone->setFileExists(false);
    m_library->repository->updateFonts({gone}, {QStringLiteral("fileExists")});
    QCOMPARE(run({second->id()}, PermanentlyActive)[second->id()].error, 0);
}

void ActivityChangeTest::aCollectionGoesAsAWhole()
{
    const QString file = QStringLiteral("/x/two.ttc");
    const StaticFontPtr first = add(file, QStringLiteral("Same"), 0);
    const StaticFontPtr second = add(file, QStringLiteral("Same"), 1);
    auto results = run({second->id()}, PermanentlyActive);
    QCOMPARE(results.keys(), QList<int>{second->id()});
    QCOMPARE(results[second->id()].error, 0);
    QCOMPARE(first->activityType(), int(PermanentlyActive));
    QCOMPARE(m_library->systemFonts->installedFontFiles(), QStringList{file});

    results = run({first->id(), second->id()}, TemporarilyActive);
    QCOMPARE(results[first->id()].error, 0);
    QCOMPARE(results[second->id()].error, 0);
    run({first->id()}, Inactive);
    QCOMPARE(second->activityType(), int(Inactive));
}

void ActivityChangeTest::systemFontsStay()
{
    const StaticFontPtr core = add(QStringLiteral("/usr/share/fonts/core.otf"), QStringLiteral("Core"));
    const StaticFontPtr other = add(QStringLiteral("/usr/share/fonts/other.otf"), QStringLiteral("Other"));
    m_library->systemFonts->setActive({{core->fileName(), PermanentlyActive}, {other->fileName(), PermanentlyActive}});
    const auto group = QSharedPointer<SystemFontsGroup>::create(
        m_library->repository, QStringLiteral("/usr/share/fonts"), QStringList{QStringLiteral("core.otf")});
    QTRY_COMPARE(core->activityType(), int(PermanentlyActive));
    for (const ActivityType type : {TemporarilyActive, Inactive}) {
        const auto results = run({core->id(), other->id()}, type, group);
        QCOMPARE(results[core->id()].error, 19);
        QCOMPARE(results[other->id()].error, 0);
        QCOMPARE(core->activityType(), int(PermanentlyActive));
        QCOMPARE(other->activityType(), int(type));
    }
    QCOMPARE(run({core->id()}, PermanentlyActive, group)[core->id()].error, 0);
}

void ActivityChangeTest::datesTellWhatHappenedWhen()
{
    const StaticFontPtr font = add(QStringLiteral("/x/a.ttf"), QStringLiteral("A"));
    QSignalSpy changed(m_library->repository.data(), &FontCollectionInterface::fontsChanged);
    const QDateTime before = QDateTime::currentDateTime();
    run({font->id()}, PermanentlyActive);
    QVERIFY(font->dateActivated() >= before);
    QCOMPARE(font->dateDeactivated().toMSecsSinceEpoch(), qint64(0));
    run({font->id()}, Inactive);
    QVERIFY(font->dateDeactivated() >= font->dateActivated());
    QTRY_COMPARE(changed.size(), 2);

    // They are stored, and the activity is what the system says.
    m_library->restart();
    const StaticFontPtr stored = m_library->repository->font(font->id());
    QVERIFY(stored->dateActivated() >= before.addSecs(-1));
    QVERIFY(stored->dateDeactivated().toMSecsSinceEpoch() > 0);
    QCOMPARE(stored->activityType(), int(Inactive));
}

void ActivityChangeTest::cancellingKeepsWhatIsDone()
{
    QList<int> ids;
    for (int i = 0; i < 5; ++i)
        ids.append(add(QStringLiteral("/x/%1.ttf").arg(i), QStringLiteral("Font%1").arg(i))->id());
    FontActivityChangeCommand command(m_library->repository, {}, ids, PermanentlyActive,
                                      m_library->systemFontManager.data());
    connect(
        &command, &FontActivityChangeCommand::currentFontChanged, &command,
        [&] {
            if (command.currentFont() && command.currentFont()->id() == ids.at(1))
                command.cancel();
        },
        Qt::DirectConnection);
    command.start();
    command.waitForFinished();
    QCOMPARE(command.state(), AbstractAsynchronousCommand::Cancelled);
    for (int i = 0; i < ids.size(); ++i) {
        const bool done = i <= 1;
        QCOMPARE(command.results().value(ids.at(i)).error, done ? int(fms::NoError) : int(fms::NotProcessed));
        QCOMPARE(m_library->repository->font(ids.at(i))->activityType(), done ? int(PermanentlyActive) : int(Inactive));
    }
}

KERVAL_TEST(ActivityChangeTest)
#include "ActivityChangeTest.moc"
