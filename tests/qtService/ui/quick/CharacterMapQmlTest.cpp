#include "qtService/ui/details/KrvCharacterMapModel.h"
#include "qtService/ui/quick/CharacterImageProvider.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QtTest>

// The QML view over the same model as the widget's.
class CharacterMapQmlTest : public QObject
{
    Q_OBJECT

private slots:
    void cellsShowCodesAndPicturesOfTheModel()
    {
        using kerval::testing::SfntBuilder;
        QTemporaryDir folder;
        SfntBuilder builder;
        for (uint code = 'A'; code < 'A' + 2000; ++code)
            builder.mapCharacter(code, builder.addGlyph(SfntBuilder::boxGlyph(50, 0, 550, 700)));
        const QString file = folder.filePath(QStringLiteral("boxes.ttf"));
        kerval::testing::writeFile(file, builder.build());
        KrvCharacterMapModel model;
        model.setFont(file, 0, {});
        model.setRange(0);

        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software); // no graphics card asked for
        QQuickView view;
        view.engine()->addImageProvider(KrvCharacterMapModel::imageProviderId(), new CharacterImageProvider(&model));
        view.rootContext()->setContextProperty(QStringLiteral("characterMapModel"), &model);
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.setSource(QUrl(QStringLiteral("qrc:/ui/qml/CharacterMapView.qml")));
        QVERIFY2(view.errors().isEmpty(), qPrintable(view.errors().value(0).toString()));
        view.resize(500, 300);
        view.show();

        auto* grid = view.rootObject()->findChild<QQuickItem*>(QStringLiteral("grid"));
        QTRY_COMPARE(grid->property("count").toInt(), model.rowCount());
        QQuickItem* cell = nullptr;
        const auto secondCell = [&] {
            QMetaObject::invokeMethod(grid, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, cell), Q_ARG(int, 1));
            return cell;
        };
        QTRY_VERIFY(secondCell());
        QCOMPARE(cell->property("code").toString(), QStringLiteral("0x0042"));
        auto* image = cell->findChild<QQuickItem*>(QStringLiteral("characterImage"));
        QTRY_COMPARE(image->property("status").toInt(), 1);
        QCOMPARE(image->property("sourceSize").toSize(), QSize(34, 34));

        model.setNormalImageSize(60);
        QTRY_COMPARE(grid->property("cellHeight").toInt() > 60, true);
    }

    void keysOfOtherFontsGiveNoPicture()
    {
        KrvCharacterMapModel model;
        CharacterImageProvider provider(&model);
        QSize size;
        QVERIFY(provider.requestImage(QStringLiteral("x-34-0041"), &size, QSize()).isNull());
        QVERIFY(provider.requestImage(QString(), &size, QSize()).isNull());
    }
};

KERVAL_TEST(CharacterMapQmlTest)
#include "CharacterMapQmlTest.moc"
