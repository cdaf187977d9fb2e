#pragma once

#include <QString>

// What the command line asks for. A bare start is a launcher that opens the window, --async a launcher that does not,
// and --outfile the service.
struct CommandLineOptions
{
    QString outfile;                // file into which the service writes its port
    bool async = false;             // act as a launcher
    bool printStdErr = false;       // echo the debug log to standard error
    bool dontStartNativeFM = false; // do not open the font manager window
};

// Fills `options`; false when the command line is not usable (the reason went to the warning channel or to standard
// error). The mode is derived in either case.
bool parseCommandLine(CommandLineOptions& options, int argc, const char* const* argv);
