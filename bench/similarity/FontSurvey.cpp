#include "bench/similarity/FontSurvey.h"

#include FT_TRUETYPE_TABLES_H

#include <QDir>
#include <QDirIterator>
#include <QProcess>

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
        faces.push_back({file, QString::fromUtf8(face->family_name), QString::fromUtf8(face->style_name),
                         QString::fromUtf8(name), os2 ? os2->usWeightClass : 0, krv::FaceAnalysis::analyse(face)});
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
