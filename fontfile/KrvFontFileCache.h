#pragma once

#include "fontfile/KrvFontFile.h"

#include <QByteArray>
#include <QHash>
#include <QMap>

#include <optional>

class KrvFontFilePrivate;

// What is expensive to find out about an open face, each thing found out when it is first asked for. Replaced by an
// empty one when the face is closed.
class KrvFontFileCache
{
public:
    explicit KrvFontFileCache(KrvFontFilePrivate* owner);

    // Bytes of their own: asking for the PostScript name makes the font reader drop one that is not valid.
    using NamesById = QMap<int, QByteArray>;
    using NamesByLanguage = QMap<int, NamesById>;
    using Names = QMap<int, NamesByLanguage>; // by platform id

    const Names& names();
    const QList<KrvFontFile::CharMap>& charMaps();
    const QList<ushort>& characters();
    const QHash<int, QPair<int, int>>& blocks();
    QVector<uint> supplementaryCharacters() const;
    void forgetCoverage(); // another character map was selected

private:
    Names readNames() const;
    QList<ushort> unicodeCharacters() const;
    QList<ushort> legacyCharacters() const;
    QHash<int, QPair<int, int>> countBlocks();

    KrvFontFilePrivate* m_owner;
    std::optional<Names> m_names;
    std::optional<QList<KrvFontFile::CharMap>> m_charMaps;
    std::optional<QList<ushort>> m_characters;
    std::optional<QHash<int, QPair<int, int>>> m_blocks;
};
