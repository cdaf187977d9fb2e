#include "fontfile/RenderFontPreviewCommand.h"

#include "fontfile/KrvFontPainter.h"

#include <QColor>
#include <QFile>
#include <QFont>
#include <QGuiApplication>

namespace {

qreal primaryScreenRatio()
{
    const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    return application ? application->devicePixelRatio() : 1.0;
}

QImage messageImage(const QString& message, const QColor& color, int pixelSize)
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(qMax(1, pixelSize));
    QImage image;
    KrvFontPainter::renderWithSystemFont(font, color, message, &image, false, 0.4);
    return image;
}

} // namespace

RenderFontPreviewCommand::RenderFontPreviewCommand(const QString& fileName, int faceIndex, int pixelSize,
                                                   const QString& text,
                                                   const KrvFontMetrics::MetricsCorrection& correction,
                                                   const QMargins& margins)
    : m_fileName(fileName)
    , m_faceIndex(faceIndex)
    , m_pixelSize(pixelSize)
    , m_text(text)
    , m_margins(margins)
    , m_correction(correction)
{
}

RenderFontPreviewCommand::~RenderFontPreviewCommand()
{
    waitForFinished();
}

void RenderFontPreviewCommand::setOwnScript(bool ownScript)
{
    QWriteLocker locker(&m_lock);
    m_ownScript = ownScript;
}

void RenderFontPreviewCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);
    const qreal ratio = primaryScreenRatio();
    PixelSizePreviewRequest request;
    QString fileName;
    int faceIndex = 0;
    {
        QReadLocker locker(&m_lock);
        request.correction = m_correction;
        request.pixelSize = int(m_pixelSize * ratio);
        request.text = m_text;
        request.ownScript = m_ownScript;
        request.margins = m_margins; // carried along; without extendMargins the image ends where the ink does
        fileName = m_fileName;
        faceIndex = m_faceIndex;
    }
    const bool exists = QFile::exists(fileName);
    QImage image;
    if (!exists)
        image = messageImage(tr("File cannot be found"), Qt::red, request.pixelSize);
    else if (!KrvFontPainter::renderPixelPreview(fileName, request, &image, faceIndex))
        image = messageImage(tr("This preview cannot be rendered - missing glyphs"), Qt::black, request.pixelSize);
    image.setDevicePixelRatio(ratio);
    {
        QWriteLocker locker(&m_lock);
        m_fileExists = exists;
        m_image = image;
    }
    setState(Finished);
}

QImage RenderFontPreviewCommand::image() const
{
    QReadLocker locker(&m_lock);
    return m_image;
}

bool RenderFontPreviewCommand::fileExists() const
{
    QReadLocker locker(&m_lock);
    return m_fileExists;
}

QString RenderFontPreviewCommand::fileName() const
{
    QReadLocker locker(&m_lock);
    return m_fileName;
}

int RenderFontPreviewCommand::faceIndex() const
{
    QReadLocker locker(&m_lock);
    return m_faceIndex;
}

int RenderFontPreviewCommand::pixelSize() const
{
    QReadLocker locker(&m_lock);
    return m_pixelSize;
}

QString RenderFontPreviewCommand::text() const
{
    QReadLocker locker(&m_lock);
    return m_text;
}
