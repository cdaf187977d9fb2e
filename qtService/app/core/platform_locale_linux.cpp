#include "qtService/app/core/platform_locale.h"

#include <QTextCodec>

#include <clocale>
#include <cstring>
#include <langinfo.h>

namespace krv::platform {

void useUtf8WithoutLocale()
{
    std::setlocale(LC_ALL, "");
    const char* characterSet = nl_langinfo(CODESET);
    if (std::strcmp(characterSet, "ANSI_X3.4-1968") == 0 || std::strcmp(characterSet, "US-ASCII") == 0)
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

} // namespace krv::platform
