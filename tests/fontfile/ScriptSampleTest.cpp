#include "fontfile/ScriptSample.h"

#include "fontfile/KrvFontFile.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/support/testregistry.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using kerval::testing::SfntBuilder;

class ScriptSampleTest : public QObject
{
    Q_OBJECT

private slots:
    void aFontIsShownInWhatItHas_data()
    {
        const QString latin = QStringLiteral("A sample of text");
        const QString greek = QStringLiteral("Ξεσκεπάζω την ψυχοφθόρα βδελυγμία");
        const QString icons = QStringLiteral("\uF001 \uF002 \uF003");
        QTest::addColumn<QString>("characters");
        QTest::addColumn<bool>("symbolMap");
        QTest::addColumn<QString>("shown");
        QTest::newRow("Latin") << latin << false << latin;
        QTest::newRow("some letters missing") << QStringLiteral("samplet") << false << latin;
        QTest::newRow("capitals only") << QStringLiteral("A-.") << false << QStringLiteral("A");
        QTest::newRow("Greek with blanks and stops") << greek + QStringLiteral(" .,-") << false << greek;
        QTest::newRow("part of Greek") << QStringLiteral("δγβα") << false << QStringLiteral("α β γ δ");
        QTest::newRow("from right to left") << QStringLiteral("דגבא") << false << QStringLiteral("א ב ג ד");
        QTest::newRow("letters above U+FFFF")
            << QStringLiteral("𞤀𞤁𞤂") << false << QStringLiteral("𞤀 𞤁 𞤂");
        QTest::newRow("icons") << icons << false << icons;
        QTest::newRow("icons and one letter")
            << QStringLiteral("A\uF001\uF002\uF003\uF004\uF005\uF006\uF007\uF008") << false
            << QStringLiteral("\uF001 \uF002 \uF003 \uF004 \uF005 \uF006 \uF007 \uF008");
        QTest::newRow("a map of its own kind") << icons << true << latin;
        QTest::newRow("nothing") << QString() << false << latin;
    }

    void aFontIsShownInWhatItHas()
    {
        QFETCH(QString, characters);
        QFETCH(bool, symbolMap);
        QFETCH(QString, shown);
        SfntBuilder builder;
        const int box = builder.addGlyph(SfntBuilder::boxGlyph(100, 0, 500, 500));
        const QVector<uint> codes = characters.toUcs4();
        for (const uint code : codes)
            builder.mapCharacter(code, box);
        if (symbolMap)
            builder.setSymbolMap();
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("sample.ttf")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(builder.build());
        file.close();
        KrvFontFile font(file.fileName());
        QVERIFY(font.open(0));
        QCOMPARE(scriptSample(font, QStringLiteral("A sample of text")), shown);
    }
};

KERVAL_TEST(ScriptSampleTest)
#include "ScriptSampleTest.moc"
