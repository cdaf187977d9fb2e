#include "bench/rendering/BareRenderer.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <hb-ft.h>
#include <hb.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <vector>

namespace {

struct Board
{
    std::vector<unsigned char> pixels;
    int width = 0;
    int height = 0;
    int x = 0;
    int y = 0;
};

void drawSpans(int y, int count, const FT_Span* spans, void* user)
{
    auto& board = *static_cast<Board*>(user);
    const int row = board.y - y;
    if (row < 0 || row >= board.height)
        return;
    for (int i = 0; i < count; ++i) {
        const int from = board.x + spans[i].x;
        if (from >= 0 && from + spans[i].len <= board.width)
            std::memset(board.pixels.data() + row * board.width + from, spans[i].coverage, spans[i].len);
    }
}

} // namespace

BareRenderer::BareRenderer()
{
    FT_Init_FreeType(&m_library);
}

BareRenderer::~BareRenderer()
{
    FT_Done_FreeType(m_library);
}

long BareRenderer::render(const char* fileName, const std::string& utf8, int pixelSize)
{
    const int descriptor = open(fileName, O_RDONLY);
    struct stat info = {};
    fstat(descriptor, &info);
    const size_t size = size_t(info.st_size);
    void* data = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
    FT_Face face = nullptr;
    FT_New_Memory_Face(m_library, static_cast<FT_Byte*>(data), FT_Long(size), 0, &face);
    FT_Set_Pixel_Sizes(face, FT_UInt(pixelSize), 0);

    hb_font_t* font = hb_ft_font_create(face, nullptr);
    hb_ft_font_set_load_flags(font, FT_LOAD_DEFAULT);
    hb_buffer_t* buffer = hb_buffer_create();
    hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer, HB_SCRIPT_COMMON);
    hb_buffer_add_utf8(buffer, utf8.data(), int(utf8.size()), 0, int(utf8.size()));
    hb_shape(font, buffer, nullptr, 0);
    unsigned int count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);

    int width = 0;
    for (unsigned int i = 0; i < count; ++i)
        width += positions[i].x_advance >> 6;
    Board board;
    board.width = 2 * width;
    board.height = pixelSize * 3 / 2;
    board.pixels.resize(size_t(board.width) * size_t(board.height));
    board.y = pixelSize * 11 / 10;
    for (unsigned int i = 0; i < count; ++i) {
        if (FT_Load_Glyph(face, infos[i].codepoint, FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_LIGHT) == 0) {
            FT_Raster_Params parameters = {};
            parameters.flags = FT_RASTER_FLAG_AA | FT_RASTER_FLAG_DIRECT;
            parameters.gray_spans = drawSpans;
            parameters.user = &board;
            FT_Outline_Render(m_library, &face->glyph->outline, &parameters);
        }
        board.x += positions[i].x_advance >> 6;
    }
    hb_buffer_destroy(buffer);
    hb_font_destroy(font);
    FT_Done_Face(face);
    munmap(data, size);
    close(descriptor);
    long covered = 0;
    for (const unsigned char pixel : board.pixels)
        covered += pixel != 0;
    return covered;
}
