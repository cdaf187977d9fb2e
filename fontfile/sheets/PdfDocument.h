#pragma once

#include "fontfile/sheets/FontSampleJob.h"
#include "qtService/database/StaticFont.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPdfWriter>
#include <QRect>
#include <QStringList>

// The A4 document that listings and sheets are drawn into: 300 pixels to the inch, label font and gray pen set. It is
// written to a temporary file, which becomes the job's file only when finish() is called and the job was not cancelled,
// so that nothing half-made is ever seen. Lives on the worker's thread.
//
// QPdfWriter rather than the printing system's printer: the pages are the same, but nobody has to wait for a print
// server to be found first.
class PdfDocument
{
public:
    static constexpr int resolution = 300;

    explicit PdfDocument(const FontSampleJobPtr& job);
    ~PdfDocument();
    PdfDocument(const PdfDocument&) = delete;
    PdfDocument& operator=(const PdfDocument&) = delete;

    QPainter& painter() { return m_painter; }
    const QRect& page() const { return m_page; } // the printable area, its corner at (0, 0)
    const QFont& labelFont() const { return m_labelFont; }
    QFontMetrics metrics(const QFont& font) { return QFontMetrics(font, &m_writer); }
    void newPage() { m_writer.newPage(); }

    // Text that begins at the point; the width and height are only the room it was measured to need.
    void drawLabel(const QPoint& topLeft, const QSize& size, const QString& text);
    // The image as far as x = end, fading out over the last pixels before it when it reaches there.
    void drawFading(const QPoint& topLeft, const QImage& image, int end, int fadeWidth);
    // From nothing to white downwards.
    void fadeBottom(const QRect& rect);

    // Moves the document to its place, removes the temporary file and ends the job.
    void finish();

private:
    const FontSampleJobPtr m_job;
    QString m_fileName; // empty once the temporary file is gone: another job may have its name by then
    QPdfWriter m_writer;
    QPainter m_painter;
    QRect m_page;
    QFont m_labelFont;
};

// The job's fonts in the order they are printed in: those with a preferred PostScript name first, then by family and
// style. Fonts that are no longer catalogued come last.
QList<int> sortFontIdsByName(const QList<int>& ids, const QStringList& preferredPostScriptNames);

// Null unless the font is catalogued and its file is there.
StaticFontPtr printableFont(int fontId);
