#include "qtService/ui/widgets/InterfaceFont.h"

#include <QApplication>
#include <QFont>

namespace ui {

void ensureInterfaceFont()
{
    QFont font = QApplication::font();
    if (!font.family().isEmpty())
        return;
    font.setFamily(QStringLiteral("sans-serif"));
    QApplication::setFont(font);
}

} // namespace ui
