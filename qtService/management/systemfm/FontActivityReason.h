#pragma once

#include "qtService/management/systemfm/ActivityType.h"

#include <QString>

namespace kerval::systemfm {

// Why a font file is active or not, for the user to read.
struct FontActivityReason
{
    enum Kind
    {
        // Active.
        PlacedByUs,          // permanently, through a file of ours
        PlacedForSession,    // until the session ends, through a link of ours
        InstalledInSystem,   // found in a folder that belongs to the system: the distribution's
        InstalledByUser,     // found in a folder of the user's
        DuplicateWins,       // active, but programs that ask for its name get another file (otherFile)
        RenamedByOtherTool,  // active, but a rule of another tool (otherFile) answers its name with another family
                             // Inactive.
        NotInstalled,        // outside every folder that programs look into
        RejectedByUs,        // switched off here
        RejectedByOtherTool, // a rule of another tool (otherFile) hides it
        NotReadable,         // the system cannot read the file as a font
        Missing,             // the file is gone
        ConfigurationBroken, // a broken configuration file (otherFile) keeps the system from obeying
    };

    Kind kind = NotInstalled;
    ActivityType activityType = Inactive;
    QString otherFile; // the rule's file or the winning font file; empty where the kind has none
    QString text;      // one sentence in the user's language
};

} // namespace kerval::systemfm
