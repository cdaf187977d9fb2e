#include "qtService/database/FontCollectionInterface.h"

FontCollectionInterface::FontCollectionInterface(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<QList<int>>("QList<int>");
}

FontCollectionInterface::~FontCollectionInterface() = default;
