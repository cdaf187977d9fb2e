#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QList>
#include <QString>

class KrvFontRepository;

// Marks fonts as coming from an online source: writes the online information file beside each font file, then the
// records. A file that cannot be written ends the command as Failed with no record changed; files written before stay.
class SetOnlineSourceCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    SetOnlineSourceCommand(const QList<int>& fontIdList, const QString& onlineSource, int onlineId,
                           QSharedPointer<KrvFontRepository> repository);
    ~SetOnlineSourceCommand() override;

protected:
    void operator()() override;

private:
    const QList<int> m_fontIdList;
    const QString m_onlineSource;
    const int m_onlineId;
    const QSharedPointer<KrvFontRepository> m_repository;
};

using SetOnlineSourceCommandPtr = QSharedPointer<SetOnlineSourceCommand>;
