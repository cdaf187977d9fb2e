#pragma once

#include "rest/JsonWriter.h"

namespace fms {
class StaticFont;
}

namespace api::rest {

// Writes the characters that a font covers, by Unicode block; an empty object when there is no font, or its file cannot
// be opened. Returns whether there are any. Reads the file; any thread.
bool writeCharacters(JsonWriter& json, const fms::StaticFont* font);

} // namespace api::rest
