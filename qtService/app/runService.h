#pragma once

#include "qtService/app/CommandLineOptions.h"

// The service role: runs FMService until it is told to stop, and publishes its port to the launcher that waits for it.
// Returns the exit code.
int runService(int& argc, char** argv, const CommandLineOptions& options);
