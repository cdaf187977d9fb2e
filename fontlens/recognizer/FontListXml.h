#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace kerval::recognizer {

struct ProposedFont
{
    int id = 0;
    QString family;
    QString style;
    QString foundry;
    double deviance = 0;
};

// The answer to a search for similar fonts: for each font F (the id), FN, FO, S and D, all siblings.
//
// Clients take the CDATA wrappers off as text before they parse, so that what is wrapped is read as plain XML then. A
// text is wrapped only when it means the same either way, and escaped otherwise: both kinds of reader see the names.
QByteArray fontListXml(const QVector<ProposedFont>& fonts);

} // namespace kerval::recognizer
