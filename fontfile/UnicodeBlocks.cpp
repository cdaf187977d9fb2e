// The table of character ranges. Names and limits are shown and stored as they stand here; the limits do not all follow
// the Unicode standard's blocks, and what lies in the gaps belongs to none.
#include "fontfile/KrvFontFile.h"

namespace {

QList<UnicodeBlock> makeBlocks()
{
    return {
        {QStringLiteral("Basic Latin"), 0x0000, 0x007F},
        {QStringLiteral("Latin-1 supplement"), 0x0080, 0x00FF},
        {QStringLiteral("Latin Extended-A"), 0x0100, 0x017F},
        {QStringLiteral("Latin Extended-B"), 0x0180, 0x024F},
        {QStringLiteral("IPA Extensions"), 0x0250, 0x02AF},
        {QStringLiteral("Spacing Modifier Letters"), 0x02B0, 0x02FF},
        {QStringLiteral("Greek"), 0x0370, 0x03FF},
        {QStringLiteral("Cyrillic"), 0x0400, 0x052F},
        {QStringLiteral("Armenian"), 0x0530, 0x058F},
        {QStringLiteral("Hebrew"), 0x0590, 0x05FF},
        {QStringLiteral("Arabic"), 0x0600, 0x06FF},
        {QStringLiteral("Other Languages"), 0x0700, 0x1C7F},
        {QStringLiteral("Phonetic Extensions"), 0x1D00, 0x1D7F},
        {QStringLiteral("Phonetic Extensions Supplement"), 0x1D80, 0x1DBF},
        {QStringLiteral("Combining Diacritical Marks"), 0x1DC0, 0x1DFF},
        {QStringLiteral("Lattin Extended Additional"), 0x1E00, 0x1EFF},
        {QStringLiteral("Greek Extended"), 0x1F00, 0x1FFF},
        {QStringLiteral("General Punctuation"), 0x2000, 0x206F},
        {QStringLiteral("Superscripts and Subscripts"), 0x2070, 0x209F},
        {QStringLiteral("Currency Symbols"), 0x20A0, 0x20CF},
        {QStringLiteral("Letterlike Symbols"), 0x2100, 0x214F},
        {QStringLiteral("Number forms"), 0x2150, 0x218F},
        {QStringLiteral("Arrows"), 0x2190, 0x21FF},
        {QStringLiteral("Mathematical Operators"), 0x2200, 0x22FF},
        {QStringLiteral("Miscellaneous Technical"), 0x2300, 0x23FF},
        {QStringLiteral("Box Drawing"), 0x2500, 0x257F},
        {QStringLiteral("Block Elements"), 0x2580, 0x259F},
        {QStringLiteral("Geometric Shapes"), 0x25A0, 0x25FF},
        {QStringLiteral("Miscellaneous Symbols"), 0x2600, 0x26FF},
        {QStringLiteral("Private Use Area"), 0xE000, 0xF8FF},
        {QStringLiteral("Alphabetic Presentation Forms"), 0xFB00, 0xFB4F},
        {QStringLiteral("Specials"), 0xFF00, 0xFFFF},
        {QStringLiteral("Other Symbols"), 0x2700, 0x2BFF},
        {QStringLiteral("Other Languages2"), 0x2C00, 0xDFFF},
    };
}

} // namespace

QList<UnicodeBlock> KrvFontFile::unicodeBlocks()
{
    static const QList<UnicodeBlock> blocks = makeBlocks();
    return blocks;
}

int KrvFontFile::unicodeBlockCount()
{
    return unicodeBlocks().size();
}

UnicodeBlock KrvFontFile::unicodeBlock(int index)
{
    return unicodeBlocks().value(index);
}
