#include "fontfile/sheets/FMSPdfGenerator.h"
#include "fontfile/sheets/PdfDocument.h"

#include "qtService/management/systemfm/SystemFontManager.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

using namespace kerval::testing;

namespace {

constexpr char fullCorrection[] = "1.0000E+00;9.0000E-01;8.0000E-01";

QByteArray runTool(const QString& program, const QStringList& arguments)
{
    QProcess tool;
    tool.start(program, arguments);
    if (!tool.waitForFinished(60000) || tool.exitCode() != 0)
        qFatal("%s fails: %s", qPrintable(program), tool.readAllStandardError().constData());
    return tool.readAllStandardOutput();
}

int pageCount(const QString& pdf)
{
    for (const QByteArray& line : runTool(QStringLiteral("pdfinfo"), {pdf}).split('\n')) {
        if (line.startsWith("Pages:"))
            return line.mid(6).trimmed().toInt();
    }
    return 0;
}

QString textOf(const QString& pdf)
{
    return QString::fromUtf8(
        runTool(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")}));
}

QList<QImage> pagesOf(const QString& pdf, int dpi)
{
    QTemporaryDir folder;
    runTool(QStringLiteral("pdftoppm"), {QStringLiteral("-gray"), QStringLiteral("-r"), QString::number(dpi), pdf,
                                         folder.filePath(QStringLiteral("page"))});
    QList<QImage> pages;
    for (const QString& file : QDir(folder.path()).entryList(QDir::Files, QDir::Name))
        pages.append(QImage(folder.filePath(file)));
    return pages;
}

bool hasInk(const QImage& page, const QRect& part)
{
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (qGray(page.pixel(x, y)) < 128)
                return true;
        }
    }
    return false;
}

} // namespace

class FontSheetsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void listingNamesAndShowsEveryFont();
    void listingWithoutSampleShowsNames();
    void sheetHasAPageForEachFont();
    void unmeasuredFontsHaveNoCharacterGrid();
    void goneFontsAreCountedAndLeftOut();
    void wideSamplesFadeBeforeTheMargin();
    void cancellingLeavesNoFile();
    void cancelledBeforeItBeginsItStaysSo();
    void impossibleJobsAreCancelledAtOnce();
    void existingFilesAreReplaced();
    void jobsAtOnceDoNotMix();
    void goingGeneratorStopsItsJobs();
    void orderOfFonts();
    void temporaryNamesAreFree();
    void cleanup();

private:
    FontSampleJobPtr finished(const QList<int>& ids, const QString& text, int kind)
    {
        const FontSampleJobPtr job = m_generator->generate(ids, m_pdf, text, kind);
        QSignalSpy done(m_generator.get(), &FMSPdfGenerator::pdfGenerated);
        if (!done.wait(120000))
            qFatal("no document");
        return job;
    }

    QStringList m_files;
    std::unique_ptr<QTemporaryDir> m_temp;
    std::unique_ptr<TestLibrary> m_library;
    std::unique_ptr<FMSPdfGenerator> m_generator;
    QList<int> m_ids;
    QString m_pdf;
};

