#pragma once

#include <QMetaType>

namespace fms {

// Per-font result of activation; travels to plug-ins as this number.
enum ErrorCode : int
{
    NotProcessed = -1,        // the command has not handled the font (yet)
    NoError = 0,              //
    ActivationFailed = 17,    // the system refused to add or remove the font file
    ActivationConflict = 18,  // another active font, or one of the same batch, has the same PostScript name
    SystemFontProtected = 19, // one of the system's own fonts, whose activity cannot be changed
    FontNotFound = 20,        // the id is not in the catalogue
    FontFileNameEmpty = 23    // the record has no file name
};

} // namespace fms

Q_DECLARE_METATYPE(fms::ErrorCode)
