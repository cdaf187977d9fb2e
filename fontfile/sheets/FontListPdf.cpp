#include "fontfile/sheets/FontListPdf.h"

#include "fontfile/KrvFontPainter.h"
#include "qtService/database/KrvFontRepository.h"

#include <QImage>

namespace {

constexpr int samplePointSize = 16;
constexpr int labelGap = 15;
constexpr int fontGap = 45;
constexpr int fadeWidth = 60;
constexpr int familyAndStyle = 122; // the field's number in the record

} // namespace

FontListPdf::FontListPdf(const FontSampleJobPtr& job)
    : m_job(job)
    , m_document(job)
{
}

void FontListPdf::run()
{
    m_job->setProgressTotal(m_job->fontCount());
    m_job->setState(FontSampleJob::Running);
    for (const int id : sortFontIdsByName(m_job->fontIdList(), {})) {
        if (m_job->isCancelled() || !KrvFontRepository::instance())
            break;
        if (const StaticFontPtr font = printableFont(id))
            drawFont(*font);
        m_job->setProgressCurrent(m_job->progressCurrent() + 1);
        m_job->setFinishedFontCount(m_job->finishedFontCount() + 1);
    }
    m_document.finish();
}

void FontListPdf::drawFont(const fms::StaticFont& font)
{
    const QString label = font.fieldText(familyAndStyle);
    const QSize labelSize = m_document.metrics(m_document.labelFont()).boundingRect(label).size();

    PointSizePreviewRequest request;
    request.dpi = PdfDocument::resolution;
    request.pointSize = samplePointSize;
    request.text = m_job->sampleText().isEmpty() ? label : m_job->sampleText();
    request.extendMargins = true;
    QImage image; // stays null for a font that cannot be rendered; its name is printed all the same
    KrvFontPainter::renderPreview(font.fileName(), request, &image, font.faceIndex(), nullptr, Qt::AlignLeft, false,
                                  0.4);

    if (m_y > 0 && m_y + labelSize.height() + image.height() > m_document.page().height()) {
        m_document.newPage();
        m_y = 0;
    }
    m_document.drawLabel(QPoint(0, m_y), labelSize, label);
    m_y += labelSize.height() + labelGap;
    const int pageWidth = m_document.page().width();
    if (image.width() > pageWidth)
        m_document.drawFading(QPoint(0, m_y), image, pageWidth + 1, fadeWidth);
    else
        m_document.painter().drawImage(0, m_y, image);
    m_y += image.height() + fontGap;
}
