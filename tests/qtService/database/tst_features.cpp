#include "qtService/database/AdderDataFeatureFactory.h"
#include "qtService/database/FontFeatureRecordReadStrategy.h"
#include "qtService/database/KrvFeatureRepository.h"
#include "qtService/database/RecordListFeatureFactory.h"
#include "qtService/database/RelationalFeatureRepositoryStrategy.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "tests/support/testregistry.h"

#include "helpers/common/FeatureBlob.h"

#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QList<float> values(float first, int count = 61)
{
    QList<float> list;
    for (int i = 0; i < count; ++i)
        list.append(first + float(i));
    return list;
}

FontFeaturesPtr adderFeatures(int fontId, float first)
{
    const auto features =
        AdderDataFeatureFactory::instance()->createFeatures({{'a', values(first)}, {'Z', values(first + 100)}});
    features->setFontId(fontId);
    return features;
}

} // namespace

class TestFeatures : public QObject
{
    Q_OBJECT

private slots:
    void blobIsWhatTheHelpersRead()
    {
        const QByteArray blob = FontFeatureRecordReadStrategy::blob(*adderFeatures(1, 5));
        kerval::helpers::FeatureBlobReader reader({blob.constData(), size_t(blob.size())});
        unsigned char key = 0;
        std::string_view bytes;
        QVERIFY(reader.next(key, bytes));
        QCOMPARE(key, static_cast<unsigned char>('Z'));
        kerval::helpers::FeatureVector vector{};
        QVERIFY(kerval::helpers::fromBytes(bytes, vector));
        QCOMPARE(vector[60], 165.0F);
        QVERIFY(reader.next(key, bytes));
        QCOMPARE(key, static_cast<unsigned char>('a'));
        QVERIFY(!reader.next(key, bytes));
    }

    void readingKeepsTheFirstFifteenValues()
    {
        FontFeatures features;
        features.insert('k', values(1).toVector());
        const auto read = RecordListFeatureFactory::fromBlob(FontFeatureRecordReadStrategy::blob(features));
        QCOMPARE(read->keys(), QList<ushort>{'k'});
        QCOMPARE(read->vectors('k').first(), values(1, 15).toVector());
    }

    void readingStopsWhereTheBlobEnds()
    {
        QVERIFY(RecordListFeatureFactory::fromBlob(QByteArray())->isEmpty());
        const auto cut = RecordListFeatureFactory::fromBlob(QByteArray("k", 1) + QByteArray(11, 0));
        QCOMPARE(cut->vectorCount(), 1);
        QCOMPARE(cut->vectors('k').first().size(), 2);

        // A whole key: 62 vectors, then the next key.
        const QByteArray whole = QByteArray("k", 1) + QByteArray(62 * 244, 1);
        const auto two = RecordListFeatureFactory::fromBlob(whole + QByteArray("\xff", 1) + QByteArray(244, 2));
        QCOMPARE(two->vectors('k').size(), 62);
        QCOMPARE(two->vectors(0xff).size(), 1);
    }

    void repositoryStoresAndForgets()
    {
        QTemporaryDir folder;
        const auto database = QSharedPointer<FontDatabase>::create(folder.filePath(QStringLiteral("fms.db")));
        KrvFeatureRepository repository(QSharedPointer<RelationalFeatureRepositoryStrategy>::create(database));
        QCOMPARE(KrvFeatureRepository::alphabet().size(), 62);
        QVERIFY(!repository.features(1));

        QVERIFY(repository.addFeatures({adderFeatures(1, 5), adderFeatures(2, 50), adderFeatures(3, 500)}));
        QCOMPARE(repository.featuresCount(), 3);
        QVERIFY(repository.containsFeatures(2));
        QVERIFY(!repository.containsFeatures(4));
        QCOMPARE(repository.features(2)->fontId(), 2);
        QCOMPARE(repository.allFeatures().size(), 3);
        // The stored bytes are whole, zeros and all.
        QSqlQuery query(database->connectionFactory()->database());
        QVERIFY(query.exec(QStringLiteral("SELECT length(featuredata) FROM feature")) && query.next());
        QCOMPARE(query.value(0).toInt(), 2 * 245);
        query.finish();

        QVERIFY(repository.updateFeatures(adderFeatures(2, 7)));
        QCOMPARE(repository.features(2)->vectors('Z').first().first(), 107.0F);
        QVERIFY(repository.removeFeatures(adderFeatures(1, 0)));
        QVERIFY(!repository.containsFeatures(1));
        QVERIFY(repository.removeAllFeatures());
        QCOMPARE(repository.featuresCount(), 0);
    }

    void removedFontsTakeTheirFeaturesAlong()
    {
        QTemporaryDir folder;
        const auto database = QSharedPointer<FontDatabase>::create(folder.filePath(QStringLiteral("fms.db")));
        RelationalFontRepositoryStrategy fonts(database);
        RelationalFeatureRepositoryStrategy features(database);
        const QList<StaticFontPtr> two{StaticFontPtr::create(), StaticFontPtr::create()};
        QVERIFY(fonts.addFonts(two));
        QVERIFY(features.addFeatures({adderFeatures(two.at(0)->id(), 1), adderFeatures(two.at(1)->id(), 2)}));
        QVERIFY(fonts.removeFont(two.at(0)));
        QCOMPARE(features.featuresCount(), 1);
        QVERIFY(features.containsFeatures(two.at(1)->id()));
        QVERIFY(fonts.removeAll());
        QCOMPARE(features.featuresCount(), 0);
    }
};

KERVAL_TEST(TestFeatures)

#include "tst_features.moc"
