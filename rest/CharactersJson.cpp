#include "rest/CharactersJson.h"

#include "fontfile/KrvFontFile.h"
#include "qtService/database/StaticFont.h"

#include <algorithm>

namespace api::rest {

bool writeCharacters(JsonWriter& json, const fms::StaticFont* font)
{
    bool hasCharacters = false;
    json.beginObject();
    if (font) {
        KrvFontFile file(font->fileName());
        if (file.open(font->faceIndex())) {
            QList<int> blocks = file.supportedBlocks().keys();
            std::sort(blocks.begin(), blocks.end());
            for (const int block : qAsConst(blocks)) {
                const QByteArray name = QByteArray::number(block);
                json.key(QLatin1String(name));
                json.beginArray();
                const QList<ushort> characters = file.charactersInBlock(block);
                for (const ushort character : characters)
                    json.value(int(character));
                json.endArray();
                hasCharacters = true;
            }
        }
    }
    json.endObject();
    return hasCharacters;
}

} // namespace api::rest
