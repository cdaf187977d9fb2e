#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

#include <QList>

class KrvFontRepository;

// Hides fonts, or shows them again.
class SetFontsHiddenCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    SetFontsHiddenCommand(const QList<int>& fontIdList, bool hidden, QSharedPointer<KrvFontRepository> repository);
    ~SetFontsHiddenCommand() override;

protected:
    void operator()() override;

private:
    const QList<int> m_fontIdList;
    const bool m_hidden;
    const QSharedPointer<KrvFontRepository> m_repository;
};

using SetFontsHiddenCommandPtr = QSharedPointer<SetFontsHiddenCommand>;
