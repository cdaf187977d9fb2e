#include "tests/helpers/SmallCatalogue.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include "helpers/common/FeatureBlob.h"
#include "helpers/common/FeatureFolderLayout.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <limits>
#include <memory>

using namespace kerval::helpers;
using namespace kerval::testing;

// The folder of feature files, as the extraction program makes it.
class ExtractionTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void extractionWritesEveryFile();
    void extractionReadsOddRowsAsNothing();
    void extractionKeepsManyFontsInOrder();
    void extractionNamesWhatIsWrong_data();
    void extractionNamesWhatIsWrong();
    void requestsAtOnceExtractOnce();
    void killedExtractionLeavesTheOldSet();
    void fullDiskLeavesTheOldSet();
    void readersNeverSeeHalfASet();
    void leftoversAreCleared();

private:
    QString folder() const { return m_place->filePath(QStringLiteral("features")); }

    std::unique_ptr<QTemporaryDir> m_place;
    std::unique_ptr<SmallCatalogue> m_catalogue;
};

void ExtractionTest::init()
{
    m_place = std::make_unique<QTemporaryDir>();
    m_catalogue = std::make_unique<SmallCatalogue>(m_place->filePath(QStringLiteral("fms.db")));
}

void ExtractionTest::cleanup()
{
    m_catalogue.reset();
    m_place.reset();
}

void ExtractionTest::extractionWritesEveryFile()
{
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
    QCOMPARE(readFile(inFolder(folder(), featurefolder::idsFile)).size(), 3 * 4);
    for (const char character : featurefolder::characters) {
        const std::string name = featurefolder::characterFile(static_cast<unsigned char>(character));
        QCOMPARE(QFileInfo(inFolder(folder(), name)).size(), 3 * 244);
    }
    QCOMPARE(readFile(inFolder(folder(), featurefolder::serifFile)), QByteArray("\0\1\0", 3));
    QCOMPARE(readFile(inFolder(folder(), featurefolder::infoFile)),
             QByteArray("Alpha-Regular||modern\nGamma-Regular||classic\nBeta-Regular||modern\n"));
    FeatureVector maximums;
    QVERIFY(fromBytes(readFile(inFolder(folder(), featurefolder::maximumsFile)).toStdString(), maximums));
    QCOMPARE(maximums[0], 1.5F);
    QCOMPARE(maximums[60], 1.5F);
    QVERIFY(QDir(folder()).entryList({QStringLiteral(".new-*")}, QDir::AllEntries | QDir::Hidden).isEmpty());
}

void ExtractionTest::extractionReadsOddRowsAsNothing()
{
    FeatureVector odd;
    odd.fill(2);
    odd[4] = std::numeric_limits<float>::quiet_NaN();
    odd[5] = std::numeric_limits<float>::infinity();
    odd[60] = -std::numeric_limits<float>::infinity();
    std::string blob;
    appendFeature(blob, 'a', odd);
    appendFeature(blob, 7, odd); // no letter
    blob += "b and a cut end";
    m_catalogue->addFont(1, "Line\nBreak||Bar", "");
    m_catalogue->addBlob(1, blob);
    m_catalogue->addFont(2, "NoFeatures", "Symbol");
    m_catalogue->addBlob(77, blob); // a font that is gone
    m_catalogue->run("INSERT INTO feature VALUES ('text', NULL, 3.5)");
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    QCOMPARE(readFile(inFolder(folder(), featurefolder::infoFile)), QByteArray("Line_Break__Bar||\nNoFeatures||\n"));
    const QByteArray a = readFile(inFolder(folder(), featurefolder::characterFile('a')));
    QCOMPARE(a.size(), 2 * 244);
    FeatureVector read;
    QVERIFY(fromBytes(a.left(244).toStdString(), read));
    QCOMPARE(read[3], 2.0F);
    QCOMPARE(read[4], 0.0F);
    QCOMPARE(read[5], 0.0F);
    QCOMPARE(read[60], 0.0F);
    QCOMPARE(a.mid(244), QByteArray(244, 0));
}

