#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include "helpers/common/ByteScrambling.h"
#include "helpers/common/FeatureBlob.h"
#include "helpers/common/FeatureFolderLayout.h"
#include "helpers/findsimilar/DesignName.h"
#include "helpers/shape/Ordinariness.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <limits>
#include <sqlite3.h>

using namespace kerval::helpers;

namespace {

// A catalogue with just the columns that the extraction reads, and faces whose letters hold one number throughout.
class SmallCatalogue
{
public:
    explicit SmallCatalogue(const QString& path)
        : m_path(path)
    {
        sqlite3_open(QFile::encodeName(path).constData(), &m_database);
        run("PRAGMA synchronous = OFF");
        run("CREATE TABLE font (id INTEGER PRIMARY KEY, ps_name, other_info2, hwi, hwe, hhe, sc_all, sc_body, sc_head, "
            "deleted)");
        run("CREATE TABLE feature (font_id, character, featuredata)");
    }
    ~SmallCatalogue() { sqlite3_close(m_database); }
    Q_DISABLE_COPY(SmallCatalogue)

    void add(int id, const char* name, const char* keywords, float look, int weight = 135, int score = 500)
    {
        std::string blob;
        for (const char character : featureAlphabet) {
            FeatureVector vector;
            vector.fill(look);
            vector[krv::kSlantValue] = 0;
            appendFeature(blob, static_cast<unsigned char>(character), vector);
        }
        addFont(id, name, keywords, weight, score);
        addBlob(id, blob);
    }

    void addFont(int id, const char* name, const char* keywords, int weight = 135, int score = 500)
    {
        const QString sql = QStringLiteral("INSERT INTO font VALUES (%1, '%2', '%3', 900, %4, 690, %5, %5, %5, 0)");
        run(sql.arg(id).arg(QLatin1String(name), QLatin1String(keywords)).arg(weight).arg(score).toUtf8());
    }

    void addBlob(int id, const std::string& blob)
    {
        const QByteArray hex = QByteArray::fromStdString(blob).toHex();
        run("INSERT INTO feature VALUES (" + QByteArray::number(id) + ", 0, x'" + hex + "')");
    }

    void run(const QByteArray& sql)
    {
        if (sqlite3_exec(m_database, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            qFatal("%s: %s", sql.left(80).constData(), sqlite3_errmsg(m_database));
    }

    QString path() const { return m_path; }

private:
    QString m_path;
    sqlite3* m_database = nullptr;
};

struct Answer
{
    int exitCode = -1;
    QByteArray output;
    QByteArray complaint;
    QList<int> ids;
    QList<double> deviances;
};

QString hexPath(const QString& path)
{
    return QStringLiteral("0x") + QString::fromLatin1(QFile::encodeName(path).toHex());
}

QStringList extraction(const QString& database, const QString& folder)
{
    return {QStringLiteral("--createfolder"),
            QStringLiteral("-d"),
            hexPath(database),
            QStringLiteral("-f"),
            hexPath(folder),
            QStringLiteral("-r"),
            QStringLiteral("QSQLITE"),
            QStringLiteral("-m"),
            QStringLiteral("zerocharacter")};
}

Answer start(const QString& program, const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(QStringLiteral(KERVAL_BIN_DIR "/") + program, arguments);
    process.write(input);
    process.closeWriteChannel();
    Answer answer;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        answer.exitCode = process.exitCode();
    answer.output = process.readAllStandardOutput();
    answer.complaint = process.readAllStandardError();
    return answer;
}

Answer extract(const QString& database, const QString& folder)
{
    return start(QStringLiteral("krvextractfeatures.exe"), extraction(database, folder));
}

Answer find(const QString& folder, const char* method, int font, int limit = 10, const QByteArray& ids = {},
            const QString& characters = QStringLiteral("htlaf"))
{
    QStringList arguments = {QStringLiteral("-f"), hexPath(folder),
                             QStringLiteral("-t"), characters,
                             QStringLiteral("-i"), QString::number(font),
                             QStringLiteral("-l"), QString::number(limit),
                             QStringLiteral("-o"), QStringLiteral("{id}:{deviance}\\n"),
                             QStringLiteral("-m"), QString::fromLatin1(method)};
    if (!ids.isEmpty())
        arguments << QStringLiteral("--stdininids");
    Answer answer = start(QStringLiteral("krvfindsimilar.exe"), arguments, ids.isEmpty() ? ids : ids + "\n");
    const auto text = unseal(answer.output.toStdString());
    for (const QString& line : QString::fromStdString(text.value_or("")).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        answer.ids << line.section(QLatin1Char(':'), 0, 0).toInt();
        answer.deviances << line.section(QLatin1Char(':'), 1).toDouble();
    }
    return answer;
}

QString inFolder(const QString& folder, std::string_view name)
{
    return folder + QLatin1Char('/') + QString::fromLatin1(name.data(), int(name.size()));
}

} // namespace

class SimilarityTest : public QObject
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
    void nearestComeFirst();
    void nearLooksOutweighTheClass();
    void ordinaryFacesFallBack();
    void otherLettersHaveTheirSay();
    void idsOnInputRestrict();
    void missingLettersAreLeftOut();
    void damagedFoldersAreMadeAgain_data();
    void damagedFoldersAreMadeAgain();
    void unknownFontsAndWrongLinesFail();
    void templatesAreFilledIn();
    void membersOfAFamilyGoTogether();
    void contrastIsOfTheOtherKind();
    void smartChoiceSpreadsOverDesigns();
    void namesTellFamilies_data();
    void namesTellFamilies();

private:
    QString folder() const { return m_place->filePath(QStringLiteral("features")); }
    void fill();

