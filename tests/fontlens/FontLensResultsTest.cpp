#include "fontlens/FontLensFontPreviewWidget.h"
#include "fontlens/FontLensSimilarFontsModel.h"
#include "tests/fontlens/FontLensDriver.h"
#include "tests/support/testregistry.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QtTest>

using FontRecognizer::FontData;
using FontRecognizer::FontDataPtr;

// Asking which font it is, and the page of answers.
class FontLensResultsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { m_lens.reset(); }

    void identifyAsksForWhatIsMissing()
    {
        open();
        QCOMPARE(warning(), QStringLiteral("Please open an image first!"));
        QVERIFY(m_lens->openPicture());
        QCOMPARE(warning(), QStringLiteral("Please select some letters on the image first by clicking on them!"));
        QVERIFY(m_lens->selectLetters(2));
        m_lens->find<QLineEdit>("leLetter")->clear();
        QCOMPARE(warning(), QStringLiteral("Please enter a character for all the selected letters on the image or "
                                           "remove the ones you don't want to use for font identification!"));
        QCOMPARE(m_lens->service().count("ocrsim"), 0);
    }

    void resultsComeInOrderWithTheirPreviews()
    {
        open();
        identify();
        QCOMPARE(
            m_lens->service().queries("ocrsim").first().queryItemValue(QStringLiteral("imgids"), QUrl::FullyDecoded),
            QStringLiteral("a,b1;b,b2"));
        QCOMPARE(model()->rowCount(), 3);
        QCOMPARE(textAt(0, 1) + textAt(1, 1) + textAt(2, 1), QStringLiteral("AlphaBetaGamma"));
        QCOMPARE(textAt(2, 2), QStringLiteral("Bold"));
        QCOMPARE(textAt(2, 3), QStringLiteral("Third"));
        QCOMPARE(model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Preview"));
        QVERIFY(!m_lens->find<QLabel>("lblLetters")->pixmap(Qt::ReturnByValue).isNull());
        // The best one is chosen already.
        QCOMPARE(selectedRow(), 0);
        QTRY_COMPARE(previewColor(), FakeRecognition::previewColor(2).rgb());
        for (int row = 0; row < 3; ++row) {
            const int id = model()->index(row, 0).data(FontLensSimilarFontsModel::FontIdRole).toInt();
            const QRgb expected = FakeRecognition::previewColor(id).rgb();
            QTRY_COMPARE(imageAt(row).pixel(20, imageAt(row).height() / 2), expected);
        }
        QAbstractItemModelTester tester(model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        // One small preview of the letters each, and one large of the sample text.
        int small = 0;
        const QList<QUrlQuery> previews = m_lens->service().queries("render");
        for (const QUrlQuery& query : previews)
            small += query.queryItemValue(QStringLiteral("size")) == QLatin1String("32") &&
                     query.queryItemValue(QStringLiteral("text")) == QLatin1String("ab");
        QCOMPARE(small, 3);
        QCOMPARE(previews.size(), 4);
    }

    void selectingAResultFetchesItsPreviewAndShop()
    {
        open(FontLensDriver::ForeignService);
        identify();
        tree()->setFocus();
        QTest::keyClick(tree(), Qt::Key_Down);
        auto* shop = m_lens->find<QPushButton>("btnOpenStoreUrl");
        QCOMPARE(shop->text(), QStringLiteral("Buy Beta Italic"));
        QVERIFY(shop->isVisible());
        QVERIFY(!shop->isEnabled());
        QTRY_VERIFY(shop->isEnabled());
        QTRY_COMPARE(previewColor(), FakeRecognition::previewColor(5).rgb());
        QVERIFY(!m_lens->find<QPushButton>("btnShowInLibrary")->isVisible());

        const int before = m_lens->service().count("render");
        const int links = m_lens->service().count("GetBuyFontLinks");
        m_lens->find<QComboBox>("cmbPreviewText")->setCurrentIndex(1);
        QTRY_COMPARE(m_lens->service().count("render"), before + 1);
        QCOMPARE(m_lens->service().queries("render").last().queryItemValue(QStringLiteral("size")),
                 QStringLiteral("48"));
        QVERIFY(m_lens->service()
                    .queries("render")
                    .last()
                    .queryItemValue(QStringLiteral("text"))
                    .startsWith(QLatin1String("Lorem")));
        QCOMPARE(m_lens->service().count("GetBuyFontLinks"), links);
    }

    // A long list asks for many previews at once; the large one of the chosen font does not stand in their queue.
    void theChosenFontsPreviewComesFirst()
    {
        open();
        QByteArray list;
        for (int id = 1; id <= 60; ++id)
            list += "<F>" + QByteArray::number(id) + "</F><D>" + QByteArray::number(id) + "</D>";
        m_lens->service().answer("ocrsim", ScriptedRecognitionServer::page("<fonts>" + list + "</fonts>"));
        identify();
        QTRY_COMPARE(m_lens->service().count("render"), 61);
        const QList<QUrlQuery> previews = m_lens->service().queries("render");
        int large = 0;
        while (previews.at(large).queryItemValue(QStringLiteral("size")) != QLatin1String("48"))
            ++large;
        QVERIFY2(large < 15, qPrintable(QString::number(large)));
    }

    // The service draws for the pixels of the screen; nothing is made larger afterwards.
    void aDenseScreenAsksForLargerPreviews()
    {
        open();
        identify();
        auto* results = qobject_cast<FontLensSimilarFontsModel*>(model());
        QVERIFY(results);
        QTRY_COMPARE(m_lens->service().count("render"), 4);
        const auto font = results->font(results->index(0, 0));
        results->setAppearance(Qt::black, 2);
        results->setFonts({font});
        QTRY_COMPARE(m_lens->service().count("render"), 5);
        QCOMPARE(m_lens->service().queries("render").last().queryItemValue(QStringLiteral("size")),
                 QStringLiteral("64"));
        const QRgb expected = FakeRecognition::previewColor(2).rgb();
        QTRY_COMPARE(imageAt(0).pixel(20, imageAt(0).height() / 2), expected);
        const QImage cell = imageAt(0);
        QCOMPARE(cell.size(), FontLensSimilarFontsModel::previewSize() * 2);
        int wide = 0;
        for (int x = 0; x < cell.width(); ++x)
            wide += cell.pixel(x, cell.height() / 2) == expected;
        QCOMPARE(wide, 200); // as it came
    }

    // What arrives for a font that the user has left shows nothing.
    void lateAnswersAreNotShown()
    {
        open(FontLensDriver::ForeignService);
        identify();
        m_lens->service().answer("render", ScriptedRecognitionServer::silence());
        m_lens->service().answer("GetBuyFontLinks", ScriptedRecognitionServer::silence());
        tree()->setCurrentIndex(model()->index(1, 0));
        QCOMPARE(previewColor(), QRgb(0));
        QImage late(100, 48, QImage::Format_RGB32);
        late.fill(Qt::magenta);
        const auto arrive = [this, &late](bool success, int fontId) {
            QMetaObject::invokeMethod(m_lens->dialog(), "onCustomPreviewRendered", Q_ARG(bool, success),
                                      Q_ARG(int, fontId), Q_ARG(QImage, success ? late : QImage()));
        };
        arrive(true, 2);
        QCOMPARE(previewColor(), QRgb(0));
        QMetaObject::invokeMethod(m_lens->dialog(), "onFontStoreUrlRetrieved", Q_ARG(bool, true), Q_ARG(int, 2),
                                  Q_ARG(QUrl, QUrl(QStringLiteral("http://shop.example/2"))));
        QVERIFY(!m_lens->find<QPushButton>("btnOpenStoreUrl")->isEnabled());
        arrive(true, 5);
        QCOMPARE(previewColor(), QColor(Qt::magenta).rgb());
        arrive(false, 0); // another font's failure does not wipe what has come
        QCOMPARE(previewColor(), QColor(Qt::magenta).rgb());
    }

    void aFailedPreviewSaysSo()
    {
        open();
        identify();
        m_lens->service().answer("render", FakeRecognition::brokenPage());
        tree()->setCurrentIndex(model()->index(2, 0));
        QTRY_VERIFY(!preview().isNull());
        const QFontMetrics metrics([] {
            QFont font;
            font.setPixelSize(40);
            return font;
        }());
        const int width = metrics.horizontalAdvance(
            QStringLiteral("Failed to tetrieve preview! Please make sure you have a working Internet connection!"));
        QVERIFY(qAbs(preview().width() - width * 24.0 / metrics.height()) <= 2);
    }

    void failuresOfIdentificationStayOnThePicture()
    {
        open();
        QVERIFY(m_lens->openPicture());
        QVERIFY(m_lens->selectLetters(1));
        const QList<QPair<ScriptedRecognitionServer::Answer, QString>> answers{
            {ScriptedRecognitionServer::page("<F>1</F><FN>a & b"),
             QStringLiteral("Failed to identify the font based on the selected letters.")},
            {ScriptedRecognitionServer::earlyClose(),
             QStringLiteral("Failed to connect to the Kerval server.\nPlease make sure you have a working Internet "
                            "connection and/or try again later!")}};
        for (const auto& [answer, text] : answers) {
            m_lens->service().answer("ocrsim", answer);
            FontLensDriver::Message message;
            ModalAnswers modal({FontLensDriver::read(&message)});
            QTest::mouseClick(m_lens->find<QPushButton>("btnIdentify"), Qt::LeftButton);
            QTRY_COMPARE(modal.given(), 1);
            QCOMPARE(message.title, QStringLiteral("FontLens"));
            QCOMPARE(message.text, text);
            QCOMPARE(m_lens->page(), 0);
        }
        m_lens->service().answer("ocrsim", ScriptedRecognitionServer::page("<fonts/>"));
        QVERIFY(m_lens->identify());
        QVERIFY(m_lens->find<QLabel>("lblNoResults")->isVisible());
        QVERIFY(!m_lens->find<QPushButton>("btnShowInLibrary")->isEnabled());
    }

    void enterIdentifiesAndBackKeepsTheLetters()
    {
        open();
        QVERIFY(m_lens->openPicture());
        QVERIFY(m_lens->selectLetters(2));
        QTest::keyClick(m_lens->find<QLineEdit>("leLetter"), Qt::Key_Return);
        QTRY_COMPARE(m_lens->page(), 1);
        QTest::mouseClick(m_lens->find<QPushButton>("btnBack"), Qt::LeftButton);
        QCOMPARE(m_lens->page(), 0);
        QCOMPARE(m_lens->letterCount(), 2);
        QVERIFY(m_lens->identify());
        QVERIFY(m_lens->openPicture()); // leaves the results of the old picture
        QCOMPARE(m_lens->page(), 0);
        QCOMPARE(model()->rowCount(), 0);
    }

    void resultsOfTheOwnServiceAreShownInTheLibrary()
    {
        open();
        identify();
        QSignalSpy wanted(m_lens->dialog(), &FontLensDialog::showFontRequested);
        QVERIFY(!m_lens->find<QPushButton>("btnOpenStoreUrl")->isVisible());
        QTest::mouseClick(m_lens->find<QPushButton>("btnShowInLibrary"), Qt::LeftButton);
        QCOMPARE(wanted.count(), 1);
        tree()->setFocus();
        QTest::keyClick(m_lens->dialog()->windowHandle(), Qt::Key_Return);
        QCOMPARE(wanted.count(), 2);
        const QPoint second = tree()->visualRect(model()->index(1, 1)).center();
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, second);
        QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, second);
        QCOMPARE(wanted.count(), 3);
        QCOMPARE(wanted.first().first().toInt(), 2);
        QCOMPARE(wanted.last().first().toInt(), 5);
    }

    void previewsTakeTheColourOfTheText()
    {
        open();
        QImage black(40, 32, QImage::Format_Grayscale8);
        black.fill(0);
        m_lens->service().answer("render", ScriptedRecognitionServer::png(black));
        identify();
        QTRY_COMPARE(imageAt(1).pixel(20, 20), tree()->palette().color(QPalette::Text).rgba());
        QPalette dark = m_lens->dialog()->palette();
        dark.setColor(QPalette::Text, Qt::yellow);
        m_lens->dialog()->setPalette(dark);
        QCOMPARE(imageAt(1).pixel(20, 20), QColor(Qt::yellow).rgba());
        QCOMPARE(imageAt(1).pixelColor(200, 20).alpha(), 0);
    }

    void thePreviewsSizeEndsAt4And48()
    {
        FontLensFontPreviewWidget widget;
        QImage image(480, 48, QImage::Format_RGB32);
        image.fill(Qt::red);
        widget.setImage(image);
        const auto* shown = widget.findChild<QLabel*>(QStringLiteral("lblPreview"));
        const auto height = [shown] { return shown->pixmap(Qt::ReturnByValue).height() / shown->devicePixelRatioF(); };
        QCOMPARE(widget.previewSize(), 24);
        QCOMPARE(height(), 24.0);
        const auto* size = widget.findChild<QLabel*>(QStringLiteral("lblSize"));
        for (int i = 0; i < 60; ++i)
            QMetaObject::invokeMethod(&widget, "increasePreviewSize");
        QCOMPARE(widget.previewSize(), 48);
        QCOMPARE(size->text(), QStringLiteral("48px"));
        QCOMPARE(height(), 48.0);
        for (int i = 0; i < 60; ++i)
            QMetaObject::invokeMethod(&widget, "decreasePreviewSize");
        QCOMPARE(widget.previewSize(), 4);
        QCOMPARE(size->text(), QStringLiteral("4px"));
        QCOMPARE(height(), 4.0);
    }

    void theShopButtonNamesItsFont()
    {
        FontLensFontPreviewWidget widget;
        const FontDataPtr font(new FontData{1, QStringLiteral("Smith & Sons"), QStringLiteral("Bold"), QString(), 0.0});
        const auto* shop = widget.findChild<QPushButton*>(QStringLiteral("btnOpenStoreUrl"));
        QVERIFY(!shop->isEnabled());
        widget.setFont(font);
        QCOMPARE(shop->text(), QStringLiteral("Buy Smith && Sons Bold")); // shown with one
        widget.setUrl(QUrl(QStringLiteral("http://shop.example/1")));
        QVERIFY(shop->isEnabled());
        widget.setFont(font);
        QVERIFY(!shop->isEnabled());
    }

