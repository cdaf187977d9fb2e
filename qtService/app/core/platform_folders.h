#pragma once

#include <QString>

// Where this platform keeps application data; the settings folders are made below these.
namespace krv::platform {

// Base of the user's own application data, without a trailing slash; empty when the system names none.
QString userDataBase();
// Base of the data that all users share.
QString commonDataBase();

// True when the process runs with administrator rights.
bool isAdministrator();

} // namespace krv::platform
