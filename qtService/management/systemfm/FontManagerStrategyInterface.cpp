#include "qtService/management/systemfm/FontManagerStrategyInterface.h"

#include "fontfile/KrvFontFile.h"

namespace kerval::systemfm {

FontManagerStrategyInterface::FontManagerStrategyInterface(QObject* parent)
    : QObject(parent)
{
}

bool FontManagerStrategyInterface::isSupportedFont(const QString& fileName)
{
    const int type = KrvFontFile::fileTypeFromFileName(fileName);
    return type >= 1 && type <= 4;
}

void FontManagerStrategyInterface::beginBatch() {}

QHash<QString, int> FontManagerStrategyInterface::endBatch()
{
    return {};
}

QHash<QString, int> FontManagerStrategyInterface::sameForAll(const QStringList& fontNames, int result)
{
    QHash<QString, int> results;
    for (const QString& name : fontNames)
        results.insert(name, result);
    return results;
}

} // namespace kerval::systemfm