// More fonts than one thread takes at a time, of which every third lacks a letter and the last one its row.
void ExtractionTest::extractionKeepsManyFontsInOrder()
{
    constexpr int fonts = 9000;
    m_catalogue->run("BEGIN");
    for (int id = 1; id <= fonts; ++id) {
        std::string blob;
        FeatureVector values;
        for (const unsigned char letter : {'z', 'A', '5'}) {
            values.fill(float(letter + 1000 * id));
            if (letter != 'A' || id % 3 != 0)
                appendFeature(blob, letter, values);
        }
        m_catalogue->addFont(id, "Font", "");
        m_catalogue->addBlob(id, blob);
    }
    m_catalogue->run("DELETE FROM feature WHERE font_id = 9000");
    m_catalogue->run("COMMIT");
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    for (const unsigned char letter : {'z', 'A', '5', 'q'}) {
        const QByteArray file = readFile(inFolder(folder(), featurefolder::characterFile(letter)));
        QCOMPARE(file.size(), fonts * 244);
        for (int id = 1; id <= fonts; ++id) {
            FeatureVector expected;
            const bool lacks = letter == 'q' || (letter == 'A' && id % 3 == 0) || id == fonts;
            expected.fill(lacks ? 0 : float(letter + 1000 * id));
            FeatureVector read;
            QVERIFY(fromBytes(file.mid((id - 1) * 244, 244).toStdString(), read));
            QCOMPARE(read, expected);
        }
    }
}

void ExtractionTest::extractionNamesWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("replaced"); // index in the command line, new value
    const QStringList none;
    QTest::newRow("no file") << QByteArray() << none;
    QTest::newRow("no database") << QByteArray(5000, 'x') << none;
    QTest::newRow("cut database") << QByteArray("SQLite format 3\0", 16) << none;
    QTest::newRow("other driver") << QByteArray() << QStringList{QStringLiteral("6"), QStringLiteral("QMYSQL")};
    QTest::newRow("other mode") << QByteArray() << QStringList{QStringLiteral("8"), QStringLiteral("x")};
    QTest::newRow("odd digits") << QByteArray() << QStringList{QStringLiteral("2"), QStringLiteral("0x1")};
}

void ExtractionTest::extractionNamesWhatIsWrong()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, replaced);
    const QString database = m_place->filePath(QStringLiteral("foreign.db"));
    if (!content.isEmpty())
        writeFile(database, content);
    QStringList arguments = extraction(database, folder());
    if (!replaced.isEmpty())
        arguments[replaced[0].toInt()] = replaced[1];
    const Answer answer = start(QStringLiteral("krvextractfeatures.exe"), arguments);
    QVERIFY(answer.exitCode > 0);
    QCOMPARE(answer.complaint.count('\n'), 1);
    QVERIFY(!QFile::exists(inFolder(folder(), featurefolder::idsFile)));
}

void ExtractionTest::requestsAtOnceExtractOnce()
{
    for (int id = 1; id <= 60; ++id)
        m_catalogue->add(id, "Face", "", float(id));
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < 4; ++i) {
        processes.push_back(std::make_unique<QProcess>());
        processes.back()->start(QStringLiteral(KERVAL_BIN_DIR "/krvextractfeatures.exe"),
                                extraction(m_catalogue->path(), folder()));
    }
    for (const auto& process : processes) {
        QVERIFY(process->waitForFinished());
        QCOMPARE(process->exitCode(), 0);
    }
    QCOMPARE(find(folder(), "similar", 30).ids.first(), 30);
}

