#pragma once

#include "fontlens/letters/LetterIndex.h"

namespace kerval::letters {

// Files of descriptors, one for each character, in a folder that holds nothing else. A file names the faces by their
// keys, so it is of use whatever the candidates are now; what does not check out is as if it were not there. Files are
// replaced as a whole, and the oldest go when the folder grows beyond its bound.
class DescriptorCache
{
public:
    static constexpr qint64 mostBytes = 512LL * 1024 * 1024;

    explicit DescriptorCache(const QString& folder); // empty: nothing is read or kept

    // Fills rows that are unknown in the table.
    void read(QChar character, LetterTable& table) const;
    void write(QChar character, const LetterTable& table) const;

private:
    QString fileName(QChar character) const;
    void dropOldest() const;

    QString m_folder;
};

} // namespace kerval::letters
