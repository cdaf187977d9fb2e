// What KrvFontFile knows about files by their names alone.
#include "fontfile/KrvFontFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

struct FormatRow
{
    KrvFontFile::Format format;
    QLatin1String extension;
    KrvFontFile::FileType type;
};

const FormatRow formatRows[] = {
    {KrvFontFile::FormatTtf, QLatin1String("ttf"), KrvFontFile::FileTypeTrueType},
    {KrvFontFile::FormatTtc, QLatin1String("ttc"), KrvFontFile::FileTypeTrueTypeCollection},
    {KrvFontFile::FormatOtf, QLatin1String("otf"), KrvFontFile::FileTypeOpenType},
    {KrvFontFile::FormatPfm, QLatin1String("pfm"), KrvFontFile::FileTypeType1},
    {KrvFontFile::FormatPfb, QLatin1String("pfb"), KrvFontFile::FileTypeType1},
    {KrvFontFile::FormatAfm, QLatin1String("afm"), KrvFontFile::FileTypeUnknown},
    {KrvFontFile::FormatDfont, QLatin1String("dfont"), KrvFontFile::FileTypeDfont},
    {KrvFontFile::FormatMbn, QLatin1String("mbn"), KrvFontFile::FileTypeType1},
};

} // namespace

KrvFontFile::Format KrvFontFile::formatFromFileName(const QString& path)
{
    const QString extension = QFileInfo(path).suffix();
    for (const FormatRow& row : formatRows) {
        if (extension.compare(row.extension, Qt::CaseInsensitive) == 0)
            return row.format;
    }
    return FormatUnknown;
}

QString KrvFontFile::extensionForFormat(Format format)
{
    for (const FormatRow& row : formatRows) {
        if (row.format == format)
            return row.extension;
    }
    return QString();
}

KrvFontFile::FileType KrvFontFile::fileTypeFromFileName(const QString& path)
{
    const Format format = formatFromFileName(path);
    for (const FormatRow& row : formatRows) {
        if (row.format == format)
            return row.type;
    }
    return FileTypeUnknown;
}

QString KrvFontFile::companionFileName(const QString& path, Format format)
{
    const QFileInfo info(path);
    const QString extension = extensionForFormat(format);
    const auto named = [&info](const QString& name, const QString& suffix) {
        return QStringLiteral("%1/%2.%3").arg(info.absolutePath(), name, suffix);
    };
    // A name may hold more dots than the last, and pairs that come from systems without case in file names are often in
    // capitals throughout.
    for (const QString& name : {info.baseName(), info.completeBaseName()}) {
        for (const QString& suffix : {extension, extension.toUpper()}) {
            const QString companion = named(name, suffix);
            if (QFile::exists(companion))
                return companion;
        }
    }
    return named(info.baseName(), extension);
}

bool KrvFontFile::companionFileExists(const QString& path, Format format)
{
    return QFile::exists(companionFileName(path, format));
}
