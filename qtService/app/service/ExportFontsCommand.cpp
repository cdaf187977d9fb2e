#include "qtService/app/service/ExportFontsCommand.h"

#include <QFileInfo>
#include <QSet>

namespace {

QString numbered(const QString& name, int number)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    const int end = dot > 0 ? dot : name.size();
    return QStringLiteral("%1 (%2)%3").arg(name.left(end)).arg(number).arg(name.mid(end));
}

} // namespace

ExportFontsCommand::ExportFontsCommand(const ZipArchive& archive, const QStringList& filePaths)
    : AbstractAsynchronousCommand(filePaths.size())
    , m_archive(archive)
    , m_filePaths(filePaths)
{
}

ExportFontsCommand::~ExportFontsCommand()
{
    waitForFinished();
}

void ExportFontsCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    if (!m_archive.open(ZipArchive::Write)) {
        setState(Failed);
        return;
    }

    QSet<QString> names;         // in lower case
    QHash<QString, int> numbers; // the last number given to a name
    for (const QString& path : m_filePaths) {
        QString name = QFileInfo(path).fileName();
        const QString wanted = name;
        int& number = numbers[wanted.toLower()];
        while (names.contains(name.toLower()))
            name = numbered(wanted, number = qMax(2, number + 1));
        names.insert(name.toLower());

        if (!m_archive.addFile(path, name)) {
            qWarning("E_1_ Exporting \"%s\" failed", qPrintable(path));
            m_archive.close();
            setState(Failed);
            return;
        }
        setProgressCurrent(progressCurrent() + 1);
        if (state() == Cancelled) {
            m_archive.close();
            return;
        }
    }
    setState(m_archive.close() ? Finished : Failed);
}
