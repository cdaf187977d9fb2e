#pragma once

#include <QByteArray>
#include <QMap>
#include <QVector>

// Builds small TrueType files for tests, sound ones and such as no font editor would write.
namespace kerval::testing {

struct SfntName
{
    int platform;
    int language;
    int nameId;
    QByteArray bytes; // as stored
};

class SfntBuilder
{
public:
    // A font of 1000 units per em; glyph 0 is empty.
    SfntBuilder();

    int addGlyph(const QByteArray& data, int advance = 600); // returns its index
    void mapCharacter(quint32 code, int glyph) { m_characters.insert(code, glyph); }
    void setSymbolMap() { m_encoding = 0; } // platform 3, encoding 0 instead of Unicode
    void addName(const SfntName& name) { m_names.append(name); }
    void setUnitsPerEm(int units) { m_unitsPerEm = units; }
    void setTable(const QByteArray& tag, const QByteArray& data) { m_extraTables.insert(tag, data); }
    void setMaxComponentDepth(int depth) { m_maxComponentDepth = depth; }

    QByteArray build() const;
    // Two faces with all their tables apart.
    static QByteArray buildCollection(const QVector<QByteArray>& faces);

    // A filled box, its corners in font units.
    static QByteArray boxGlyph(int left, int bottom, int right, int top);
    static QByteArray compositeGlyph(const QVector<int>& parts);
    static QByteArray utf16(const char* latin);

private:
    QByteArray characterMap() const;
    QByteArray nameTable() const;

    QVector<QByteArray> m_glyphs;
    QVector<int> m_advances;
    QMap<quint32, int> m_characters;
    QVector<SfntName> m_names;
    QMap<QByteArray, QByteArray> m_extraTables;
    int m_unitsPerEm = 1000;
    int m_encoding = 1;
    int m_maxComponentDepth = 8;
};

} // namespace kerval::testing
