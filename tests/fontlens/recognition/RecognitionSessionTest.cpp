#include "fontlens/recognition/FontRecognizerSession.h"
#include "tests/fontlens/recognition/ScriptedRecognitionServer.h"
#include "tests/support/testregistry.h"

#include <QSignalSpy>
#include <QtTest>

using namespace FontRecognizer;

namespace {

using Server = ScriptedRecognitionServer;

QImage picture(int width)
{
    QImage image(width, 5, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

// A service that numbers the pictures it makes, each as wide as its number; and one that answers nothing but errors.
struct Service
{
    Service()
    {
        server.setScript([this](const Server::Request& request) {
            if (broken)
                return Server::page("x", "text/plain", "500 Internal Server Error");
            const QByteArray target = request.target();
            const int id = target.indexOf("imgid=");
            if (target.contains("getimg"))
                return Server::png(picture(target.mid(id + 6).split('&').first().toInt()));
            if (target.contains("ocrsim"))
                return Server::page("<R><F>3</F><D>1</D></R>");
            if (target.contains("render"))
                return Server::png(picture(9));
            if (target.contains("GetBuyFontLinks"))
                return Server::page("<R><buyurl>http://a.example/</buyurl></R>");
            return Server::page(QByteArray::number(++pictures));
        });
    }

    Server server;
    FontRecognizerClientPtr client = FontRecognizerClientPtr::create(RecognitionUrls(server.host()));
    FontRecognizerSession session{client};
    int pictures = 0;
    bool broken = false;

    bool open()
    {
        QSignalSpy spy(&session, &FontRecognizerSession::setSourceImageFinished);
        session.setSourceImage(picture(30), QStringLiteral("a.png"));
        return spy.wait() && spy.first().first().toBool();
    }

    bool select(QPoint point)
    {
        QSignalSpy spy(&session, &FontRecognizerSession::selectLetterFinished);
        session.selectLetter(point, 0, 30);
        return spy.wait() && spy.first().first().toBool();
    }

    QByteArray lastLetterRequest() const
    {
        QByteArray last;
        for (const QByteArray& target : server.targets())
            if (target.contains("objat"))
                last = target;
        return last;
    }
};

QList<QPoint> pointsOf(const FontRecognizerLetterSelectionPtr& letter)
{
    return letter->property("PointList").value<QList<QPoint>>();
}

} // namespace

class RecognitionSessionTest : public QObject
{
    Q_OBJECT

private slots:
    void lettersAreSelectedExtendedAndDiscarded()
    {
        Service service;
        FontRecognizerSession& session = service.session;
        QVERIFY(service.open());
        QCOMPARE(session.sourceImageId(), QStringLiteral("1"));
        QVERIFY(service.select(QPoint(1, 2)));
        QVERIFY(service.select(QPoint(3, 4)));
        QVERIFY(service.select(QPoint(5, 6)));
        QCOMPARE(session.letterCount(), 3);
        QCOMPARE(session.letter(1)->imageId(), QStringLiteral("3"));
        QCOMPARE(session.letter(1)->image().width(), 3);
        QVERIFY(session.letter(1)->character().isNull());
        QVERIFY(session.letter(3).isNull());
        QVERIFY(session.letter(-1).isNull());

        QSignalSpy extended(&session, &FontRecognizerSession::extendLastSelectedLetterFinished);
        session.extendLastSelectedLetter(QPoint(7, 8), 10, 4);
        QVERIFY(extended.wait());
        QVERIFY(service.lastLetterRequest().contains("points=5,6;7,8&threshold=4&angle=10&"));
        QCOMPARE(session.letterCount(), 3);
        QCOMPARE(session.letter(2)->imageId(), QStringLiteral("5"));
        QCOMPARE(pointsOf(session.letter(2)), (QList<QPoint>{QPoint(5, 6), QPoint(7, 8)}));

        session.letter(0)->setCharacter(QLatin1Char('a'));
        session.letter(2)->setCharacter(QLatin1Char('c'));
        QCOMPARE(session.previewText(), QStringLiteral("ac"));
        session.letter(1)->setCharacter(QLatin1Char('b'));
        QCOMPARE(session.previewText(), QStringLiteral("abc"));

        QSignalSpy discarded(&session, &FontRecognizerSession::letterDiscarded);
        const auto second = session.letter(1);
        session.discardLetter(7);
        session.discardLetter(-1);
        QCOMPARE(discarded.count(), 0);
        session.discardLetter(1);
        QCOMPARE(discarded.first().first().value<FontRecognizerLetterSelectionPtr>(), second);
        QCOMPARE(session.previewText(), QStringLiteral("ac"));

        QSignalSpy found(&session, &FontRecognizerSession::findSimilarFontsFinished);
        session.findSimilarFonts();
        QVERIFY(found.wait());
        QVERIFY(service.server.targets().last().endsWith("imgids=a,2;c,5"));
        QCOMPARE(found.first().at(1).value<QList<FontDataPtr>>().first()->id, 3);
    }

    void cutLinesAreRoundedAndReplaced()
    {
        Service service;
        QVERIFY(service.open());
        service.session.setSplitters({QPolygonF(QVector<QPointF>{QPointF(0.6, 2.4), QPointF(3.5, 4)}),
                                      QPolygonF(QVector<QPointF>{QPointF(5, 6), QPointF(7, 8)})});
        QVERIFY(service.select(QPoint(1, 1)));
        QVERIFY(service.lastLetterRequest().endsWith("spltrs=1,2;4,4_5,6;7,8"));
        service.session.setSplitters({});
        QVERIFY(service.select(QPoint(1, 1)));
        QVERIFY(service.lastLetterRequest().endsWith("spltrs="));
    }

    void nothingToExtendAsksNothing()
    {
        Service service;
        QVERIFY(service.open());
        const int requests = service.server.requests().size();
        QSignalSpy extended(&service.session, &FontRecognizerSession::extendLastSelectedLetterFinished);
        service.session.extendLastSelectedLetter(QPoint(1, 1), 0, 30);
        QVERIFY(service.select(QPoint(1, 1))); // would come after it
        QCOMPARE(extended.count(), 0);
        QCOMPARE(service.server.requests().size(), requests + 2);
    }

    void previewsAndLinksNameTheirFont()
    {
        Service service;
        QVERIFY(service.open());
        QSignalSpy preview(&service.session, &FontRecognizerSession::renderPreviewFinished);
        QSignalSpy custom(&service.session, &FontRecognizerSession::renderCustomPreviewFinished);
        QSignalSpy link(&service.session, &FontRecognizerSession::getFontStoreUrlFinished);
        service.session.renderPreview(11, 32);
        service.session.renderCustomPreview(12, 48, QStringLiteral("x"));
        service.session.getFontStoreUrl(13);
        QTRY_VERIFY(preview.count() == 1 && custom.count() == 1 && link.count() == 1);
        QCOMPARE(preview.first().at(1).toInt(), 11);
        QCOMPARE(preview.first().at(2).value<QImage>().width(), 9);
        QCOMPARE(custom.first().at(1).toInt(), 12);
        QCOMPARE(link.first().at(1).toInt(), 13);
        QCOMPARE(link.first().at(2).toUrl(), QUrl(QStringLiteral("http://a.example/")));
    }

    void failuresKeepTheState()
    {
        Service service;
        FontRecognizerSession& session = service.session;
        QVERIFY(service.open());
        QVERIFY(service.select(QPoint(1, 2)));
        service.broken = true;

        QSignalSpy source(&session, &FontRecognizerSession::setSourceImageFinished);
        QSignalSpy selected(&session, &FontRecognizerSession::selectLetterFinished);
        QSignalSpy extended(&session, &FontRecognizerSession::extendLastSelectedLetterFinished);
        QSignalSpy found(&session, &FontRecognizerSession::findSimilarFontsFinished);
        QSignalSpy preview(&session, &FontRecognizerSession::renderPreviewFinished);
        QSignalSpy custom(&session, &FontRecognizerSession::renderCustomPreviewFinished);
        QSignalSpy link(&session, &FontRecognizerSession::getFontStoreUrlFinished);
        session.setSourceImage(QUrl(QStringLiteral("http://a.example/")));
        session.selectLetter(QPoint(3, 4), 0, 30);
        session.extendLastSelectedLetter(QPoint(5, 6), 0, 30);
        session.findSimilarFonts();
        session.renderPreview(11, 32);
        session.renderCustomPreview(12, 48, QStringLiteral("x"));
        session.getFontStoreUrl(13);
        for (QSignalSpy* spy : {&source, &selected, &extended, &found, &preview, &custom, &link}) {
            QTRY_COMPARE(spy->count(), 1);
            QCOMPARE(spy->first().first().toBool(), false);
        }
        QCOMPARE(session.lastResult(), 1);
        QVERIFY(session.lastNetworkError() != 0);
        QCOMPARE(session.sourceImageId(), QStringLiteral("1"));
        QCOMPARE(session.letterCount(), 1);
        QCOMPARE(session.letter(0)->imageId(), QStringLiteral("2"));
        QCOMPARE(pointsOf(session.letter(0)), (QList<QPoint>{QPoint(1, 2)}));
        QCOMPARE(preview.first().at(1).toInt(), 11);
        QCOMPARE(custom.first().at(1).toInt(), 0);
        QCOMPARE(link.first().at(1).toInt(), 0);

        service.broken = false;
        QVERIFY(service.select(QPoint(1, 1)));
        QCOMPARE(session.lastResult(), 0);
    }

    // The letter may go while its new shape is on the way.
    void extendingADiscardedLetterFails()
    {
        Service service;
        QVERIFY(service.open());
        QVERIFY(service.select(QPoint(1, 1)));
        QSignalSpy extended(&service.session, &FontRecognizerSession::extendLastSelectedLetterFinished);
        service.session.extendLastSelectedLetter(QPoint(2, 2), 0, 30);
        service.session.discardLetter(0);
        QVERIFY(extended.wait());
        QCOMPARE(extended.first().first().toBool(), false);
        QCOMPARE(service.session.letterCount(), 0);
    }

    void droppedRequestsAreNotTold()
    {
        Service service;
        QVERIFY(service.open());
        QSignalSpy selected(&service.session, &FontRecognizerSession::selectLetterFinished);
        service.session.selectLetter(QPoint(1, 1), 0, 30);
        service.session.dropRequests();
        QVERIFY(service.select(QPoint(2, 2)));
        QCOMPARE(selected.count(), 1);
        QCOMPARE(pointsOf(service.session.letter(0)), (QList<QPoint>{QPoint(2, 2)}));
    }

    void endingTheSessionDropsItsRequests()
    {
        Server server;
        QSignalSpy abandoned(&server, &Server::abandoned);
        const auto client = FontRecognizerClientPtr::create(RecognitionUrls(server.host()));
        {
            FontRecognizerSession session(client);
            session.setSourceImage(picture(3), QStringLiteral("a.png"));
            session.findSimilarFonts();
            QTRY_COMPARE(server.requests().size(), 2);
        }
        QTRY_COMPARE(abandoned.count(), 2);
    }
};

KERVAL_TEST(RecognitionSessionTest)

#include "RecognitionSessionTest.moc"
