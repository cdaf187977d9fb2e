#pragma once

#include "fontfile/sheets/PdfDocument.h"

class KrvFontFile;

// The sample sheet: one page for each font with its name, the sample at five sizes, a paragraph at three sizes in
// columns, and as many of its characters as the rest of the page holds. What does not fit fades out.
class FontSheetPdf
{
public:
    explicit FontSheetPdf(const FontSampleJobPtr& job);

    void run(); // to the end of the job

private:
    void drawFont(const fms::StaticFont& font, bool first);
    void drawHeader(const fms::StaticFont& font);
    void drawSizes(const fms::StaticFont& font);
    void drawParagraphs(KrvFontFile* file);
    void drawCharacters(KrvFontFile* file, const fms::StaticFont& font);
    void drawRule();
    void countStep();

    const FontSampleJobPtr m_job;
    PdfDocument m_document;
    QFont m_headerFont;
    int m_y = 0;
};
