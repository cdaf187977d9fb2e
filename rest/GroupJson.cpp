#include "rest/GroupJson.h"

#include "qtService/management/FontGroup.h"

namespace api::rest {

void writeGroup(JsonWriter& json, int id, const FontGroup& group, bool isUserDefined)
{
    json.beginObject();
    json.member(QLatin1String("id"), id);
    json.member(QLatin1String("name"), group.name());
    json.member(QLatin1String("font_count"), group.fontCount());
    json.member(QLatin1String("user_defined"), isUserDefined);
    json.endObject();
}

} // namespace api::rest
