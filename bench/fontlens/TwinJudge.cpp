#include "bench/fontlens/TwinJudge.h"

#include "fontlens/letters/CandidateFace.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cmath>

using kerval::letters::CandidateFace;
using kerval::letters::Coverage;
using kerval::letters::GlyphOutline;
using kerval::letters::Placement;

bool TwinJudge::readLabels()
{
    return m_labels.read(QStringLiteral(KERVAL_SOURCE_DIR "/bench/similarity/designs.txt"),
                         QStringLiteral(KERVAL_SOURCE_DIR "/bench/similarity/heldout.txt"));
}

const TwinJudge::Names& TwinJudge::names(const Face& face)
{
    const auto known = m_names.constFind(face);
    if (known != m_names.constEnd())
        return *known;
    KrvFontFile file(face.first);
    Names names;
    if (file.open(face.second)) {
        names.family = QString::fromUtf8(file.face()->family_name);
        names.style = NamedStyle::of(names.family, QString::fromUtf8(file.face()->style_name),
                                     QString::fromUtf8(FT_Get_Postscript_Name(file.face())));
    }
    return *m_names.insert(face, names);
}

bool TwinJudge::isSameDrawing(const Face& one, const Face& other, const QString& alphabet)
{
    if (one == other)
        return true;
    CandidateFace first(one.first, one.second);
    CandidateFace second(other.first, other.second);
    for (const QChar character : alphabet) {
        const GlyphOutline a = first.outline(character);
        const GlyphOutline b = second.outline(character);
        if (a.isEmpty() && b.isEmpty())
            continue;
        if (a.isEmpty() || b.isEmpty())
            return false;
        Placement placement = Placement::of(64);
        const GlyphOutline::Box box = a.box(placement);
        placement.dx = 4 - box.left;
        placement.dy = 4 - box.top;
        Coverage drawnA(int(box.right - box.left) + 9, int(box.bottom - box.top) + 9);
        Coverage drawnB = drawnA;
        a.draw(placement, drawnA);
        Placement shifted = placement;
        shifted.dx += box.left - b.box(Placement::of(64)).left; // other side bearings do not make another drawing
        b.draw(shifted, drawnB);
        double difference = 0;
        double ink = 0;
        for (std::size_t i = 0; i < drawnA.values.size(); ++i) {
            difference += double(std::abs(drawnA.values[i] - drawnB.values[i]));
            ink += double(drawnA.values[i]);
        }
        if (difference > 0.02 * ink)
            return false;
    }
    return true;
}

bool TwinJudge::isTwin(const Face& one, const Face& other, const QString& alphabet)
{
    const Names mine = names(one);
    const Names its = names(other);
    if (mine.style == its.style && m_labels.family(mine.family).cuts.intersects(m_labels.family(its.family).cuts))
        return true;
    return isSameDrawing(one, other, alphabet);
}

bool TwinJudge::isSameFamily(const Face& one, const Face& other)
{
    const QString mine = names(one).family;
    return !mine.isEmpty() && mine == names(other).family;
}
