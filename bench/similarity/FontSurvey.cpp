#include "bench/similarity/FontSurvey.h"

#include "helpers/shape/FaceRaster.h"
#include "helpers/shape/GlyphInk.h"

#include FT_TRUETYPE_TABLES_H

#include <QDir>
#include <QDirIterator>
#include <QProcess>

#include <algorithm>
#include <cmath>

namespace {

constexpr int BitmapSide = 16;

// Share of the pixel that lies between two borders.
float overlap(int pixel, float begin, float end)
{
    return std::max(0.0F, std::min(float(pixel + 1), end) - std::max(float(pixel), begin));
}

LetterBitmap bitmapOf(krv::FaceRaster& raster, char character)
{
    krv::GlyphCoverage coverage;
    krv::GlyphPlacement placement;
    const unsigned glyph = raster.isUsable() ? raster.glyphFor(static_cast<unsigned char>(character)) : 0;
    if (glyph == 0 || !raster.draw(glyph, coverage, placement))
        return {};
    const krv::GlyphInk ink(coverage);
    if (ink.isEmpty())
        return {};
    LetterBitmap bitmap(BitmapSide * BitmapSide, 0);
    const float width = ink.boxWidth() / BitmapSide;
    const float height = ink.boxHeight() / BitmapSide;
    for (int cell = 0; cell < BitmapSide * BitmapSide; ++cell) {
        const float left = ink.boxLeft() + width * float(cell % BitmapSide);
        const float top = ink.boxTop() + height * float(cell / BitmapSide);
        for (int y = int(top); y < std::min(int(std::ceil(top + height)), ink.grid().rows()); ++y) {
            const float rows = overlap(y, top, top + height);
            for (int x = int(left); x < std::min(int(std::ceil(left + width)), ink.grid().columns()); ++x)
                bitmap[std::size_t(cell)] +=
                    rows * overlap(x, left, left + width) * float(ink.grid().row(y)[x]) * krv::InkGrid::kUnit;
        }
        bitmap[std::size_t(cell)] /= width * height;
    }
    return bitmap;
}

} // namespace

QStringList fontFiles(const QString& folder)
{
    QStringList files;
    QDirIterator entries(
        folder, {QStringLiteral("*.otf"), QStringLiteral("*.ttf"), QStringLiteral("*.pfb"), QStringLiteral("*.t1")},
        QDir::Files, QDirIterator::Subdirectories | QDirIterator::FollowSymlinks);
    while (entries.hasNext())
        files << entries.next();
    files.sort();
    return files;
}

std::vector<SurveyedFace> surveyFonts(const QStringList& files)
{
    std::vector<SurveyedFace> faces;
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    for (const QString& file : files) {
        FT_Face face = nullptr;
        if (FT_New_Face(library, QFile::encodeName(file).constData(), 0, &face) != 0)
            continue;
        const char* name = FT_Get_Postscript_Name(face);
        const auto* os2 = static_cast<TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
        faces.push_back({file,
                         QString::fromUtf8(face->family_name),
                         QString::fromUtf8(face->style_name),
                         QString::fromUtf8(name),
                         os2 ? os2->usWeightClass : 0,
                         krv::FaceAnalysis::analyse(face),
                         {}});
        krv::FaceRaster raster(face);
        std::transform(QueryLetters.begin(), QueryLetters.end(), faces.back().bitmaps.begin(),
                       [&raster](char character) { return bitmapOf(raster, character); });
        FT_Done_Face(face);
    }
    FT_Done_FreeType(library);
    return faces;
}

QString benchFonts()
{
    const QString folder = QStringLiteral(KERVAL_SOURCE_DIR "/build/bench-fonts");
    QProcess fetch;
    fetch.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    fetch.start(QStringLiteral(KERVAL_SOURCE_DIR "/bench/similarity/fetch-fonts"), {folder});
    const bool fetched = fetch.waitForFinished(-1) && fetch.exitCode() == 0;
    return fetched ? folder : QString();
}
