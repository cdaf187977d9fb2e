#pragma once

#include <QString>
#include <QStringList>

// The fonts that the system's own programs are drawn with, which nobody may switch off.
namespace kerval::systemfm::protectedfonts {

// Where the distribution installs fonts.
QString folder();
// File names without folders: the distribution's core families by a list, and the families that the generic names
// resolve to on this machine.
QStringList fileNames();

} // namespace kerval::systemfm::protectedfonts