void FontSheetsTest::initTestCase()
{
    for (const char* family : {"dejavu", "liberation", "freefont"}) {
        QDirIterator it(QStringLiteral("/usr/share/fonts/truetype/") + QLatin1String(family), {QStringLiteral("*.ttf")},
                        QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            m_files.append(it.next());
    }
    m_files.sort();
    m_files = m_files.mid(0, 30);
    QVERIFY2(m_files.size() == 30, "the fonts that scripts/bootstrap installs");
}

void FontSheetsTest::init()
{
    m_temp = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", QFile::encodeName(m_temp->path()));
    m_pdf = m_temp->filePath(QStringLiteral("out.pdf"));
    m_library = std::make_unique<TestLibrary>();
    KrvFontRepository::setInstance(m_library->repository);
    QList<StaticFontPtr> fonts;
    for (const QString& file : qAsConst(m_files)) {
        fonts.append(TestLibrary::makeFont(file, file));
        fonts.last()->setFullMetricsCorrection(QLatin1String(fullCorrection));
    }
    m_ids = m_library->addFonts(fonts);
    m_generator = std::make_unique<FMSPdfGenerator>();
}

void FontSheetsTest::cleanup()
{
    m_generator.reset();
    QVERIFY2(QDir(m_temp->path()).entryList({QStringLiteral("fms*.tmp")}).isEmpty(), "temporary files are removed");
    KrvFontRepository::setInstance({});
    m_library.reset();
    qunsetenv("TMPDIR");
    m_temp.reset();
}

void FontSheetsTest::listingNamesAndShowsEveryFont()
{
    const FontSampleJobPtr job =
        finished(m_ids, QStringLiteral("Sphinx of black quartz, judge my vow"), FMSPdfGenerator::FontListing);
    QCOMPARE(job->state(), FontSampleJob::Finished);
    QCOMPARE(job->progressTotal(), 30);
    QCOMPARE(job->progressCurrent(), 30);
    QCOMPARE(job->finishedFontCount(), 30);
    const QString text = textOf(m_pdf);
    for (const QString& file : qAsConst(m_files))
        QVERIFY2(text.contains(QFileInfo(file).baseName() + QStringLiteral(" Regular")), qPrintable(file));
    const auto pages = pagesOf(m_pdf, 40);
    QCOMPARE(pages.size(), pageCount(m_pdf));
    QVERIFY(pages.size() >= 2 && pages.size() <= 4);
    for (const QImage& page : pages)
        QVERIFY(hasInk(page, page.rect()));
}

void FontSheetsTest::listingWithoutSampleShowsNames()
{
    const QList<int> three = m_ids.mid(0, 3);
    finished(three, QString(), FMSPdfGenerator::FontListing);
    const QImage page = pagesOf(m_pdf, 100).value(0);
    // Three labels in gray, each with the same text in black below it.
    int blackRuns = 0;
    bool inRun = false;
    for (int y = 0; y < page.height(); ++y) {
        const bool ink = hasInk(page, QRect(0, y, page.width(), 1));
        blackRuns += ink && !inRun;
        inRun = ink;
    }
    QVERIFY(blackRuns >= 3 && blackRuns <= 9);
}

void FontSheetsTest::sheetHasAPageForEachFont()
{
    const FontSampleJobPtr job = finished(m_ids, QString(), FMSPdfGenerator::SampleSheet);
    QCOMPARE(job->progressTotal(), 9 * 30);
    QCOMPARE(job->progressCurrent(), 9 * 30);
    QCOMPARE(pageCount(m_pdf), 30);
    const QString text = textOf(m_pdf);
    for (const QString& file : qAsConst(m_files))
        QVERIFY2(text.contains(QFileInfo(file).baseName() + QStringLiteral(" Regular")), qPrintable(file));
    QCOMPARE(text.count(QStringLiteral("36pt")), 30);
    QCOMPARE(text.count(QStringLiteral("12pt")), 60);
    for (const QImage& page : pagesOf(m_pdf, 30)) {
        const QRect upper(0, 0, page.width(), page.height() / 2);
        QVERIFY(hasInk(page, upper));
        QVERIFY(hasInk(page, upper.translated(0, page.height() / 2)));
    }
}

void FontSheetsTest::unmeasuredFontsHaveNoCharacterGrid()
{
    m_library->repository->font(m_ids.first())->setFullMetricsCorrection(QString());
    finished({m_ids.first()}, QString(), FMSPdfGenerator::SampleSheet);
    const QImage page = pagesOf(m_pdf, 50).value(0);
    QVERIFY(!hasInk(page, QRect(0, page.height() * 9 / 10, page.width(), page.height() / 10)));
    m_library->repository->font(m_ids.first())->setFullMetricsCorrection(QLatin1String(fullCorrection));
    finished({m_ids.first()}, QString(), FMSPdfGenerator::SampleSheet);
    const QImage full = pagesOf(m_pdf, 50).value(0);
    QVERIFY(hasInk(full, QRect(0, full.height() * 17 / 20, full.width(), full.height() / 10)));
}

void FontSheetsTest::goneFontsAreCountedAndLeftOut()
{
    m_library->repository->font(m_ids.at(1))->setFileName(m_temp->filePath(QStringLiteral("gone.ttf")));
    m_library->repository->font(m_ids.at(1))->setFileExists(false);
    const auto broken = TestLibrary::makeFont(m_temp->filePath(QStringLiteral("zz.ttf")), QStringLiteral("broken"));
    writeFile(broken->fileName(), "no font");
    const int brokenId = m_library->addFonts({broken}).first();
    const QList<int> ids{m_ids.at(0), m_ids.at(1), 987654, brokenId};
    for (const int kind : {FMSPdfGenerator::FontListing, FMSPdfGenerator::SampleSheet}) {
        const FontSampleJobPtr job = finished(ids, QStringLiteral("Sample"), kind);
        QCOMPARE(job->finishedFontCount(), 4);
        const QString text = textOf(m_pdf);
        QVERIFY(text.contains(QStringLiteral("zz Regular")));
        QVERIFY(!text.contains(QFileInfo(m_files.at(1)).baseName() + QStringLiteral(" Regular")));
    }
}

void FontSheetsTest::wideSamplesFadeBeforeTheMargin()
{
    finished({m_ids.first()}, QString(60, QLatin1Char('M')), FMSPdfGenerator::SampleSheet);
    const QImage page = pagesOf(m_pdf, 100).value(0);
    const int margin = int(15 / 25.4 * 100);
    const QRect inside(margin, 0, page.width() - 2 * margin - 55, page.height() / 3);
    QVERIFY(hasInk(page, inside));
    QVERIFY(!hasInk(page, QRect(page.width() - margin - 8, 0, margin + 8, page.height() / 3)));
}

void FontSheetsTest::cancellingLeavesNoFile()
{
    const FontSampleJobPtr job = FontSampleJobPtr::create(m_pdf, QStringLiteral("Sample"), m_ids);
    // Called on the worker's thread between two fonts, as a user's click would be at any time.
    connect(job.data(), &FontSampleJob::progressCurrentChanged, job.data(), &FontSampleJob::cancelJob,
            Qt::DirectConnection);
    FMSPdfGenerator::generateFontListPdf(job);
    QCOMPARE(job->state(), FontSampleJob::Finished);
    QCOMPARE(job->finishedFontCount(), 1);
    QVERIFY(!QFile::exists(m_pdf));

    const auto sheet = FontSampleJobPtr::create(m_pdf, QString(), m_ids);
    connect(sheet.data(), &FontSampleJob::progressCurrentChanged, sheet.data(), &FontSampleJob::cancelJob,
            Qt::DirectConnection);
    FMSPdfGenerator::generateFontSheetPdf(sheet);
    QCOMPARE(sheet->state(), FontSampleJob::Finished);
    QCOMPARE(sheet->progressCurrent(), 1);
    QVERIFY(!QFile::exists(m_pdf));
}

void FontSheetsTest::cancelledBeforeItBeginsItStaysSo()
{
    const auto job = FontSampleJobPtr::create(m_pdf, QString(), m_ids);
    QSignalSpy states(job.data(), &FontSampleJob::stateChanged);
    job->cancelJob();
    FMSPdfGenerator::generateFontListPdf(job);
    QCOMPARE(job->finishedFontCount(), 0);
    QVERIFY(!QFile::exists(m_pdf));
    QCOMPARE(states.count(), 2);
    QCOMPARE(states.at(1).at(0).value<FontSampleJob::State>(), FontSampleJob::Finished);
}

void FontSheetsTest::impossibleJobsAreCancelledAtOnce()
{
    const FontSampleJobPtr unknown = m_generator->generate(m_ids, m_pdf, QString(), 7);
    QCOMPARE(unknown->state(), FontSampleJob::Cancelled);
    QCOMPARE(unknown->errorCode(), 32);
    const FontSampleJobPtr blocked = m_generator->generate(m_ids, m_temp->path(), QString(), 0); // a folder
    QCOMPARE(blocked->state(), FontSampleJob::Cancelled);
    QCOMPARE(blocked->errorCode(), 34);
}

void FontSheetsTest::existingFilesAreReplaced()
{
    writeFile(m_pdf, "an older document");
    finished(m_ids.mid(0, 1), QString(), FMSPdfGenerator::FontListing);
    QCOMPARE(pageCount(m_pdf), 1);
}

void FontSheetsTest::jobsAtOnceDoNotMix()
{
    QList<FontSampleJobPtr> jobs;
    for (int i = 0; i < 6; ++i)
        jobs.append(m_generator->generate(m_ids.mid(i, 1), m_temp->filePath(QStringLiteral("%1.pdf").arg(i)),
                                          QStringLiteral("Sample"), FMSPdfGenerator::FontListing));
    for (int i = 0; i < 6; ++i) {
        QTRY_COMPARE_WITH_TIMEOUT(jobs.at(i)->state(), FontSampleJob::Finished, 60000);
        QVERIFY(textOf(jobs.at(i)->saveFileName()).contains(QFileInfo(m_files.at(i)).baseName()));
    }
}

void FontSheetsTest::goingGeneratorStopsItsJobs()
{
    const FontSampleJobPtr job = m_generator->generate(m_ids, m_pdf, QString(), FMSPdfGenerator::SampleSheet);
    m_generator.reset();
    QCOMPARE(job->state(), FontSampleJob::Finished);
    QVERIFY(!QFile::exists(m_pdf));
}

void FontSheetsTest::orderOfFonts()
{
    const auto font = [](const char* family, const char* postScriptName) {
        const auto made = TestLibrary::makeFont(QLatin1String(family), QLatin1String(family));
        made->setFamilyName(QLatin1String(family));
        made->setPostScriptName(QLatin1String(postScriptName));
        return made;
    };
    const auto ids = m_library->addFonts({font("b", "B"), font("Z", "Z"), font("a", "A")});
    QCOMPARE(sortFontIdsByName({ids[0], 5555, ids[1], ids[2]}, {}), (QList<int>{ids[1], ids[2], ids[0], 5555}));
    QCOMPARE(sortFontIdsByName(ids, {QStringLiteral("B")}), (QList<int>{ids[0], ids[1], ids[2]}));
}

void FontSheetsTest::temporaryNamesAreFree()
{
    QCOMPARE(QFileInfo(FMSPdfGenerator::tempFileName()).fileName(), QStringLiteral("fms0.tmp"));
    writeFile(m_temp->filePath(QStringLiteral("fms0.tmp")), "taken");
    QCOMPARE(FMSPdfGenerator::tempFileName(), m_temp->filePath(QStringLiteral("fms1.tmp")));
    QVERIFY(QFile::remove(m_temp->filePath(QStringLiteral("fms0.tmp"))));
}

KERVAL_TEST(FontSheetsTest)
#include "FontSheetsTest.moc"
