#include "tests/support/helperprograms.h"

#include <QCoreApplication>
#include <QFile>

namespace kerval::testing {

void provideHelperPrograms(const QString& binFolder)
{
    for (const char* name : {"krvfontadder.exe", "krvextractfeatures.exe", "krvfindsimilar.exe"}) {
        const QString program = binFolder + QLatin1Char('/') + QLatin1String(name);
        const QString link = QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
        // Test programs run at the same time: another may make the link between the question and the attempt.
        if (!QFile::exists(link) && !QFile::link(program, link) && !QFile::exists(link))
            qFatal("%s cannot be linked", name);
    }
}

} // namespace kerval::testing
