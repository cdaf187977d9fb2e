#pragma once

#include "fontfile/sheets/PdfDocument.h"

// The font listing: every font's name in gray, below it one line of text in the font, as many to a page as fit.
class FontListPdf
{
public:
    explicit FontListPdf(const FontSampleJobPtr& job);

    void run(); // to the end of the job

private:
    void drawFont(const fms::StaticFont& font);

    const FontSampleJobPtr m_job;
    PdfDocument m_document;
    int m_y = 0;
};
