#include "tests/helpers/SmallCatalogue.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include "helpers/common/ByteScrambling.h"
#include "helpers/common/FeatureBlob.h"
#include "helpers/common/FeatureFolderLayout.h"
#include "helpers/findsimilar/DesignName.h"
#include "helpers/shape/Ordinariness.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <memory>

using namespace kerval::helpers;
using namespace kerval::testing;

class SimilarityTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
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

void SimilarityTest::nearestComeFirst()
{
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
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
    m_catalogue->addTwoLooks(1, "Base-Regular", 1, 1);
    m_catalogue->addTwoLooks(2, "SameFive-Regular", 1, 3);
    m_catalogue->addTwoLooks(3, "Near-Regular", 1.02F, 2);
    m_catalogue->addTwoLooks(4, "NearAsAWhole-Regular", 1.03F, 1.03F);
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
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
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
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
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
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
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
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
    for (const Answer& answer : {find(folder(), "similar", 4), find(folder(), "unheard", 9)}) {
        QVERIFY(answer.exitCode > 0);
        QVERIFY(answer.output.isEmpty());
        QCOMPARE(answer.complaint.count('\n'), 1);
    }
    QVERIFY(QFile::exists(inFolder(folder(), featurefolder::idsFile)));
}

void SimilarityTest::templatesAreFilledIn()
{
    QVERIFY(extractThreeFaces(*m_catalogue, folder()));
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
