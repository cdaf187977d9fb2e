#include "helpers/fontadder/FontFace.h"

#include "helpers/fontadder/Type1Companions.h"
#include "helpers/fontadder/platform.h"

#include <array>
#include <utility>

#include <openssl/sha.h>

#include FT_FONT_FORMATS_H
#include FT_TRUETYPE_TABLES_H

namespace kerval::adder {

namespace {

// Larger than the largest font there is; a bound all the same, for files that only claim to be one.
constexpr std::size_t maximalFileSize = 1u << 30;

std::string sha1(std::string_view bytes)
{
    std::array<std::uint8_t, SHA_DIGEST_LENGTH> digest{};
    SHA_CTX context; // SHA1() in one call would set up every algorithm there is
    SHA1_Init(&context);
    SHA1_Update(&context, bytes.data(), bytes.size());
    SHA1_Final(digest.data(), &context);

    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::string reasonOf(FT_Error code)
{
    switch (FT_ERROR_BASE(code)) {
    case FT_Err_Unknown_File_Format:
        return "not a font file";
    case FT_Err_Invalid_Argument:
        return "the file has no such face";
    case FT_Err_Table_Missing:
        return "a table that every font must have is missing";
    case FT_Err_Out_Of_Memory:
        return "the face asks for too much memory";
    case FT_Err_Invalid_Stream_Operation:
        return "not a font file, or one cut short";
    default:
        return "the font file is broken (error " + std::to_string(code) + ")";
    }
}

// The font library leaves out tables that lie beyond the end of the file, and the face would come up without its names
// or half of its glyphs. Signatures are not looked at: tools drop them and forget the entry.
bool isCutShort(std::string_view content, int faceIndex)
{
    constexpr std::uint32_t collection = FT_MAKE_TAG('t', 't', 'c', 'f');
    constexpr std::uint32_t signature = FT_MAKE_TAG('D', 'S', 'I', 'G');
    constexpr std::size_t headerSize = 12;
    constexpr std::size_t entrySize = 16;
    const BigEndianReader file(content);
    std::size_t start = 0;
    if (file.u32(0) == collection)
        start = file.u32(headerSize + 4 * static_cast<std::size_t>(faceIndex));
    const std::uint32_t version = file.u32(start);
    if (version != 0x00010000 && version != FT_MAKE_TAG('O', 'T', 'T', 'O') &&
        version != FT_MAKE_TAG('t', 'r', 'u', 'e'))
        return false;
    const BigEndianReader directory = file.from(start);
    for (int i = 0; i < directory.u16(4); ++i) {
        const std::size_t entry = headerSize + static_cast<std::size_t>(i) * entrySize;
        const std::uint64_t end = std::uint64_t{directory.u32(entry + 8)} + directory.u32(entry + 12);
        if (directory.u32(entry) != signature && end > content.size())
            return true;
    }
    return false;
}

const FT_Byte* bytesOf(std::string_view content)
{
    return reinterpret_cast<const FT_Byte*>(content.data());
}

} // namespace

int BigEndianReader::u16(std::size_t offset) const
{
    if (offset > m_bytes.size() || m_bytes.size() - offset < 2)
        return 0;
    return static_cast<unsigned char>(m_bytes[offset]) << 8 | static_cast<unsigned char>(m_bytes[offset + 1]);
}

std::uint32_t BigEndianReader::u32(std::size_t offset) const
{
    return static_cast<std::uint32_t>(u16(offset)) << 16 | static_cast<std::uint32_t>(u16(offset + 2));
}

std::string_view BigEndianReader::part(std::size_t offset, std::size_t length) const
{
    if (offset > m_bytes.size() || m_bytes.size() - offset < length)
        return {};
    return m_bytes.substr(offset, length);
}

BigEndianReader BigEndianReader::from(std::size_t offset) const
{
    return BigEndianReader(offset > m_bytes.size() ? std::string_view() : m_bytes.substr(offset));
}

FontFace::FontFace()
    : m_content(std::make_unique<platform::FileContent>())
    , m_companions(std::make_unique<Type1Companions>())
{
}

FontFace::~FontFace()
{
    if (m_face)
        FT_Done_Face(m_face);
    if (m_library)
        FT_Done_FreeType(m_library);
}

std::unique_ptr<FontFace> FontFace::open(const std::string& fileName, int faceIndex, std::string& error)
{
    std::unique_ptr<FontFace> font(new FontFace);
    if (!font->readFile(fileName, error) || !font->openFace(faceIndex, error))
        return nullptr;
    if (font->m_kind == OutlineKind::Type1)
        font->attachMetrics();
    return font;
}

bool FontFace::readFile(const std::string& fileName, std::string& error)
{
    if (!m_content->read(fileName, maximalFileSize, error))
        return false;
    if (m_content->isEmpty()) {
        error = "the file is empty";
        return false;
    }
    m_fileHash = sha1(m_content->bytes());
    *m_companions = Type1Companions::find(fileName, m_content->bytes());
    if (m_companions->isMetricsFile) {
        if (m_companions->outlines.isEmpty()) {
            error = "the outline file beside the metrics file is missing";
            return false;
        }
        std::swap(*m_content, m_companions->outlines);
    }
    platform::limitResources(m_content->bytes().size());
    return true;
}

bool FontFace::openFace(int faceIndex, std::string& error)
{
    if (FT_Init_FreeType(&m_library) != 0) {
        error = "the font library does not start";
        return false;
    }
    const auto size = static_cast<FT_Long>(m_content->bytes().size());
    if (const FT_Error code = FT_New_Memory_Face(m_library, bytesOf(m_content->bytes()), size, faceIndex, &m_face)) {
        error = reasonOf(code);
        return false;
    }
    if (!determineKind()) {
        error = "not a scalable font";
        return false;
    }
    if (isCutShort(m_content->bytes(), faceIndex)) {
        error = "the file is cut short";
        return false;
    }
    if (!m_face->charmap && m_face->num_charmaps > 0)
        FT_Set_Charmap(m_face, m_face->charmaps[0]);
    if (!m_face->charmap && m_kind != OutlineKind::Type1) {
        error = "the face maps no characters";
        return false;
    }
    return true;
}

bool FontFace::determineKind()
{
    const char* name = FT_Get_Font_Format(m_face);
    const std::string_view format = name ? name : "";
    if (format == "TrueType")
        m_kind = OutlineKind::TrueType;
    else if (format == "CFF")
        m_kind = OutlineKind::OpenType;
    else if (format == "Type 1" || format == "CID Type 1" || format == "Type 42")
        m_kind = OutlineKind::Type1;
    else
        return false;
    return true;
}

void FontFace::attachMetrics()
{
    // Kerning pairs live in the metrics file; a broken one costs no more than them.
    for (const std::string* metrics : {&m_companions->afm, &m_companions->pfm}) {
        if (metrics->empty())
            continue;
        FT_Open_Args arguments{};
        arguments.flags = FT_OPEN_MEMORY;
        arguments.memory_base = bytesOf(*metrics);
        arguments.memory_size = static_cast<FT_Long>(metrics->size());
        if (FT_Attach_Stream(m_face, &arguments) == 0)
            return;
    }
}

std::string FontFace::table(FT_Face face, FT_ULong tag, std::size_t limit)
{
    FT_ULong length = 0;
    if (!FT_IS_SFNT(face) || FT_Load_Sfnt_Table(face, tag, 0, nullptr, &length) != 0 || length == 0 || length > limit)
        return {};
    std::string bytes(length, '\0');
    if (FT_Load_Sfnt_Table(face, tag, 0, reinterpret_cast<FT_Byte*>(bytes.data()), &length) != 0)
        return {};
    return bytes;
}

} // namespace kerval::adder
