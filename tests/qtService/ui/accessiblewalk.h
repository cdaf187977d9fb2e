#pragma once

#include <QStringList>

class QWidget;

namespace kerval::testing {

// What a screen reader would find wanting in a shown window: everything that can have the focus and has no name, by
// class and object name; windows without a title, and labels that name a control without leading to it.
QStringList accessibilityFaults(QWidget* window);

} // namespace kerval::testing
