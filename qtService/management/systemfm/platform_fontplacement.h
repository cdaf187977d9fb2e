#pragma once

#include <QString>

// File operations that make one font appear in a second place.
namespace kerval::systemfm::placement {

enum class Method
{
    None, // failed
    Link, // a second name of the same file
    Copy  // a clone or a copy: another file of the same content
};

// A link, else a clone, else a copy, in this order; links in `source` are followed. The target appears whole or not at
// all, and replaces what was there.
Method place(const QString& source, const QString& target);

// True when `target` still holds what `source` holds now: the same file, or a copy of the same size and time.
bool isCurrent(const QString& source, const QString& target);

// True when no other name leads to the file's data.
bool isOnlyName(const QString& path);

bool makeLink(const QString& source, const QString& link);

// Sets a file's or folder's time of change to now, so that programs that watch it look again.
void touch(const QString& path);

} // namespace kerval::systemfm::placement
