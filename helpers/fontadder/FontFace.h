#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace kerval::adder {

namespace platform {
class FileContent;
}
struct Type1Companions;

// Big-endian numbers of a table; what lies outside it reads as 0 or as nothing.
class BigEndianReader
{
public:
    explicit BigEndianReader(std::string_view bytes)
        : m_bytes(bytes)
    {
    }

    int u16(std::size_t offset) const;
    std::uint32_t u32(std::size_t offset) const;
    std::string_view part(std::size_t offset, std::size_t length) const;
    BigEndianReader from(std::size_t offset) const;
    std::size_t size() const { return m_bytes.size(); }

private:
    std::string_view m_bytes;
};

enum class OutlineKind
{
    TrueType,
    OpenType,
    Type1,
};

// One open face of a font file, with the bytes it is read from. A metrics file of a Type 1 font stands for the outline
// file beside it. The active character map is Unicode where the face has one, else its first.
class FontFace
{
public:
    ~FontFace();
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    // Null with the reason when the file cannot be read or holds no such face of a scalable font.
    static std::unique_ptr<FontFace> open(const std::string& fileName, int faceIndex, std::string& error);

    FT_Face face() const { return m_face; }
    OutlineKind kind() const { return m_kind; }
    const Type1Companions& companions() const { return *m_companions; }

    // The SHA-1 of the named file, as lower-case hexadecimal digits.
    const std::string& fileHash() const { return m_fileHash; }

    // A whole table; empty when the face has none, or one larger than the limit.
    static std::string table(FT_Face face, FT_ULong tag, std::size_t limit);

private:
    FontFace();
    bool readFile(const std::string& fileName, std::string& error);
    bool openFace(int faceIndex, std::string& error);
    bool determineKind();
    void attachMetrics();

    std::unique_ptr<platform::FileContent> m_content;
    std::string m_fileHash;
    std::unique_ptr<Type1Companions> m_companions;
    FT_Library m_library = nullptr;
    FT_Face m_face = nullptr;
    OutlineKind m_kind = OutlineKind::TrueType;
};

} // namespace kerval::adder
