#include "qtService/management/systemfm/ProtectedFonts.h"

#include "qtService/management/systemfm/FontconfigDatabase.h"

#include <QFile>
#include <QTextStream>

// Resources of a static library register only when somebody asks for them, which has to happen outside namespaces.
static void registerList()
{
    Q_INIT_RESOURCE(systemfm);
}

namespace kerval::systemfm::protectedfonts {

QString folder()
{
    return QStringLiteral("/usr/share/fonts");
}

QStringList fileNames()
{
    registerList();
    QStringList names;
    QFile file(QStringLiteral(":/fonts_linux.txt"));
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream lines(&file);
        lines.setCodec("UTF-8");
        for (QString line = lines.readLine(); !line.isNull(); line = lines.readLine()) {
            if (!line.isEmpty())
                names.append(line);
        }
    }
    const QStringList generic =
        FontconfigDatabase::filesOfGeneric({QStringLiteral("sans-serif"), QStringLiteral("serif"),
                                            QStringLiteral("monospace"), QStringLiteral("system-ui")});
    for (const QString& name : generic) {
        if (!names.contains(name))
            names.append(name);
    }
    return names;
}

} // namespace kerval::systemfm::protectedfonts
