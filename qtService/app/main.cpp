#include "qtService/app/CommandLineOptions.h"
#include "qtService/app/Launcher.h"
#include "qtService/app/core/platform_locale.h"
#include "qtService/app/runService.h"

#include <QDebug>

#include <cstdio>

int main(int argc, char** argv)
{
    krv::platform::useUtf8WithoutLocale();
    CommandLineOptions options;
    if (!parseCommandLine(options, argc, argv)) {
        std::fputs("Invalid cmd line params\nExiting...\n", stderr);
        return 1;
    }
    if (options.async)
        return runLauncher(argc, argv, options);
    const int result = runService(argc, argv, options);
    qDebug() << "M_0_"
             << "Application terminated reqularly";
    return result;
}
