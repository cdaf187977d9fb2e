#include "tests/qtService/ui/accessiblewalk.h"

#include <QAccessible>
#include <QLabel>
#include <QWidget>

namespace kerval::testing {

namespace {

QString described(QAccessibleInterface* interface)
{
    const QObject* object = interface->object();
    return object
               ? QStringLiteral("%1 \"%2\"").arg(QLatin1String(object->metaObject()->className()), object->objectName())
               : QStringLiteral("something");
}

void walk(QAccessibleInterface* interface, QStringList* faults)
{
    if (!interface || !interface->isValid() || interface->state().invisible)
        return;
    // The cells of tables and lists are named by what they hold.
    const bool isCell = !interface->object();
    if (!isCell && interface->state().focusable && interface->text(QAccessible::Name).isEmpty())
        faults->append(described(interface) + QStringLiteral(" has no name"));
    if (!isCell && interface->state().focusable && interface->role() == QAccessible::NoRole)
        faults->append(described(interface) + QStringLiteral(" has no role"));
    // On some platforms a combo box is named by its value, and what it is for is said by its label alone.
    if (interface->role() == QAccessible::ComboBox && interface->relations(QAccessible::Label).isEmpty())
        faults->append(described(interface) + QStringLiteral(" has no label"));
    if (interface->tableInterface())
        return;
    for (int i = 0; i < interface->childCount(); ++i)
        walk(interface->child(i), faults);
}

} // namespace

QStringList accessibilityFaults(QWidget* window)
{
    QStringList faults;
    if (window->isWindow() && window->windowTitle().isEmpty())
        faults.append(window->objectName() + QStringLiteral(" has no title"));
    walk(QAccessible::queryAccessibleInterface(window), &faults);
    // A mnemonic without a control to go to is a dead key.
    const QList<QLabel*> labels = window->findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        const bool hasMnemonic = label->textFormat() != Qt::RichText && label->text().contains(QLatin1Char('&')) &&
                                 !label->text().contains(QLatin1String("&&"));
        if (hasMnemonic && !label->buddy())
            faults.append(label->objectName() + QStringLiteral(" has a key that leads nowhere"));
    }
    return faults;
}

} // namespace kerval::testing
