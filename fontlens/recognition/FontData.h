#pragma once

#include <QList>
#include <QMetaType>
#include <QSharedPointer>
#include <QString>

namespace FontRecognizer {

// One font that the service proposes.
struct FontData
{
    int id = 0; // the service's own, for previews and shop links
    QString name;
    QString style;
    QString foundry;
    double deviance = 0; // distance from the selected letters
};

using FontDataPtr = QSharedPointer<FontData>;

} // namespace FontRecognizer

Q_DECLARE_METATYPE(FontRecognizer::FontDataPtr)
