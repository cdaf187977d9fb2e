#include "tests/fontfile/sfntbuilder.h"

#include <QtEndian>

namespace kerval::testing {

namespace {

class Bytes : public QByteArray
{
public:
    Bytes& u8(int value)
    {
        append(char(value));
        return *this;
    }
    Bytes& u16(int value) { return u8(value >> 8).u8(value); }
    Bytes& u32(quint32 value) { return u16(int(value >> 16)).u16(int(value & 0xFFFF)); }
};

QByteArray assemble(const QMap<QByteArray, QByteArray>& tables, quint32 base)
{
    Bytes file;
    file.u32(0x00010000).u16(tables.size()).u16(16).u16(0).u16(0);
    quint32 offset = base + 12 + 16 * quint32(tables.size());
    for (auto it = tables.cbegin(); it != tables.cend(); ++it) {
        file.append(it.key());
        file.u32(0).u32(offset).u32(quint32(it->size()));
        offset += (quint32(it->size()) + 3) & ~3u;
    }
    for (const QByteArray& table : tables) {
        file.append(table);
        while (file.size() % 4)
            file.append('\0');
    }
    return std::move(file);
}

} // namespace

SfntBuilder::SfntBuilder()
{
    addGlyph(QByteArray());
}

int SfntBuilder::addGlyph(const QByteArray& data, int advance)
{
    m_glyphs.append(data);
    m_advances.append(advance);
    return m_glyphs.size() - 1;
}

QByteArray SfntBuilder::boxGlyph(int left, int bottom, int right, int top)
{
    Bytes glyph;
    glyph.u16(1).u16(left).u16(bottom).u16(right).u16(top).u16(3).u16(0);
    glyph.u8(1).u8(1).u8(1).u8(1);
    glyph.u16(left).u16(0).u16(right - left).u16(0);
    glyph.u16(bottom).u16(top - bottom).u16(0).u16(bottom - top);
    return std::move(glyph);
}

QByteArray SfntBuilder::compositeGlyph(const QVector<int>& parts)
{
    Bytes glyph;
    glyph.u16(-1).u16(0).u16(0).u16(100).u16(100);
    for (int i = 0; i < parts.size(); ++i)
        glyph.u16(0x2 | (i + 1 < parts.size() ? 0x20 : 0)).u16(parts.at(i)).u8(0).u8(0);
    if (glyph.size() % 2)
        glyph.u8(0);
    return std::move(glyph);
}

QByteArray SfntBuilder::utf16(const char* latin)
{
    Bytes bytes;
    for (; *latin; ++latin)
        bytes.u16(uchar(*latin));
    return std::move(bytes);
}

QByteArray SfntBuilder::characterMap() const
{
    // Format 12: one group for each character.
    Bytes groups;
    for (auto it = m_characters.cbegin(); it != m_characters.cend(); ++it)
        groups.u32(it.key()).u32(it.key()).u32(quint32(*it));
    Bytes table;
    table.u16(0).u16(1).u16(3).u16(m_encoding == 1 ? 10 : 0).u32(12);
    table.u16(12).u16(0).u32(16 + quint32(groups.size())).u32(0).u32(quint32(m_characters.size()));
    table.append(groups);
    return std::move(table);
}

QByteArray SfntBuilder::nameTable() const
{
    Bytes records;
    QByteArray storage;
    for (const SfntName& name : m_names) {
        records.u16(name.platform).u16(name.platform == 3 ? 1 : 0).u16(name.language).u16(name.nameId);
        records.u16(name.bytes.size()).u16(storage.size());
        storage += name.bytes;
    }
    Bytes table;
    table.u16(0).u16(m_names.size()).u16(6 + records.size());
    table.append(records);
    table.append(storage);
    return std::move(table);
}

QByteArray SfntBuilder::build() const
{
    const int count = m_glyphs.size();
    Bytes head;
    head.u32(0x00010000).u32(0).u32(0).u32(0x5F0F3CF5).u16(0).u16(m_unitsPerEm).u32(0).u32(0).u32(0).u32(0);
    head.u16(0).u16(-200).u16(1000).u16(800).u16(0).u16(8).u16(2).u16(1).u16(0);
    Bytes hhea;
    hhea.u32(0x00010000).u16(800).u16(-200).u16(100).u16(1000).u16(0).u16(0).u16(1000);
    hhea.u16(1).u16(0).u16(0).u32(0).u32(0).u16(0).u16(count);
    Bytes maxp;
    maxp.u32(0x00010000).u16(count).u16(64).u16(16).u16(64).u16(16).u16(2).u16(0).u16(0).u16(0).u16(0).u16(0).u16(0);
    maxp.u16(64).u16(m_maxComponentDepth);
    Bytes hmtx;
    Bytes loca;
    QByteArray glyf;
    for (int i = 0; i < count; ++i) {
        hmtx.u16(m_advances.at(i))
            .u16(m_glyphs.at(i).size() > 4 ? qFromBigEndian<qint16>(m_glyphs.at(i).constData() + 2) : 0);
        loca.u32(quint32(glyf.size()));
        glyf += m_glyphs.at(i);
    }
    loca.u32(quint32(glyf.size()));
    Bytes post;
    post.u32(0x00030000).u32(0).u16(-100).u16(50).u32(0).u32(0).u32(0).u32(0).u32(0);

    QMap<QByteArray, QByteArray> tables{{"head", head}, {"hhea", hhea},           {"maxp", maxp},
                                        {"hmtx", hmtx}, {"loca", loca},           {"glyf", glyf},
                                        {"post", post}, {"cmap", characterMap()}, {"name", nameTable()}};
    for (auto it = m_extraTables.cbegin(); it != m_extraTables.cend(); ++it)
        tables.insert(it.key(), *it);
    return assemble(tables, 0);
}

QByteArray SfntBuilder::buildCollection(const QVector<QByteArray>& faces)
{
    // Each face is a whole file; its table offsets are moved to where the file lands.
    Bytes header;
    header.append("ttcf");
    header.u32(0x00010000).u32(quint32(faces.size()));
    quint32 offset = quint32(header.size() + 4 * faces.size());
    QByteArray body;
    for (QByteArray face : faces) {
        header.u32(offset + quint32(body.size()));
        const int tableCount = qFromBigEndian<quint16>(face.constData() + 4);
        for (int i = 0; i < tableCount; ++i) {
            char* at = face.data() + 12 + 16 * i + 8;
            qToBigEndian(qFromBigEndian<quint32>(at) + offset + quint32(body.size()), at);
        }
        body += face;
    }
    header.append(body);
    return std::move(header);
}

} // namespace kerval::testing
