#pragma once

#include <QByteArray>
#include <QVariantMap>

// The update server's document is an expression of the script language, in the usual case a plain JSON object.
namespace updates {

// Evaluates the document with a script engine that knows nothing of the program, and stops it after a second; what is
// no object gives an empty map. Blocks the calling thread meanwhile and needs no event loop there.
QVariantMap evaluateDocument(const QByteArray& body);

} // namespace updates
