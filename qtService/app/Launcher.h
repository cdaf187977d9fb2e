#pragma once

#include "qtService/app/CommandLineOptions.h"

// The launcher role: starts the service as a detached process, waits until it has published its port, asks it to open
// the window unless told not to, and prints "Port: %d\n ". A port of 0 says that no service is available. Returns the
// exit code, always 0.
int runLauncher(int& argc, char** argv, const CommandLineOptions& options);