    std::unique_ptr<QTemporaryDir> m_place;
    std::unique_ptr<SmallCatalogue> m_catalogue;
};

void SimilarityTest::init()
{
    m_place = std::make_unique<QTemporaryDir>();
    m_catalogue = std::make_unique<SmallCatalogue>(m_place->filePath(QStringLiteral("fms.db")));
}

void SimilarityTest::cleanup()
{
    m_catalogue.reset();
    m_place.reset();
}

void SimilarityTest::fill()
{
    m_catalogue->add(3, "Alpha-Regular", "Modern", 1.0F);
    m_catalogue->add(5, "Gamma-Regular", "Classic, Serif", 1.5F);
    m_catalogue->add(9, "Beta-Regular", "Modern", 1.1F);
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
}

void SimilarityTest::extractionWritesEveryFile()
{
    fill();
    QCOMPARE(kerval::testing::readFile(inFolder(folder(), featurefolder::idsFile)).size(), 3 * 4);
    for (const char character : featurefolder::characters) {
        const std::string name = featurefolder::characterFile(static_cast<unsigned char>(character));
        QCOMPARE(QFileInfo(inFolder(folder(), name)).size(), 3 * 244);
    }
    QCOMPARE(kerval::testing::readFile(inFolder(folder(), featurefolder::serifFile)), QByteArray("\0\1\0", 3));
    QCOMPARE(kerval::testing::readFile(inFolder(folder(), featurefolder::infoFile)),
             QByteArray("Alpha-Regular||modern\nGamma-Regular||classic\nBeta-Regular||modern\n"));
    FeatureVector maximums;
    QVERIFY(
        fromBytes(kerval::testing::readFile(inFolder(folder(), featurefolder::maximumsFile)).toStdString(), maximums));
    QCOMPARE(maximums[0], 1.5F);
    QCOMPARE(maximums[60], 1.5F);
    QVERIFY(QDir(folder()).entryList({QStringLiteral(".new-*")}, QDir::AllEntries | QDir::Hidden).isEmpty());
}

void SimilarityTest::extractionReadsOddRowsAsNothing()
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
    QCOMPARE(kerval::testing::readFile(inFolder(folder(), featurefolder::infoFile)),
             QByteArray("Line_Break__Bar||\nNoFeatures||\n"));
    const QByteArray a = kerval::testing::readFile(inFolder(folder(), featurefolder::characterFile('a')));
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
void SimilarityTest::extractionKeepsManyFontsInOrder()
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
        const QByteArray file = kerval::testing::readFile(inFolder(folder(), featurefolder::characterFile(letter)));
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

void SimilarityTest::extractionNamesWhatIsWrong_data()
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

void SimilarityTest::extractionNamesWhatIsWrong()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, replaced);
    const QString database = m_place->filePath(QStringLiteral("foreign.db"));
    if (!content.isEmpty())
        kerval::testing::writeFile(database, content);
    QStringList arguments = extraction(database, folder());
    if (!replaced.isEmpty())
        arguments[replaced[0].toInt()] = replaced[1];
    const Answer answer = start(QStringLiteral("krvextractfeatures.exe"), arguments);
    QVERIFY(answer.exitCode > 0);
    QCOMPARE(answer.complaint.count('\n'), 1);
    QVERIFY(!QFile::exists(inFolder(folder(), featurefolder::idsFile)));
}

