#include "qtService/management/systemfm/FontFiles.h"

#include "fontfile/KrvFontFile.h"

#include <QCryptographicHash>
#include <QFileInfo>

namespace kerval::systemfm::fontfiles {

namespace {

bool hasSuffix(const QString& path, const char* suffix)
{
    return QFileInfo(path).suffix().compare(QLatin1String(suffix), Qt::CaseInsensitive) == 0;
}

// File systems here tell cases apart, and Type 1 fonts of old discs are named in capitals.
QString companion(const QString& path, const QString& suffix, KrvFontFile::Format format)
{
    const QFileInfo info(path);
    const QString base = info.path() + QLatin1Char('/') + info.completeBaseName() + QLatin1Char('.');
    const QStringList candidates = {base + suffix, base + suffix.toUpper(),
                                    KrvFontFile::companionFileName(path, format)};
    for (const QString& candidate : candidates) {
        if (candidate != path && QFileInfo(candidate).isFile())
            return candidate;
    }
    return {};
}

} // namespace

QString outline(const QString& fileName)
{
    if (hasSuffix(fileName, "pfm")) {
        const QString pfb = companion(fileName, QStringLiteral("pfb"), KrvFontFile::FormatPfb);
        if (!pfb.isEmpty())
            return pfb;
    }
    return QFileInfo(fileName).isFile() ? fileName : QString();
}

QString catalogued(const QString& outline)
{
    if (!hasSuffix(outline, "pfb"))
        return outline;
    const QString pfm = companion(outline, QStringLiteral("pfm"), KrvFontFile::FormatPfm);
    return pfm.isEmpty() ? outline : pfm;
}

QStringList all(const QString& fileName)
{
    const QString first = outline(fileName);
    if (first.isEmpty())
        return {};
    QStringList files{first};
    if (hasSuffix(first, "pfb")) {
        const QString pfm = companion(first, QStringLiteral("pfm"), KrvFontFile::FormatPfm);
        const QString afm = companion(first, QStringLiteral("afm"), KrvFontFile::FormatAfm);
        for (const QString& metrics : {pfm, afm}) {
            if (!metrics.isEmpty())
                files.append(metrics);
        }
    }
    return files;
}

QString ownName(const QString& fileName)
{
    const QByteArray hash = QCryptographicHash::hash(fileName.toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex().left(20));
}

QString ownName(const QString& fileName, const QString& part)
{
    return ownName(fileName) + QLatin1Char('.') + QFileInfo(part).suffix().toLower();
}

} // namespace kerval::systemfm::fontfiles
