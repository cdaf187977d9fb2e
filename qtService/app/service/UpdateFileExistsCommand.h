#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"

class KrvFontRepository;

// Looks whether the file of every catalogued font is there and corrects the records that say otherwise.
class UpdateFileExistsCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    explicit UpdateFileExistsCommand(QSharedPointer<KrvFontRepository> repository);
    ~UpdateFileExistsCommand() override;

protected:
    void operator()() override;

private:
    const QSharedPointer<KrvFontRepository> m_repository;
};

using UpdateFileExistsCommandPtr = QSharedPointer<UpdateFileExistsCommand>;
