#include "qtService/app/core/WebPaths.h"

namespace krv::web {

namespace {

// A name reserved for examples: whoever publishes a build sets their own site here.
const QString site = QStringLiteral("https://kerval.example");

const QString login = site + QStringLiteral("/account/login/");
const QString supportTicket = site + QStringLiteral("/account/support/ticket/new/");
const QString purchaseCountry = site + QStringLiteral("/purchase/country/");
const QString purchaseDownload = site + QStringLiteral("/purchase/download/");
const QString purchaseOrder = site + QStringLiteral("/purchase/order/");

} // namespace

QString loginPath()
{
    return login;
}

QString supportTicketPath()
{
    return supportTicket;
}

QString purchaseCountryPath()
{
    return purchaseCountry;
}

QString purchaseDownloadPath()
{
    return purchaseDownload;
}

QString purchaseOrderPath()
{
    return purchaseOrder;
}

} // namespace krv::web
