#pragma once

#include <QString>
#include <QStringList>

namespace FontRecognizer {

// The service wraps texts in CDATA sections, and the wrappers of the given elements are taken off the document's text
// before it is read as XML. So a text may not hold markup of its own: a bare "&" makes the document unreadable.
QString withoutCDataOf(const QStringList& tags, QString document);

} // namespace FontRecognizer
