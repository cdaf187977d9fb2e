#pragma once

#include "qtService/database/StaticFont.h"

// A catalogue as a collector of fonts has it: families of up to twelve faces by some thousand designers, a description
// for each family, licence texts of two to six kilobytes of which a few hundred exist.
namespace kerval::bench {

QList<StaticFontPtr> generateFonts(int count, int firstNumber = 0);

} // namespace kerval::bench