void ExtractionTest::killedExtractionLeavesTheOldSet()
{
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
    m_catalogue->run("BEGIN");
    for (int id = 100; id < 1100; ++id)
        m_catalogue->add(id, "Face", "", float(id));
    m_catalogue->run("COMMIT");
    // Killed in the midst of its work, at ever other places.
    for (int round = 0; round < 5; ++round) {
        QProcess process;
        process.start(QStringLiteral(KERVAL_BIN_DIR "/krvextractfeatures.exe"),
                      extraction(m_catalogue->path(), folder()));
        QVERIFY(process.waitForStarted());
        const QStringList work = {QStringLiteral(".new-*")};
        while (process.state() != QProcess::NotRunning &&
               QDir(folder()).entryList(work, QDir::AllDirs | QDir::Hidden).isEmpty())
            process.waitForFinished(0);
        process.kill();
        QVERIFY(process.waitForFinished());
        const Answer answer = find(folder(), "similar", 9, 3);
        QVERIFY(answer.exitCode != 0 || answer.ids == (QList<int>{9, 3, 5}));
    }
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    QCOMPARE(QFileInfo(inFolder(folder(), featurefolder::idsFile)).size(), 1003 * 4);
    QCOMPARE(find(folder(), "similar", 500, 1).ids, QList<int>{500});
    QVERIFY(QDir(folder()).entryList({QStringLiteral(".new-*")}, QDir::AllEntries | QDir::Hidden).isEmpty());
}

// A limit on the size of files stands for the disk: writes beyond it fail in the same way.
void ExtractionTest::fullDiskLeavesTheOldSet()
{
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
    m_catalogue->run("BEGIN");
    for (int id = 100; id < 700; ++id)
        m_catalogue->add(id, "Face", "", float(id));
    m_catalogue->run("COMMIT");
    QProcess process;
    process.start(QStringLiteral("bash"),
                  QStringList{QStringLiteral("-c"), QStringLiteral("trap '' XFSZ; ulimit -f 100; exec \"$@\""),
                              QStringLiteral("bash"), QStringLiteral(KERVAL_BIN_DIR "/krvextractfeatures.exe")} +
                      extraction(m_catalogue->path(), folder()));
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError().count('\n'), 1);
    QCOMPARE(find(folder(), "similar", 9).ids, (QList<int>{9, 3, 5}));
    QVERIFY(QDir(folder()).entryList({QStringLiteral(".new-*")}, QDir::AllEntries | QDir::Hidden).isEmpty());
}

// Two catalogues take turns whose sets differ in length and order: a mixture gives another answer or none.
void ExtractionTest::readersNeverSeeHalfASet()
{
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
    SmallCatalogue other(m_place->filePath(QStringLiteral("other.db")));
    other.add(3, "Alpha-Regular", "Modern", 9.0F);
    other.add(9, "Beta-Regular", "Modern", 5.0F);
    const QString going = m_place->filePath(QStringLiteral("going")); // goes with the folder if this fails
    writeFile(going, "");
    const QString script = QStringLiteral("while [ -e %3 ]; do \"$0\" %1; \"$0\" %2; done")
                               .arg(extraction(other.path(), folder()).join(QLatin1Char(' ')),
                                    extraction(m_catalogue->path(), folder()).join(QLatin1Char(' ')), going);
    QProcess writer;
    writer.start(QStringLiteral("bash"),
                 {QStringLiteral("-c"), script, QStringLiteral(KERVAL_BIN_DIR "/krvextractfeatures.exe")});
    QVERIFY(writer.waitForStarted());
    int answers = 0;
    for (int i = 0; i < 150; ++i) {
        const Answer answer = find(folder(), "similar", 9);
        // 1: between two sets. Nothing else is a reason to fail.
        QVERIFY2(answer.exitCode == 0 || answer.exitCode == 1, answer.complaint.constData());
        if (answer.exitCode == 0) {
            QVERIFY(answer.ids == (QList<int>{9, 3, 5}) || answer.ids == (QList<int>{9, 3}));
            ++answers;
        }
    }
    QVERIFY(QFile::remove(going));
    QVERIFY(writer.waitForFinished());
    QVERIFY(answers > 15);
}

void ExtractionTest::leftoversAreCleared()
{
    writeFile(folder() + QStringLiteral("/.new-1/ids.bin"), QByteArray("half"));
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
    QVERIFY(!QFile::exists(folder() + QStringLiteral("/.new-1")));
}

KERVAL_TEST(ExtractionTest)

#include "ExtractionTest.moc"
