#include "qtService/app/service/UpdateFileExistsCommand.h"

#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/StaticFont.h"

#include <QFileInfo>

UpdateFileExistsCommand::UpdateFileExistsCommand(QSharedPointer<KrvFontRepository> repository)
    : m_repository(std::move(repository))
{
}

UpdateFileExistsCommand::~UpdateFileExistsCommand()
{
    waitForFinished();
}

void UpdateFileExistsCommand::operator()()
{
    if (state() == Cancelled)
        return;
    setState(Running);

    const QList<StaticFontPtr> fonts = m_repository->fonts();
    setProgressTotal(fonts.size());
    QList<StaticFontPtr> changed;
    for (int i = 0; i < fonts.size(); ++i) {
        if (state() == Cancelled)
            return;
        const StaticFontPtr& font = fonts.at(i);
        const bool exists = QFileInfo::exists(font->fileName());
        if (exists != font->fileExists()) {
            font->setFileExists(exists);
            changed.append(font);
        }
        setProgressCurrent(i + 1);
    }
    if (!changed.isEmpty())
        m_repository->updateFonts(changed, {QStringLiteral("fileExists")});
    setState(Finished);
}
