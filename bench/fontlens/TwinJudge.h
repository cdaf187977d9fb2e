#pragma once

#include "bench/similarity/DesignLabels.h"

#include <QHash>
#include <QPair>

// Whether an answer counts as the font that was asked for: the face itself, one whose letters are drawn the same, or
// one that is known to be a cut of the same design in the same style.
class TwinJudge
{
public:
    using Face = QPair<QString, int>; // file and index

    bool readLabels();
    // Largest difference of two letters of the alphabet, in shares of the ink, at 64 pixels per em is at most two in a
    // hundred: other formats and copies.
    bool isSameDrawing(const Face& one, const Face& other, const QString& alphabet);
    bool isTwin(const Face& one, const Face& other, const QString& alphabet);
    bool isSameFamily(const Face& one, const Face& other);

private:
    struct Names
    {
        QString family;
        NamedStyle style;
    };
    const Names& names(const Face& face);

    DesignLabels m_labels;
    QHash<Face, Names> m_names;
};
