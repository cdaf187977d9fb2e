#include "qtService/ui/search/SearchBoxInterface.h"

SearchBoxInterface::SearchBoxInterface(QWidget* parent)
    : QLineEdit(parent)
{
}
