#include "fontfile/sheets/FontSheetPdf.h"

#include "fontfile/KrvFontFile.h"
#include "fontfile/KrvFontMetrics.h"
#include "fontfile/KrvFontPainter.h"

#include <QDebug>
#include <QImage>

namespace {

// In pixels at 300 to the inch.
constexpr int gap = 30;
constexpr int sizeFade = 150;
constexpr int columnLabelHeight = 60;
constexpr int paragraphFadeAbove = 56;
constexpr int paragraphFadeBelow = 3;
constexpr int pageFade = 60;
constexpr int maxCellWidth = 4096;

constexpr int stepsForEachFont = 9; // five sizes, three columns, the font
constexpr int headerPointSize = 18;
constexpr int sizes[] = {12, 14, 18, 24, 36};
constexpr int paragraphSizes[] = {12, 14, 18};
constexpr int familyAndStyle = 122; // the field's number in the record

const auto paragraph = QStringLiteral("Lorem ipsum dolor sit amet, consectetur adipisicing elit, sed do eiusmod tempor "
                                      "incididunt utlabore et dolore magna "
                                      "aliqua. Ut enim ad minim veniam, quis nostrudexercitation ullamco laboris nisi "
                                      "ut aliquip ex ea commodo consequat.");

QImage whiteImage(int width, int height)
{
    QImage image(width, height, QImage::Format_Grayscale8); // all that is drawn on it is black; a quarter of the bytes
    image.fill(Qt::white);
    return image;
}

QString sizeLabel(int points)
{
    return QStringLiteral("%1pt").arg(points);
}

} // namespace

FontSheetPdf::FontSheetPdf(const FontSampleJobPtr& job)
    : m_job(job)
    , m_document(job)
    , m_headerFont(m_document.labelFont())
{
    m_headerFont.setPointSize(headerPointSize);
}

void FontSheetPdf::run()
{
    m_job->setProgressTotal(stepsForEachFont * m_job->fontCount());
    m_job->setState(FontSampleJob::Running);
    qDebug("M_2_ FMSPdfGenerator::generateFontSheetPdf %d dpi", PdfDocument::resolution);
    bool first = true;
    for (const int id : sortFontIdsByName(m_job->fontIdList(), {})) {
        if (m_job->isCancelled())
            break;
        if (const StaticFontPtr font = printableFont(id)) {
            drawFont(*font, first);
            if (m_job->isCancelled())
                break;
        }
        countStep();
        m_job->setFinishedFontCount(m_job->finishedFontCount() + 1);
        first = false; // also for one that could not be printed: its page stays empty
    }
    m_document.finish();
}

void FontSheetPdf::countStep()
{
    m_job->setProgressCurrent(m_job->progressCurrent() + 1);
}

void FontSheetPdf::drawRule()
{
    m_document.painter().drawLine(0, m_y, m_document.page().width(), m_y);
    m_y += gap;
}

void FontSheetPdf::drawFont(const fms::StaticFont& font, bool first)
{
    if (!first)
        m_document.newPage();
    m_document.painter().setClipRect(m_document.page());
    drawHeader(font);
    drawSizes(font);
    if (m_job->isCancelled())
        return;
    drawRule();
    KrvFontFile file(font.fileName());
    if (!file.open(font.faceIndex()))
        return;
    drawParagraphs(&file);
    drawCharacters(&file, font);
}

void FontSheetPdf::drawHeader(const fms::StaticFont& font)
{
    const QString name = font.fieldText(familyAndStyle);
    const int height = m_document.metrics(m_headerFont).boundingRect(name).height();
    QPainter& painter = m_document.painter();
    painter.setFont(m_headerFont);
    painter.drawText(0, height, name);
    painter.setFont(m_document.labelFont());
    m_y = height + gap;
    drawRule();
}

void FontSheetPdf::drawSizes(const fms::StaticFont& font)
{
    const QFontMetrics metrics = m_document.metrics(m_headerFont);
    for (const int size : sizes) {
        if (m_job->isCancelled())
            return;
        const QString label = sizeLabel(size);
        const QSize labelSize = metrics.boundingRect(label).size();
        m_document.drawLabel(QPoint(0, m_y), labelSize, label);
        PointSizePreviewRequest request;
        request.dpi = PdfDocument::resolution;
        request.pointSize = size;
        request.text = m_job->sampleText().isEmpty() ? QStringLiteral("The quick brown fox jumps over the lazy dog!")
                                                     : m_job->sampleText();
        request.extendMargins = true;
        QImage image;
        KrvFontPainter::renderPreview(font.fileName(), request, &image, font.faceIndex(), nullptr, Qt::AlignLeft, false,
                                      0.4);
        m_y += labelSize.height();
        m_document.drawFading(QPoint(0, m_y), image, m_document.page().width(), sizeFade);
        m_y += image.height() + gap;
        countStep();
    }
}

void FontSheetPdf::drawParagraphs(KrvFontFile* file)
{
    const QFontMetrics metrics = m_document.metrics(m_headerFont);
    const int columnWidth = m_document.page().width() / 3;
    QImage image = whiteImage(columnWidth - gap, m_document.page().height() / 3);
    int left = 0;
    for (const int size : paragraphSizes) {
        if (m_job->isCancelled())
            return;
        const QString label = sizeLabel(size);
        m_document.drawLabel(QPoint(left, m_y), metrics.boundingRect(label).size(), label);
        image.fill(Qt::white);
        QPainter imagePainter(&image);
        file->setPointSize(size, PdfDocument::resolution);
        KrvFontPainter(&imagePainter, file).drawText(image.rect(), 0, paragraph, nullptr);
        imagePainter.end();
        m_document.painter().drawImage(left, m_y + columnLabelHeight, image);
        left += columnWidth;
        countStep();
    }
    m_y += image.height() + columnLabelHeight;
    m_document.fadeBottom(
        QRect(QPoint(0, m_y - paragraphFadeAbove), QPoint(m_document.page().width() - 1, m_y + paragraphFadeBelow)));
}

void FontSheetPdf::drawCharacters(KrvFontFile* file, const fms::StaticFont& font)
{
    drawRule();
    const QRect& page = m_document.page();
    const auto correction = KrvFontMetrics::MetricsCorrection::fromString(font.fullMetricsCorrection());
    file->applyMetricsCorrection(correction);
    const int cellHeight = file->pixelSize();
    // Without a measured font there is no cell to put a character in.
    const int cellWidth = int(qBound(-1.0, cellHeight * correction.c1, double(maxCellWidth)));
    if (correction.isValid() && cellWidth > 0) {
        // Accents and descenders may leave their cell; half of the gap on either side is theirs.
        QImage cell = whiteImage(cellWidth, cellHeight + gap);
        const KrvFontMetrics metrics(file);
        int x = 0;
        for (const ushort character : file->characters()) {
            if (m_y >= page.height() || m_job->isCancelled())
                break;
            cell.fill(Qt::white);
            QPainter cellPainter(&cell);
            const unsigned int glyph = file->glyphIndex(QChar(character));
            const int left = cellWidth / 2 - metrics.glyphBox(glyph).width() / 2 - metrics.leftBearing(glyph);
            KrvFontPainter(&cellPainter, file).drawGlyphAt(QPoint(left, gap / 2 + metrics.ascent()), glyph);
            cellPainter.end();
            m_document.painter().drawImage(x, m_y - gap / 2, cell);
            x += cellWidth;
            if (x > page.width() - cellWidth) {
                m_y += cellHeight + gap;
                x = 0;
            }
        }
    }
    m_document.fadeBottom(QRect(0, page.height() - pageFade, page.width(), pageFade));
}
