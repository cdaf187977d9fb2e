#include "qtService/management/KrvSimilarityWrapper.h"

#include "helpers/common/ByteScrambling.h"
#include "qtService/app/core/PathCodec.h"
#include "qtService/management/SimilarFontsGroup.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace kerval::testing;

namespace {

using Match = QPair<int, double>;

// Stand-ins for the two programs in a folder of their own; each notes how it was called.
struct FakePrograms
{
    FakePrograms()
    {
        QDir(folder.path()).mkpath(QStringLiteral("features"));
        setSearch(search("1:0.25\n2:3\n"));
        setExtraction("touch '" + path("features/ids.bin").toUtf8() + "' '" +
                      path("features/features_97.bin").toUtf8() + "'\n");
        wrapper.reset(create());
    }

    KrvSimilarityWrapper* create() const
    {
        return new KrvSimilarityWrapper(path("extract"), path("find"), path("features"), {}, QStringLiteral("/d/f.db"),
                                        1, QString(), QString());
    }
    QString path(const char* name) const { return folder.filePath(QLatin1String(name)); }
    QByteArray noting(const char* name) const
    {
        return "printf '%s\\n' \"" + QByteArray(name) + " $*\" >> '" + path("log").toUtf8() + "'\n";
    }
    QByteArray search(const std::string& text) const
    {
        writeFile(path("answer"), QByteArray::fromStdString(kerval::helpers::seal(text)));
        return "cat '" + path("answer").toUtf8() + "'\n";
    }
    void setSearch(const QByteArray& commands) { writeScript(path("find"), noting("find") + commands); }
    void setExtraction(const QByteArray& commands) { writeScript(path("extract"), noting("extract") + commands); }
    QStringList log() const
    {
        return QString::fromUtf8(QFile::exists(path("log")) ? readFile(path("log")) : QByteArray())
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    // Asks and waits; the matches, the error in `error`.
    QList<Match> ask(int* error, const QString& inIds = QString())
    {
        QSignalSpy done(wrapper.data(), &KrvSimilarityWrapper::similarityDone);
        wrapper->requestSimilar(5, QStringLiteral("htlaf"), 10, inIds, 42);
        if (!done.isEmpty() || !done.wait(20000))
            qFatal("no answer, or one too early");
        *error = done.first().at(2).toInt();
        if (done.size() != 1 || done.first().at(0).value<KrvSimilarityWrapper::Request>().criteria != 42)
            qFatal("the answer is not the request's");
        return done.first().at(1).value<KrvSimilarityWrapper::Result>().matches;
    }

    QTemporaryDir folder;
    QScopedPointer<KrvSimilarityWrapper> wrapper;
};

} // namespace

class SimilarityWrapperTest : public QObject
{
    Q_OBJECT

private slots:
    void extractsOnceThenSearches();
    void passesIdsThroughStandardInput();
    void answersInTheOrderOfAsking();
    void namesErrors_data();
    void namesErrors();
    void endsProgramsThatDoNot_data();
    void endsProgramsThatDoNot();
    void namesAFolderThatCannotBe();
    void rebuildsAClearedFolder();
    void rebuildsAFolderFoundDamaged();
    void extractsOnceForSeveral();
    void takesOverFromOneThatLeft();
    void usesWhatWasClearedWhileExtracting();
    void knowsTheCharactersOfEachMethod();
};

void SimilarityWrapperTest::extractsOnceThenSearches()
{
    FakePrograms programs;
    int error = -1;
    QCOMPARE(programs.ask(&error), QList<Match>({{1, 0.25}, {2, 3.0}}));
    QCOMPARE(error, int(KrvSimilarityWrapper::Success));
    const QString folder = QString::fromLatin1(krv::encodePath(programs.path("features")));
    QCOMPARE(
        programs.log(),
        QStringList(
            {QStringLiteral("extract --createfolder -d 0x2f642f662e6462 -f %1 -r QSQLITE -m zerocharacter").arg(folder),
             QStringLiteral("find -f %1 -t htlaf -i 5 -l 10 -o {id}:{deviance}\\n -m similar").arg(folder)}));
    programs.ask(&error);
    QCOMPARE(programs.log().size(), 3);
}

void SimilarityWrapperTest::passesIdsThroughStandardInput()
{
    FakePrograms programs;
    programs.setSearch("read line; echo \"ids $line\" >> '" + programs.path("log").toUtf8() + "'\n" +
                       programs.search("3:0\n"));
    int error = -1;
    QCOMPARE(programs.ask(&error, QStringLiteral("3, 4,5")), QList<Match>({{3, 0.0}}));
    QVERIFY(programs.log().at(1).endsWith(QStringLiteral("-m similar --stdininids")));
    QCOMPARE(programs.log().at(2), QStringLiteral("ids 3,4,5"));
}

void SimilarityWrapperTest::answersInTheOrderOfAsking()
{
    FakePrograms programs;
    QSignalSpy done(programs.wrapper.data(), &KrvSimilarityWrapper::similarityDone);
    programs.wrapper->requestHarmonyContrast(1, QStringLiteral("Q"), 1, QString(), QVariant());
    programs.wrapper->requestSmartChoiceBody(2, QStringLiteral("h"), 2, QString(), QVariant());
    programs.wrapper->requestHarmonySameFamily(3, QStringLiteral("h"), 3, QString(), QVariant());
    QTRY_COMPARE(done.size(), 3);
    QStringList modes;
    for (const auto& arguments : done)
        modes.append(arguments.at(0).value<KrvSimilarityWrapper::Request>().mode);
    QCOMPARE(modes, QStringList({QStringLiteral("harcont"), QStringLiteral("smartbody"), QStringLiteral("harsfam")}));
    QCOMPARE(programs.log().filter(QStringLiteral("extract")).size(), 1);
}

void SimilarityWrapperTest::namesErrors_data()
{
    QTest::addColumn<QByteArray>("extraction");
    QTest::addColumn<QByteArray>("search");
    QTest::addColumn<int>("error");
    const QByteArray missing("missing");
    const QByteArray good;
    QTest::newRow("no extraction program") << missing << good << int(KrvSimilarityWrapper::ExtractionUnavailable);
    QTest::newRow("no search program") << good << missing << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("extraction fails") << QByteArray("exit 1\n") << good << int(KrvSimilarityWrapper::FeaturesNotReady);
    QTest::newRow("extraction is killed")
        << QByteArray("kill -KILL $$\n") << good << int(KrvSimilarityWrapper::FeaturesNotReady);
    QTest::newRow("search fails") << good << QByteArray("exit 4\n") << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("search is killed") << good << QByteArray("kill -KILL $$\n")
                                      << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("no base64") << good << QByteArray("echo '{1:2}'\n") << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("no matches in it") << good << QByteArray("seal a:b\n") << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("a part too many") << good << QByteArray("seal 1:2:3\n") << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("nothing alike") << good << QByteArray("exit 0\n") << int(KrvSimilarityWrapper::Success);
}

void SimilarityWrapperTest::namesErrors()
{
    QFETCH(QByteArray, extraction);
    QFETCH(QByteArray, search);
    QFETCH(int, error);
    FakePrograms programs;
    if (extraction == "missing")
        QFile::remove(programs.path("extract"));
    else if (!extraction.isEmpty())
        programs.setExtraction(extraction);
    if (search == "missing")
        QFile::remove(programs.path("find"));
    else if (search.startsWith("seal "))
        programs.setSearch(programs.search(search.mid(5).toStdString()));
    else if (!search.isEmpty())
        programs.setSearch(search);
    int answered = -1;
    QVERIFY(programs.ask(&answered).isEmpty());
    QCOMPARE(answered, error);
    // The next request is not held up.
    programs.ask(&answered);
    QCOMPARE(answered, error);
}

void SimilarityWrapperTest::endsProgramsThatDoNot_data()
{
    QTest::addColumn<QByteArray>("extraction");
    QTest::addColumn<QByteArray>("search");
    QTest::addColumn<int>("searchLimit");
    QTest::addColumn<int>("error");
    const QByteArray good;
    const QByteArray sleeping("exec sleep 1000\n");
    QTest::newRow("extraction sleeps") << sleeping << good << 100000 << int(KrvSimilarityWrapper::FeaturesNotReady);
    QTest::newRow("search sleeps") << good << sleeping << 200 << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("search babbles") << good << QByteArray("exec yes babble\n") << 100000
                                    << int(KrvSimilarityWrapper::SearchFailed);
    QTest::newRow("search complains for ever")
        << good << QByteArray("exec yes babble >&2\n") << 500 << int(KrvSimilarityWrapper::SearchFailed);
}

void SimilarityWrapperTest::endsProgramsThatDoNot()
{
    QFETCH(QByteArray, extraction);
    QFETCH(QByteArray, search);
    QFETCH(int, searchLimit);
    QFETCH(int, error);
    FakePrograms programs;
    if (!extraction.isEmpty())
        programs.setExtraction(extraction);
    if (!search.isEmpty())
        programs.setSearch(search);
    programs.wrapper->setTimeLimits(extraction.isEmpty() ? 100000 : 200, searchLimit);
    int answered = -1;
    QVERIFY(programs.ask(&answered).isEmpty());
    QCOMPARE(answered, error);
    // What comes after it is answered as ever.
    programs.setSearch(programs.search("7:0\n"));
    writeFile(programs.path("features/ids.bin"), QByteArray());
    QCOMPARE(programs.ask(&answered), QList<Match>({{7, 0.0}}));
}

void SimilarityWrapperTest::namesAFolderThatCannotBe()
{
    FakePrograms programs;
    QDir(programs.path("features")).removeRecursively();
    writeFile(programs.path("features"), "a file");
    int answered = -1;
    programs.ask(&answered);
    QCOMPARE(answered, int(KrvSimilarityWrapper::ExtractionUnavailable));
    QFile::remove(programs.path("features"));
    programs.ask(&answered);
    QCOMPARE(answered, int(KrvSimilarityWrapper::Success));
}

void SimilarityWrapperTest::rebuildsAClearedFolder()
{
    FakePrograms programs;
    int error = -1;
    programs.ask(&error);
    QVERIFY(programs.wrapper->clearFeatures());
    QVERIFY(QDir(programs.path("features")).isEmpty());
    programs.ask(&error);
    QCOMPARE(error, 0);
    QCOMPARE(programs.log().filter(QStringLiteral("extract")).size(), 2);
}

void SimilarityWrapperTest::rebuildsAFolderFoundDamaged()
{
    FakePrograms programs;
    writeFile(programs.path("features/ids.bin"), "damaged");
    // Takes what is damaged away, as the real program does.
    const QByteArray ids = "'" + programs.path("features/ids.bin").toUtf8() + "'";
    programs.setSearch("if [ -s " + ids + " ]; then rm " + ids + "; exit 3; fi\n" + programs.search("1:0\n"));
    int error = -1;
    QCOMPARE(programs.ask(&error), QList<Match>({{1, 0.0}}));
    QCOMPARE(programs.log().filter(QStringLiteral("extract")).size(), 1);
}

void SimilarityWrapperTest::extractsOnceForSeveral()
{
    FakePrograms programs;
    const QScopedPointer<KrvSimilarityWrapper> other(new KrvSimilarityWrapper(*programs.wrapper));
    QSignalSpy first(programs.wrapper.data(), &KrvSimilarityWrapper::similarityDone);
    QSignalSpy second(other.data(), &KrvSimilarityWrapper::similarityDone);
    programs.wrapper->requestSimilar(1, QStringLiteral("h"), 1, QString(), QVariant());
    other->requestSimilar(2, QStringLiteral("h"), 1, QString(), QVariant());
    QTRY_COMPARE(first.size() + second.size(), 2);
    QCOMPARE(first.first().at(2).toInt() + second.first().at(2).toInt(), 0);
    QCOMPARE(programs.log().filter(QStringLiteral("extract")).size(), 1);
}

void SimilarityWrapperTest::takesOverFromOneThatLeft()
{
    FakePrograms programs;
    const QByteArray mark = "'" + programs.path("mark").toUtf8() + "'";
    programs.setExtraction("[ -e " + mark + " ] || { touch " + mark + "; exec sleep 1000; }\ntouch '" +
                           programs.path("features/ids.bin").toUtf8() + "'\n");
    QScopedPointer<KrvSimilarityWrapper> leaving(new KrvSimilarityWrapper(*programs.wrapper));
    leaving->requestSimilar(2, QStringLiteral("h"), 1, QString(), QVariant());
    QTRY_VERIFY(QFile::exists(programs.path("mark")));
    QSignalSpy done(programs.wrapper.data(), &KrvSimilarityWrapper::similarityDone);
    programs.wrapper->requestSimilar(1, QStringLiteral("h"), 1, QString(), QVariant());
    QCoreApplication::processEvents();
    QVERIFY(done.isEmpty());
    leaving.reset();
    QTRY_COMPARE(done.size(), 1);
    QCOMPARE(done.first().at(2).toInt(), 0);
}

void SimilarityWrapperTest::usesWhatWasClearedWhileExtracting()
{
    FakePrograms programs;
    const QByteArray go = "'" + programs.path("go").toUtf8() + "'";
    programs.setExtraction("while [ ! -e " + go + " ]; do sleep 0.01; done\ntouch '" +
                           programs.path("features/ids.bin").toUtf8() + "'\n");
    QSignalSpy done(programs.wrapper.data(), &KrvSimilarityWrapper::similarityDone);
    programs.wrapper->requestSimilar(1, QStringLiteral("h"), 1, QString(), QVariant());
    QTRY_COMPARE(programs.log().size(), 1);
    programs.wrapper->clearFeatures();
    writeFile(programs.path("go"), QByteArray());
    QTRY_COMPARE(done.size(), 1);
    QCOMPARE(done.first().at(2).toInt(), 0);
    // The next one has them made anew.
    int error = -1;
    programs.ask(&error);
    QCOMPARE(programs.log().filter(QStringLiteral("extract")).size(), 2);
}

void SimilarityWrapperTest::knowsTheCharactersOfEachMethod()
{
    QCOMPARE(SimilarFontsGroup::charactersForMethod(SimilarFontsGroup::HarmonyContrast), QStringLiteral("QhltGMJKaWf"));
    QCOMPARE(SimilarFontsGroup::charactersForMethod(SimilarFontsGroup::SmartChoiceBody), QStringLiteral("htlaf"));
}

KERVAL_TEST(SimilarityWrapperTest)
#include "SimilarityWrapperTest.moc"
