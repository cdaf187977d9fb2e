// What FontManagerStrategyFontconfig tells its callers.
#include "fontfile/KrvFontFile.h"
#include "qtService/management/systemfm/FontFiles.h"
#include "qtService/management/systemfm/FontManagerStrategyFontconfig.h"

namespace kerval::systemfm {

// Empty for a font that fontconfig does not find by itself.
QStringList FontManagerStrategyFontconfig::View::pathsOf(const QString& fileName) const
{
    QStringList paths = otherPaths.values(fileName);
    const QString outline = fontfiles::outline(fileName);
    if (files.contains(outline) && !paths.contains(outline))
        paths.append(outline);
    return paths;
}

// True when programs get the font without a file of ours.
bool FontManagerStrategyFontconfig::View::isFound(const QString& fileName) const
{
    const QStringList paths = pathsOf(fileName);
    return std::any_of(paths.cbegin(), paths.cend(),
                       [this](const QString& path) { return files.value(path).accepted; });
}

void FontManagerStrategyFontconfig::View::addFile(const QString& path, const QString& name, bool accepted)
{
    const auto type = KrvFontFile::fileTypeFromFileName(name);
    files.insert(path,
                 Found{name, accepted, type >= KrvFontFile::FileTypeTrueType && type <= KrvFontFile::FileTypeType1});
    if (name != path && !otherPaths.contains(name, path))
        otherPaths.insert(name, path);
}

QList<SystemFontDescriptor> FontManagerStrategyFontconfig::View::active() const
{
    QList<SystemFontDescriptor> fonts;
    fonts.reserve(files.size() + placed.size() + session.size());
    QSet<QString> reachedOtherwise;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (!file->accepted || !file->supported)
            continue;
        if (file->name != file.key()) {
            if (reachedOtherwise.contains(file->name) || files.value(file->name).accepted)
                continue;
            reachedOtherwise.insert(file->name);
        }
        fonts.append(SystemFontDescriptor(file->name, PermanentlyActive));
    }
    for (auto font = placed.cbegin(); font != placed.cend(); ++font) {
        if (*font)
            fonts.append(SystemFontDescriptor(font.key(), PermanentlyActive));
    }
    for (auto font = session.cbegin(); font != session.cend(); ++font) {
        if (*font)
            fonts.append(SystemFontDescriptor(font.key(), TemporarilyActive));
    }
    return fonts;
}

} // namespace kerval::systemfm