private:
    void open(FontLensDriver::ServiceKind kind = FontLensDriver::OwnService)
    {
        m_lens = std::make_unique<FontLensDriver>(kind);
    }

    void identify()
    {
        QVERIFY(m_lens->openPicture());
        QVERIFY(m_lens->selectLetters(2));
        QVERIFY(m_lens->identify());
    }

    QString warning()
    {
        FontLensDriver::Message message;
        ModalAnswers answers({FontLensDriver::read(&message)});
        QTest::mouseClick(m_lens->find<QPushButton>("btnIdentify"), Qt::LeftButton);
        return message.title == QLatin1String("Warning") ? message.text : QString();
    }

    QTreeView* tree() const { return m_lens->find<QTreeView>("treeView"); }
    QAbstractItemModel* model() const { return tree()->model(); }
    QString textAt(int row, int column) const { return model()->index(row, column).data().toString(); }
    QImage imageAt(int row) const { return model()->index(row, 0).data(Qt::DecorationRole).value<QImage>(); }
    int selectedRow() const { return tree()->selectionModel()->selectedRows().value(0).row(); }
    QPixmap preview() const { return m_lens->find<QLabel>("lblPreview")->pixmap(Qt::ReturnByValue); }
    // 0 while there is no preview.
    QRgb previewColor() const
    {
        const QImage image = preview().toImage();
        return image.isNull() ? 0 : image.pixel(image.rect().center());
    }

    std::unique_ptr<FontLensDriver> m_lens;
};

KERVAL_TEST(FontLensResultsTest)

#include "FontLensResultsTest.moc"