void SimilarityTest::requestsAtOnceExtractOnce()
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

void SimilarityTest::killedExtractionLeavesTheOldSet()
{
    fill();
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
void SimilarityTest::fullDiskLeavesTheOldSet()
{
    fill();
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
void SimilarityTest::readersNeverSeeHalfASet()
{
    fill();
    SmallCatalogue other(m_place->filePath(QStringLiteral("other.db")));
    other.add(3, "Alpha-Regular", "Modern", 9.0F);
    other.add(9, "Beta-Regular", "Modern", 5.0F);
    const QString going = m_place->filePath(QStringLiteral("going")); // goes with the folder if this fails
    kerval::testing::writeFile(going, "");
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

void SimilarityTest::leftoversAreCleared()
{
    kerval::testing::writeFile(folder() + QStringLiteral("/.new-1/ids.bin"), QByteArray("half"));
    fill();
    QVERIFY(!QFile::exists(folder() + QStringLiteral("/.new-1")));
}

void SimilarityTest::nearestComeFirst()
{
    fill();
    const Answer answer = find(folder(), "similar", 9);
    QCOMPARE(answer.exitCode, 0);
    QCOMPARE(answer.ids, (QList<int>{9, 3, 5}));
    QCOMPARE(answer.deviances.first(), 0.0);
    QVERIFY(answer.deviances[1] < answer.deviances[2]);
    QCOMPARE(find(folder(), "similar", 9, 2).ids, (QList<int>{9, 3}));
    QVERIFY(find(folder(), "similar", 9, 0).ids.isEmpty());
    // Letters that no face is measured by compare nothing, and the face itself remains.
    QCOMPARE(find(folder(), "similar", 9, 10, {}, QStringLiteral("\u00e4?")).ids, QList<int>{9});
}

void SimilarityTest::nearLooksOutweighTheClass()
{
    m_catalogue->add(1, "Base-Regular", "Modern", 1.0F);
    m_catalogue->add(2, "BaseOtherFormat-Regular", "Headline", 1.001F);
    m_catalogue->add(3, "Cousin-Regular", "Modern", 1.003F);
    m_catalogue->add(4, "Stranger-Regular", "Modern", 1.03F);
    m_catalogue->add(5, "SlabStranger-Regular", "Classic, Serif", 1.02F);
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    QCOMPARE(find(folder(), "similar", 1).ids, (QList<int>{1, 2, 3, 4, 5}));
}

// The ordinary face is near to everything: what shares a peculiarity with the one asked is more like it.
void SimilarityTest::ordinaryFacesFallBack()
{
    const auto add = [this](int id, const char* name, float peculiarity) {
        std::string blob;
        for (const char character : featureAlphabet) {
            const auto& ordinary = krv::kOrdinaryLetters[1][krv::featureLetterIndex(character)];
            FeatureVector vector;
            std::transform(std::begin(ordinary), std::end(ordinary), vector.begin(),
                           [peculiarity](short thousandths) { return float(thousandths) / 1000 + peculiarity; });
            appendFeature(blob, static_cast<unsigned char>(character), vector);
        }
        m_catalogue->addFont(id, name, "Modern");
        m_catalogue->addBlob(id, blob);
    };
    add(1, "Peculiar-Regular", 0.02F);
    add(2, "Ordinary-Regular", 0);
    add(3, "MorePeculiar-Regular", 0.042F);
    add(4, "OtherwisePeculiar-Regular", -0.03F);
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    QCOMPARE(find(folder(), "similar", 1).ids, (QList<int>{1, 3, 2, 4}));
    QCOMPARE(find(folder(), "similar", 1, 2).ids, (QList<int>{1, 3}));
}

void SimilarityTest::otherLettersHaveTheirSay()
{
    const auto add = [this](int id, const char* name, float asked, float others) {
        std::string blob;
        for (const char character : featureAlphabet) {
            FeatureVector vector;
            vector.fill(std::string_view("htlaf").find(character) != std::string_view::npos ? asked : others);
            appendFeature(blob, static_cast<unsigned char>(character), vector);
        }
        m_catalogue->addFont(id, name, "Modern");
        m_catalogue->addBlob(id, blob);
    };
    add(1, "Base-Regular", 1, 1);
    add(2, "SameFive-Regular", 1, 3);
    add(3, "Near-Regular", 1.02F, 2);
    add(4, "NearAsAWhole-Regular", 1.03F, 1.03F);
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    const Answer wholeFaces = find(folder(), "similar", 1);
    QCOMPARE(wholeFaces.ids, (QList<int>{1, 2, 4, 3}));
    QCOMPARE(wholeFaces.deviances[1], 0.0);
    // A few letters alone are not the face, and letters that are lost have no say.
    QCOMPARE(find(folder(), "similar", 1, 10, {}, QStringLiteral("hta")).ids, (QList<int>{1, 2, 3, 4}));
    for (const char character : featurefolder::characters) {
        const QString file = inFolder(folder(), featurefolder::characterFile(static_cast<unsigned char>(character)));
        if (std::string_view("htlaf").find(character) == std::string_view::npos)
            QVERIFY(character < 'a' ? QFile::remove(file) : QFile::resize(file, 244));
    }
    QCOMPARE(find(folder(), "similar", 1).ids, (QList<int>{1, 2, 3, 4}));
}

void SimilarityTest::idsOnInputRestrict()
{
    fill();
    QCOMPARE(find(folder(), "similar", 9, 10, "5,9,1000,x,").ids, (QList<int>{9, 5}));
    QCOMPARE(find(folder(), "similar", 9, 10, "5,3").ids, (QList<int>{3, 5}));
    const Answer none = find(folder(), "similar", 9, 10, "12345");
    QCOMPARE(none.exitCode, 0);
    QVERIFY(none.ids.isEmpty());
}

void SimilarityTest::missingLettersAreLeftOut()
{
    FeatureVector look;
    look.fill(1.02F);
    std::string blob;
    appendFeature(blob, 'h', look);
    m_catalogue->addFont(20, "OnlyH", "Modern");
    m_catalogue->addBlob(20, blob);
    m_catalogue->addFont(21, "Nothing", "Modern");
    fill();
    // Not a zero vector that is compared: one letter that agrees is near, none at all is nowhere.
    QCOMPARE(find(folder(), "similar", 3).ids, (QList<int>{3, 20, 9, 5}));
    QCOMPARE(find(folder(), "similar", 21).ids, QList<int>{21});
}

void SimilarityTest::damagedFoldersAreMadeAgain_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("size"); // -1: removed
    QTest::newRow("cut letter") << QStringLiteral("features_104.bin") << 300;
    QTest::newRow("empty letter") << QStringLiteral("features_104.bin") << 0;
    QTest::newRow("lost letter") << QStringLiteral("features_97.bin") << -1;
    QTest::newRow("cut ids") << QStringLiteral("ids.bin") << 5;
    QTest::newRow("lost serifs") << QStringLiteral("features_ser.bin") << -1;
}

void SimilarityTest::damagedFoldersAreMadeAgain()
{
    QFETCH(QString, file);
    QFETCH(int, size);
    fill();
    QFile damaged(folder() + QLatin1Char('/') + file);
    QVERIFY(size < 0 ? damaged.remove() : damaged.resize(size));
    const Answer answer = find(folder(), "similar", 9);
    QVERIFY(answer.exitCode > 0);
    QVERIFY(answer.output.isEmpty());
    QVERIFY(!QFile::exists(inFolder(folder(), featurefolder::idsFile)));
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    QCOMPARE(find(folder(), "similar", 9).ids, (QList<int>{9, 3, 5}));
}

void SimilarityTest::unknownFontsAndWrongLinesFail()
{
    QVERIFY(find(folder(), "similar", 9).exitCode > 0); // no folder yet
    fill();
    for (const Answer& answer : {find(folder(), "similar", 4), find(folder(), "unheard", 9)}) {
        QVERIFY(answer.exitCode > 0);
        QVERIFY(answer.output.isEmpty());
        QCOMPARE(answer.complaint.count('\n'), 1);
    }
    QVERIFY(QFile::exists(inFolder(folder(), featurefolder::idsFile)));
}

void SimilarityTest::templatesAreFilledIn()
{
    fill();
    const Answer answer =
        start(QStringLiteral("krvfindsimilar.exe"),
              {QStringLiteral("-f"), hexPath(folder()), QStringLiteral("-t"), QStringLiteral("h"), QStringLiteral("-i"),
               QStringLiteral("5"), QStringLiteral("-l"), QStringLiteral("1"), QStringLiteral("-o"),
               QStringLiteral("<{id}|{deviance}>{x}\\n"), QStringLiteral("-m"), QStringLiteral("similar")});
    QCOMPARE(unseal(answer.output.toStdString()).value_or("?"), std::string("<5|0.000000>{x}\n"));
}

void SimilarityTest::membersOfAFamilyGoTogether()
{
    m_catalogue->add(1, "KervalSans-Regular", "Modern", 1.0F);
    m_catalogue->add(2, "KervalSans-Bold", "Modern", 2.0F, 300);
    m_catalogue->add(3, "KervalSerif-Regular", "Classic, Serif", 1.4F);
    m_catalogue->add(4, "OtherName-Regular", "Modern", 1.0F);
    m_catalogue->add(5, "Stranger-Regular", "Modern", 1.6F);
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    QCOMPARE(find(folder(), "harsfam", 1).ids, (QList<int>{2, 3, 4}));
}

void SimilarityTest::contrastIsOfTheOtherKind()
{
    m_catalogue->add(1, "Base-Regular", "Modern", 1.0F);
    m_catalogue->add(2, "SameKind-Regular", "Modern", 1.1F);
    m_catalogue->add(3, "OtherKind-Regular", "Classic, Serif", 1.4F);
    m_catalogue->add(4, "OtherKindBold-Bold", "Classic, Serif", 1.8F, 330);
    m_catalogue->add(5, "Icons", "Symbol", 1.2F);
    m_catalogue->add(6, "Circus-Bold", "Headline", 1.6F, 330);
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    const QList<int> contrast = find(folder(), "harcont", 1).ids;
    QCOMPARE(contrast.first(), 3);
    QVERIFY(!contrast.contains(1) && !contrast.contains(5));
    QCOMPARE(find(folder(), "harhead", 1).ids.first(), 4);
    QCOMPARE(find(folder(), "harbody", 4).ids.first(), 1);
}

void SimilarityTest::smartChoiceSpreadsOverDesigns()
{
    m_catalogue->add(1, "Fine-Regular", "Classic, Serif", 1.0F, 135, 900);
    m_catalogue->add(2, "Fine-Medium", "Classic, Serif", 1.05F, 160, 890);
    m_catalogue->add(3, "Fine-Italic", "Classic, Serif", 1.3F, 135, 880);
    m_catalogue->add(4, "Good-Regular", "Modern", 3.0F, 135, 800);
    m_catalogue->add(5, "Icons", "Symbol", 5.0F, 135, 0);
    QCOMPARE(extract(m_catalogue->path(), folder()).exitCode, 0);
    for (const char* method : {"smartall", "smartbody", "smarthead"})
        QCOMPARE(find(folder(), method, 5).ids, (QList<int>{1, 4, 2, 3}));
}

void SimilarityTest::namesTellFamilies_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("superfamily");
    const auto row = [](const char* name, const char* family, const char* superfamily) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(family)
                            << QString::fromLatin1(superfamily);
    };
    row("DejaVuSansMono-Bold", "DejaVuSansMono", "dejavu");
    row("PTSerif-Regular", "PTSerif", "pt");
    row("LMRoman10-Regular", "LMRoman10", "lm");
    row("SourceSans3-It", "SourceSans3", "source");
    row("Sans", "Sans", "sans");
    row("", "", "");
}

void SimilarityTest::namesTellFamilies()
{
    QFETCH(QString, name);
    QFETCH(QString, family);
    QFETCH(QString, superfamily);
    const DesignName design = DesignName::of(name.toStdString());
    QCOMPARE(QString::fromStdString(design.family), family);
    QCOMPARE(QString::fromStdString(design.superfamily), superfamily);
}

KERVAL_TEST(SimilarityTest)

#include "SimilarityTest.moc"
