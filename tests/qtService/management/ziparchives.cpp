#include "tests/qtService/management/ziparchives.h"

#include "qtService/management/ZipArchive.h"
#include "tests/support/testtree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kerval::testing {

QString writeZip(const QString& path, const ZipContent& entries)
{
    const QString part = path + QStringLiteral(".part");
    QDir().mkpath(QFileInfo(path).path());
    ZipArchive archive(path, QString());
    bool written = archive.open(ZipArchive::Write);
    for (const auto& [name, content] : entries) {
        writeFile(part, content);
        written = written && archive.addFile(part, name);
    }
    QFile::remove(part);
    if (!written || !archive.close())
        qFatal("the archive could not be written");
    return path;
}

} // namespace kerval::testing
