#pragma once

#include <QString>

namespace kerval::systemfm {

// Text for an element's content or an attribute's value. Line ends are written as references, because XML readers turn
// a bare CR into LF, and file names may hold either.
QString escapedXml(const QString& text);

} // namespace kerval::systemfm
