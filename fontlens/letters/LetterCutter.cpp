#include "fontlens/letters/LetterCutter.h"

namespace kerval::letters {

LetterCut LetterCutter::cut(const QImage& picture, const QList<QPoint>&, int, int, const QList<QPolygon>&)
{
    LetterCut result;
    result.error = picture.isNull() ? LetterCut::NoPicture : LetterCut::NoInk;
    result.text = tr("There is no letter here.");
    return result;
}

} // namespace kerval::letters
