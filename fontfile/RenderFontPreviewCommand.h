#pragma once

#include "fontfile/KrvFontMetrics.h"
#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QImage>
#include <QMargins>
#include <QSharedPointer>
#include <QString>

// Renders one line of text in a font on the thread pool. It always ends in Finished with an image: of the text, or of
// a message when the file is gone (red, fileExists() is false) or cannot be rendered (black). An image of a text
// without ink is null. Cancelled before its run it does nothing.
class RenderFontPreviewCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    // The pixel size is in device-independent pixels.
    RenderFontPreviewCommand(const QString& fileName, int faceIndex, int pixelSize, const QString& text,
                             const KrvFontMetrics::MetricsCorrection& correction, const QMargins& margins);
    ~RenderFontPreviewCommand() override;

    // A text whose letters the font lacks gives way to one in a script that it has. Before the start.
    void setOwnScript(bool ownScript);

    void operator()() override;

    QImage image() const;
    bool fileExists() const;
    QString fileName() const;
    int faceIndex() const;
    int pixelSize() const;
    QString text() const;

private:
    QString m_fileName;
    int m_faceIndex;
    int m_pixelSize;
    QString m_text;
    QImage m_image;
    QMargins m_margins;
    KrvFontMetrics::MetricsCorrection m_correction;
    bool m_ownScript = false;
    bool m_fileExists = true;
};

using RenderFontPreviewCommandPtr = QSharedPointer<RenderFontPreviewCommand>;
