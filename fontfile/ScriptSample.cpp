#include "fontfile/ScriptSample.h"

#include "fontfile/KrvFontFile.h"

#include <QMap>
#include <QVector>

#include <algorithm>

namespace {

// Whole texts in the scripts that are written as the layout sets them: from left to right, each letter for itself. Of
// all others single letters are shown.
const char* const texts[] = {
    "Съешь же ещё этих мягких французских булок",
    "Ξεσκεπάζω την ψυχοφθόρα βδελυγμία",
    "いろはにほへと ちりぬるを",
    "我能吞下玻璃而不伤身体",
    "키스의 고유조건은 입술끼리 만나야 하고",
};

constexpr int signsShown = 16;

// The share of the text's letters that the font has, in hundredths.
int coverage(const KrvFontFile& font, const QString& text)
{
    int letters = 0;
    int drawn = 0;
    const QVector<uint> characters = text.toUcs4();
    for (const uint c : characters) {
        if (!QChar::isLetterOrNumber(c) && !QChar::isMark(c))
            continue;
        ++letters;
        drawn += font.glyphIndexOf(c) != 0 ? 1 : 0;
    }
    return letters == 0 ? 100 : 100 * drawn / letters;
}

bool isNoScript(QChar::Script script)
{
    return script == QChar::Script_Unknown || script == QChar::Script_Common || script == QChar::Script_Inherited;
}

// The first letters of the script that the font has most of, or the first signs of a font that is made of signs; apart
// from each other.
QString ownCharacters(const KrvFontFile& font)
{
    QVector<uint> all;
    const QList<ushort> characters = font.characters();
    for (const ushort c : characters) {
        if (font.glyphIndexOf(c) != 0)
            all.append(c);
    }
    all += font.supplementaryCharacters();

    QMap<int, QVector<uint>> letters; // by script
    QVector<uint> signs;
    for (const uint c : qAsConst(all)) {
        const QChar::Script script = QChar::script(c);
        if (QChar::isLetter(c) && !isNoScript(script))
            letters[script].append(c);
        else if (QChar::category(c) == QChar::Other_PrivateUse || QChar::isSymbol(c))
            signs.append(c);
    }
    const auto most = std::max_element(letters.cbegin(), letters.cend(),
                                       [](const auto& a, const auto& b) { return a.size() < b.size(); });
    const bool hasLetters = most != letters.cend() && most->size() >= signs.size() / 4;
    const QVector<uint> shown = (hasLetters ? *most : signs).mid(0, signsShown);
    QString sample;
    for (const uint c : shown) {
        if (!sample.isEmpty())
            sample += QLatin1Char(' ');
        sample += QString::fromUcs4(&c, 1);
    }
    return sample;
}

} // namespace

QString scriptSample(const KrvFontFile& font, const QString& text)
{
    // Maps of another kind number characters in their own way; their glyphs are found by other rules.
    if (font.currentCharMap().encoding != KrvFontFile::EncodingUnicode || coverage(font, text) >= 50)
        return text;
    for (const char* candidate : texts) {
        const QString sample = QString::fromUtf8(candidate);
        if (coverage(font, sample) == 100)
            return sample;
    }
    const QString own = ownCharacters(font);
    return own.isEmpty() ? text : own;
}
