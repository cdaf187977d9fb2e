#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QList>

class KrvFontRepository;

// Takes the marks of an online source back. Strict: a font without an online information file fails the whole command,
// and no record is changed.
class ClearOnlineSourceCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    ClearOnlineSourceCommand(const QList<int>& fontIdList, QSharedPointer<KrvFontRepository> repository);
    ~ClearOnlineSourceCommand() override;

protected:
    void operator()() override;

private:
    const QList<int> m_fontIdList;
    const QSharedPointer<KrvFontRepository> m_repository;
};

using ClearOnlineSourceCommandPtr = QSharedPointer<ClearOnlineSourceCommand>;
