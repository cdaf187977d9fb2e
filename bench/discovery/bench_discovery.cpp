#include "bench/support/bench.h"
#include "fontfile/KrvFontFile.h"
#include "qtService/management/FindFontFilesCommand.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>

#include <fontconfig/fontconfig.h>

// Finding the faces of the machine's fonts, beside what fontconfig's own scan does with the same files in one process.

namespace {

constexpr int mostFiles = 300;

// Spread over all folders, so that no single family counts for everything.
QStringList fontFiles()
{
    QStringList files;
    QDirIterator iterator(QStringLiteral("/usr/share/fonts"), QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString file = iterator.next();
        const KrvFontFile::Format format = KrvFontFile::formatFromFileName(file);
        if (format >= KrvFontFile::FormatTtf && format <= KrvFontFile::FormatOtf)
            files.append(file);
    }
    files.sort();
    QStringList chosen;
    const int step = qMax(1, files.size() / mostFiles);
    for (int i = 0; i < files.size(); i += step)
        chosen.append(files.at(i));
    return chosen;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList files = fontFiles();
    int faces = 0;
    const auto ours = [&] {
        faces = 0;
        FindFontFilesCommand command(files, 0);
        QObject::connect(
            &command, &FindFontFilesCommand::fontFilesFound, &command,
            [&faces](const QList<QPair<QString, int>>& found) { faces += found.size(); }, Qt::DirectConnection);
        return kerval::bench::seconds([&] {
            command.start();
            command.waitForFinished();
        });
    };
    const auto reference = [&] {
        return kerval::bench::seconds([&] {
            for (const QString& file : files) {
                FcFontSet* const set = FcFontSetCreate();
                int count = 0;
                const QByteArray name = QFile::encodeName(file);
                FcFreeTypeQueryAll(reinterpret_cast<const FcChar8*>(name.constData()), unsigned(-1), nullptr, &count,
                                   set);
                FcFontSetDestroy(set);
            }
        });
    };
    ours(); // reads the files into the page cache
    kerval::bench::compare("discovery, per face, beside fontconfig's scan of the same files", 0.5, ours, reference, 5,
                           qMax(1, faces));
    return 0;
}
