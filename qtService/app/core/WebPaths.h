#pragma once

#include <QString>

// Addresses the interface opens in the user's browser.
namespace krv::web {

QString loginPath();
QString supportTicketPath();
QString purchaseCountryPath();
QString purchaseDownloadPath();
QString purchaseOrderPath();

} // namespace krv::web
