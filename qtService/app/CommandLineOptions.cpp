#include "qtService/app/CommandLineOptions.h"

#include "qtService/app/OptionParser.h"

#include <cstdio>

bool parseCommandLine(CommandLineOptions& options, int argc, const char* const* argv)
{
    OptionParser parser(argc, argv);
    // A desktop that starts programs with a process serial number passes it as -psn_...: accepted and ignored.
    QString processSerialNumber;
    parser.addOptionalOption(QStringLiteral("outfile"), &options.outfile, QString());
    parser.addSwitch(QStringLiteral("async"), &options.async);
    parser.addSwitch(QStringLiteral("printStdErr"), &options.printStdErr);
    parser.addSwitch(QStringLiteral("dontStartNativeFM"), &options.dontStartNativeFM);
    parser.addOptionalOption('p', QStringLiteral("psn"), &processSerialNumber, QString());
    const bool ok = parser.parse(false);

    if (options.async)
        options.dontStartNativeFM = true;
    else if (options.outfile.isEmpty())
        options.async = true;

    if (ok && options.async && !options.outfile.isEmpty()) {
        std::fputs("Can't use outfile when service is started in async mode\n", stderr);
        return false;
    }
    return ok;
}
