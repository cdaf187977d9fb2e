#pragma once

#include "rest/JsonWriter.h"

class FontGroup;

namespace api::rest {

void writeGroup(JsonWriter& json, int id, const FontGroup& group, bool isUserDefined);

} // namespace api::rest
