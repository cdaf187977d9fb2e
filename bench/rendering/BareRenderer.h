#pragma once

#include <string>

struct FT_LibraryRec_;

// The least work that puts a shaped line of text into an 8-bit buffer: FreeType and HarfBuzz called in one loop, with
// no checks and no classes. What the painter is measured against.
class BareRenderer
{
public:
    BareRenderer();
    ~BareRenderer();
    BareRenderer(const BareRenderer&) = delete;
    BareRenderer& operator=(const BareRenderer&) = delete;

    // Opens the file anew. Returns the covered pixels, so that nothing is optimised away.
    long render(const char* fileName, const std::string& utf8, int pixelSize);

private:
    FT_LibraryRec_* m_library = nullptr;
};
