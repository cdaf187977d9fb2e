#include "fontfile/sheets/PdfDocument.h"

#include "fontfile/sheets/FMSPdfGenerator.h"
#include "qtService/database/KrvFontRepository.h"

#include <QDebug>
#include <QFile>
#include <QLinearGradient>
#include <QPageLayout>

#include <algorithm>
#include <tuple>
#include <vector>

namespace {

constexpr qreal marginMillimetres = 15;

// A temporary file of our own: made here, so that two jobs that look for a free name at once do not find the same one.
QString reserveTemporaryFile()
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        QFile file(FMSPdfGenerator::tempFileName());
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return file.fileName();
    }
    qWarning("W_0_ no temporary file can be made for a PDF document");
    return FMSPdfGenerator::tempFileName();
}

} // namespace

PdfDocument::PdfDocument(const FontSampleJobPtr& job)
    : m_job(job)
    , m_fileName(reserveTemporaryFile())
    , m_writer(m_fileName)
    , m_labelFont(QStringLiteral("Arial"), 10)
{
    m_writer.setResolution(resolution);
    m_writer.setPageLayout(
        QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                    QMarginsF(marginMillimetres, marginMillimetres, marginMillimetres, marginMillimetres),
                    QPageLayout::Millimeter));
    m_writer.setCreator(QStringLiteral("Kerval"));
    m_page = QRect(QPoint(0, 0), m_writer.pageLayout().paintRectPixels(resolution).size());
    m_painter.begin(&m_writer);
    m_painter.setRenderHint(QPainter::LosslessImageRendering); // letters must not be speckled by lossy compression
    m_painter.setFont(m_labelFont);
    m_painter.setPen(Qt::gray);
}

PdfDocument::~PdfDocument()
{
    if (!m_fileName.isEmpty())
        QFile::remove(m_fileName);
}

void PdfDocument::drawLabel(const QPoint& topLeft, const QSize& size, const QString& text)
{
    m_painter.drawText(QRect(topLeft, size), Qt::AlignLeft | Qt::TextDontClip | Qt::TextSingleLine, text);
}

void PdfDocument::drawFading(const QPoint& topLeft, const QImage& image, int end, int fadeWidth)
{
    if (image.width() <= end - fadeWidth) {
        m_painter.drawImage(topLeft, image);
        return;
    }
    // The picture itself loses its opacity: white painted over it would leave a line where a viewer rounds the edges of
    // the two differently.
    QImage faded =
        image.copy(0, 0, qMin(image.width(), end), image.height()).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QLinearGradient gradient(end - fadeWidth, 0, end, 0);
    gradient.setColorAt(0, Qt::black);
    gradient.setColorAt(1, Qt::transparent);
    QPainter painter(&faded);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(faded.rect(), gradient);
    painter.end();
    m_painter.drawImage(topLeft, faded);
}

void PdfDocument::fadeBottom(const QRect& rect)
{
    // As an image: the PDF engine paints gradients without their transparency.
    QImage fade(rect.size(), QImage::Format_ARGB32_Premultiplied);
    fade.fill(Qt::transparent);
    QLinearGradient gradient(0, 0, 0, rect.height());
    gradient.setColorAt(0, Qt::transparent);
    gradient.setColorAt(1, Qt::white);
    QPainter painter(&fade);
    painter.fillRect(fade.rect(), gradient);
    painter.end();
    m_painter.drawImage(rect.topLeft(), fade);
}

void PdfDocument::finish()
{
    m_painter.end();
    if (!m_job->isCancelled() && !QFile::copy(m_fileName, m_job->saveFileName()))
        qWarning().noquote() << "W_0_ the PDF document could not be written to" << m_job->saveFileName();
    QFile::remove(m_fileName);
    m_fileName.clear();
    m_job->setState(FontSampleJob::Finished);
}

QList<int> sortFontIdsByName(const QList<int>& ids, const QStringList& preferredPostScriptNames)
{
    const auto repository = KrvFontRepository::instance();
    // (missing, not preferred, name): fetched once for each font, because a record may vanish while this runs.
    std::vector<std::tuple<bool, bool, QString, int>> keys;
    keys.reserve(size_t(ids.size()));
    for (const int id : ids) {
        const StaticFontPtr font = repository ? repository->font(id) : StaticFontPtr();
        if (font) {
            const bool preferred = preferredPostScriptNames.contains(font->postScriptName());
            keys.emplace_back(false, !preferred, font->familyName() + font->styleName(), id);
        } else {
            keys.emplace_back(true, true, QString(), id);
        }
    }
    std::sort(keys.begin(), keys.end());
    QList<int> sorted;
    for (const auto& key : keys)
        sorted.append(std::get<int>(key));
    return sorted;
}

StaticFontPtr printableFont(int fontId)
{
    const auto repository = KrvFontRepository::instance();
    const StaticFontPtr font = repository ? repository->font(fontId) : StaticFontPtr();
    return font && font->fileExists() ? font : StaticFontPtr();
}
