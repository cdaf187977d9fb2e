#pragma once

#include <QImage>
#include <QString>

namespace kerval::testing {

// A font file that Debian's packages install, by its name; ends the program when it is not there.
QString debianFont(const QString& fileName);

// Empty when the image equals tests/fontfile/golden/<name>.png, else what differs. Other versions of FreeType than the
// one the goldens were made with may differ by a little.
QString goldenDifference(const QString& name, const QImage& image);

} // namespace kerval::testing
