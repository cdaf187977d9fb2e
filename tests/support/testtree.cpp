#include "tests/support/testtree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kerval::testing {

void writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("cannot write %s: %s", qPrintable(path), qPrintable(file.errorString()));
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace kerval::testing
