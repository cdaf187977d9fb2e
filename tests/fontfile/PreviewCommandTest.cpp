#include "fontfile/RenderFontPreviewCommand.h"

#include "tests/fontfile/fontsupport.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace kerval::testing;
using State = AbstractAsynchronousCommand::State;

namespace {

bool hasPixel(const QImage& image, QRgb color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color)
                return true;
        }
    }
    return false;
}

QSharedPointer<RenderFontPreviewCommand> command(const QString& file,
                                                 const KrvFontMetrics::MetricsCorrection& correction = {})
{
    return QSharedPointer<RenderFontPreviewCommand>::create(file, 0, 48, QStringLiteral("Sample"), correction,
                                                            QMargins(9, 9, 9, 9));
}

} // namespace

class PreviewCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void rendersOnThePool();
    void cancelledBeforeItsRunDoesNothing();
    void missingFileIsSaidInRed();
    void brokenFontIsSaidInBlack();
    void manyAtOnce();
};

void PreviewCommandTest::rendersOnThePool()
{
    const auto preview = command(debianFont(QStringLiteral("DejaVuSans.ttf")));
    QSignalSpy states(preview.data(), &AbstractAsynchronousCommand::stateChanged);
    QVERIFY(preview->image().isNull());
    preview->start();
    QTRY_COMPARE(preview->state(), State::Finished);
    QTRY_COMPARE(states.count(), 2);
    const QImage image = preview->image();
    QCOMPARE(image.format(), QImage::Format_Indexed8);
    QVERIFY(image.height() <= 48 && image.height() > 24); // the margins are not added
    QVERIFY(preview->fileExists());
    QCOMPARE(preview->pixelSize(), 48);

    const auto larger = command(debianFont(QStringLiteral("DejaVuSans.ttf")), {1.2, 0.6, 0.75});
    larger->start();
    QTRY_COMPARE(larger->state(), State::Finished);
    QVERIFY(larger->image().width() > image.width());
    QCOMPARE(larger->pixelSize(), 48);
    const auto ignored = command(debianFont(QStringLiteral("DejaVuSans.ttf")), {1.2, -1.0, 0.75});
    ignored->start();
    QTRY_COMPARE(ignored->state(), State::Finished);
    QCOMPARE(ignored->image(), image);
}

void PreviewCommandTest::cancelledBeforeItsRunDoesNothing()
{
    const auto preview = command(debianFont(QStringLiteral("DejaVuSans.ttf")));
    preview->cancel();
    preview->start();
    preview->waitForFinished();
    QCOMPARE(preview->state(), State::Cancelled);
    QVERIFY(preview->image().isNull());
}

void PreviewCommandTest::missingFileIsSaidInRed()
{
    const auto preview = command(QStringLiteral("/nowhere/font.ttf"));
    preview->start();
    QTRY_COMPARE(preview->state(), State::Finished);
    QVERIFY(!preview->fileExists());
    QVERIFY(hasPixel(preview->image(), 0xFFFF0000));
}

void PreviewCommandTest::brokenFontIsSaidInBlack()
{
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("broken.ttf")), "no font");
    const auto preview = command(folder.filePath(QStringLiteral("broken.ttf")));
    preview->start();
    QTRY_COMPARE(preview->state(), State::Finished);
    QVERIFY(preview->fileExists());
    QVERIFY(hasPixel(preview->image(), 0xFF000000));
    QVERIFY(!hasPixel(preview->image(), 0xFFFF0000));
}

void PreviewCommandTest::manyAtOnce()
{
    QList<QSharedPointer<RenderFontPreviewCommand>> previews;
    for (int i = 0; i < 60; ++i) {
        previews.append(command(i % 3 ? debianFont(QStringLiteral("FreeSerif.ttf")) : QStringLiteral("/nowhere.ttf")));
        previews.last()->start();
    }
    for (const auto& preview : qAsConst(previews))
        preview->waitForFinished();
    for (int i = 0; i < previews.size(); ++i)
        QCOMPARE(previews.at(i)->image(), previews.at(i % 3 ? 1 : 0)->image());
}

KERVAL_TEST(PreviewCommandTest)
#include "PreviewCommandTest.moc"
