#include "tests/fontfile/fontsupport.h"

#include <QDir>
#include <QDirIterator>
#include <QHash>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace kerval::testing {

namespace {

bool isGoldenFreeType()
{
    FT_Library library = nullptr;
    FT_Int major = 0;
    FT_Int minor = 0;
    FT_Int patch = 0;
    FT_Init_FreeType(&library);
    FT_Library_Version(library, &major, &minor, &patch);
    FT_Done_FreeType(library);
    return major == 2 && minor == 12;
}

} // namespace

QString debianFont(const QString& fileName)
{
    static const QHash<QString, QString> paths = [] {
        QHash<QString, QString> found;
        QDirIterator it(QStringLiteral("/usr/share/fonts/truetype"), QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            found.insert(it.fileName(), it.filePath());
        }
        QDirIterator openType(QStringLiteral("/usr/share/fonts/opentype"), QDir::Files, QDirIterator::Subdirectories);
        while (openType.hasNext()) {
            openType.next();
            found.insert(openType.fileName(), openType.filePath());
        }
        return found;
    }();
    const QString path = paths.value(fileName);
    if (path.isEmpty())
        qFatal("%s is not installed; scripts/bootstrap installs it", qPrintable(fileName));
    return path;
}

QString goldenDifference(const QString& name, const QImage& image)
{
    const QImage golden =
        QImage(QStringLiteral(KERVAL_GOLDEN_DIR "/%1.png").arg(name)).convertToFormat(QImage::Format_ARGB32);
    const QImage actual = image.convertToFormat(QImage::Format_ARGB32);
    const QString kept = QDir::temp().filePath(QStringLiteral("kerval-golden-%1.png").arg(name));
    const auto differs = [&](const QString& how) {
        image.save(kept);
        return QStringLiteral("%1; the image is in %2").arg(how, kept);
    };
    if (golden.size() != actual.size())
        return differs(QStringLiteral("size %1 x %2 instead of %3 x %4")
                           .arg(actual.width())
                           .arg(actual.height())
                           .arg(golden.width())
                           .arg(golden.height()));
    qint64 sum = 0;
    int worst = 0;
    for (int y = 0; y < golden.height(); ++y) {
        for (int x = 0; x < golden.width(); ++x) {
            const int difference = qAbs(qAlpha(golden.pixel(x, y)) - qAlpha(actual.pixel(x, y)));
            sum += difference;
            worst = qMax(worst, difference);
            if (qAlpha(golden.pixel(x, y)) && qAlpha(actual.pixel(x, y)) &&
                (golden.pixel(x, y) | 0xFF000000) != (actual.pixel(x, y) | 0xFF000000))
                return differs(QStringLiteral("another colour at %1, %2").arg(x).arg(y));
        }
    }
    const double mean = double(sum) / (double(golden.width()) * golden.height());
    const bool same = isGoldenFreeType() ? worst == 0 : mean < 4;
    return same ? QString() : differs(QStringLiteral("coverage off by up to %1, %2 on average").arg(worst).arg(mean));
}

} // namespace kerval::testing
