#include "fontlens/recognition/RecognitionUrls.h"

namespace FontRecognizer {

namespace {

QString address(const QString& host, QLatin1String path)
{
    return host.isEmpty() ? QString() : QLatin1String("http://") + host + path;
}

} // namespace

RecognitionUrls::RecognitionUrls(const QString& host)
    : moduleScript(address(host, QLatin1String("/query/norvik/krvmodules.cgi")))
    , similarityScript(address(host, QLatin1String("/query/norvik/ocrsim.php")))
    , shopLinkScript(address(host, QLatin1String("/php/norvik/GetBuyFontLinks.php")))
{
}

} // namespace FontRecognizer
