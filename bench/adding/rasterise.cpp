#include <cstdlib>
#include <ft2build.h>
#include FT_FREETYPE_H

// Opens one face and draws 62 letters: the least that a program which looks at a font can do.
int main(int argc, char** argv)
{
    FT_Library library;
    FT_Face face;
    if (argc < 3 || FT_Init_FreeType(&library) || FT_New_Face(library, argv[1], std::atoi(argv[2]), &face))
        return 1;
    FT_Set_Pixel_Sizes(face, 0, 80);
    for (const char* c = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"; *c; ++c)
        FT_Load_Char(face, FT_ULong(*c), FT_LOAD_RENDER);
    FT_Done_FreeType(library);
    return 0;
}
