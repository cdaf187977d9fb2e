#include "bench/similarity/DesignLabels.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

bool DesignLabels::read(const QString& designs, const QString& heldOut)
{
    QFile file(designs);
    QFile held(heldOut);
    if (!file.open(QIODevice::ReadOnly) || !held.open(QIODevice::ReadOnly))
        return false;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const int colon = line.indexOf(QLatin1Char(':'));
        if (line.startsWith(QLatin1Char('#')) || colon < 0)
            continue;
        const QStringList head = line.left(colon).split(QLatin1Char(' '));
        const QStringList families = line.mid(colon + 1).split(QLatin1Char(';'));
        for (const QString& family : families)
            m_rules.append({head.value(0), head.value(1), family.trimmed()});
    }
    const QStringList heldNames = QString::fromUtf8(held.readAll()).split(QLatin1Char('\n'));
    for (const QString& name : heldNames)
        m_heldOut.insert(name);
    return true;
}

const DesignLabels::Family& DesignLabels::family(const QString& name)
{
    const auto known = m_families.constFind(name);
    if (known != m_families.constEnd())
        return *known;
    Family family;
    for (const Rule& rule : qAsConst(m_rules)) {
        const int star = rule.pattern.indexOf(QLatin1Char('*'));
        const bool fits = star < 0
                              ? name == rule.pattern
                              : name.startsWith(rule.pattern.left(star)) && name.endsWith(rule.pattern.mid(star + 1)) &&
                                    name.size() >= rule.pattern.size() - 1;
        if (!fits)
            continue;
        if (rule.kind == QLatin1String("class"))
            family.kind = family.kind.isEmpty() ? rule.name : family.kind;
        else if (rule.kind == QLatin1String("cut"))
            family.cuts.insert(rule.name);
        else if (rule.kind == QLatin1String("redrawn"))
            family.redrawn.insert(rule.name);
        else if (rule.kind == QLatin1String("kin"))
            family.kin.insert(rule.name);
        else if (rule.kind == QLatin1String("genre"))
            family.genre.insert(rule.name);
        else
            family.alike.insert(rule.name);
    }
    // Groups of one name include each other; one that no other family has does no harm.
    family.redrawn.unite(family.cuts);
    family.alike.unite(family.redrawn);
    family.genre.unite(family.alike);
    family.heldOut = m_heldOut.contains(name);
    return *m_families.insert(name, family);
}

namespace {

// The weight that a name states, 0 when it states none.
int weightIn(const QString& name)
{
    static const std::pair<const char*, int> words[] = {
        {"hairline", 100}, {"thin", 100},      {"extralight", 200}, {"ultralight", 200}, {"extlt", 200},
        {"extralt", 200},  {"light", 300},     {"semibold", 600},   {"demibold", 600},   {"demi", 600},
        {"semibd", 600},   {"extrabold", 800}, {"ultrabold", 800},  {"black", 900},      {"heavy", 900},
        {"bold", 700},     {"medium", 500}};
    for (const auto& [word, weight] : words) {
        if (name.contains(QLatin1String(word)))
            return weight;
    }
    return 0;
}

} // namespace

NamedStyle NamedStyle::of(const QString& family, const QString& style, const QString& postScriptName)
{
    static const QRegularExpression slanted(QStringLiteral("ital|obli|slant|retal|kursiv|incl|-ita$|moo$"));
    static const QRegularExpression condensed(QStringLiteral("cond|narrow|cn\\b|compress"));
    static const QRegularExpression other(QStringLiteral("smallcap|caps|sc-|slant|exten|expand|unsl|dunh"));
    static const QRegularExpression shortBold(QStringLiteral("medi(?!um)|-bol$|eufb"));
    static const QRegularExpression shortLight(QStringLiteral("Lt(?![a-z])"));
    static const QRegularExpression familyWeight(
        QStringLiteral("(thin|extra ?light|light|medium|demi|semi ?bold|bold|heavy|black)\\d*$"));
    QString name = (postScriptName + style).toLower();
    const QString compactFamily = family.toLower().remove(QLatin1Char(' '));
    const bool bookman = compactFamily.contains(QLatin1String("bookman"));
    const bool gothic = bookman || compactFamily.contains(QLatin1String("gothic")) ||
                        compactFamily.contains(QLatin1String("avantgarde"));
    NamedStyle result;
    result.italic = slanted.match(name).hasMatch() || slanted.match(postScriptName.toLower()).hasMatch() ||
                    style.endsWith(QLatin1String("It"));
    // Families that have slanted romans beside their italics, and one that is a second width.
    static const QRegularExpression beside(QStringLiteral(
        "^(CMUTypewriter|NewCMMono|LMMono|LMRoman|CMUSerif|Norasi|Kinnari).*Obli|^UMTypewriter.*(Obli|Ital)|^zcoN"));
    result.condensed = condensed.match(name).hasMatch();
    result.other = other.match(name).hasMatch() || beside.match(postScriptName).hasMatch();
    name.remove(QLatin1Char('-')).remove(QLatin1Char(' '));
    if (name.startsWith(compactFamily))
        name.remove(0, compactFamily.size());
    int weight = weightIn(name);
    // Font editors call a family's only style "Medium".
    if (weight == 500 && !postScriptName.contains(QLatin1String("medium"), Qt::CaseInsensitive))
        weight = 0;
    if (weight == 0 && shortBold.match(postScriptName.toLower()).hasMatch())
        weight = 700;
    if (weight == 0 && shortLight.match(postScriptName).hasMatch())
        weight = 300;
    if (weight == 0)
        weight = weightIn(familyWeight.match(family.toLower()).captured(1).remove(QLatin1Char(' ')));
    result.weight = weight > 0 ? weight : 400;
    // Designs whose text weight is called light or medium and whose bold is called demi.
    static const QRegularExpression chancery(QStringLiteral("^z003$|chancery|chorus"));
    if ((bookman && result.weight == 300) || chancery.match(compactFamily).hasMatch())
        result.weight = 400;
    if (gothic && result.weight == 600)
        result.weight = 700;
    return result;
}
