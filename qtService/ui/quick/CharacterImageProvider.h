#pragma once

#include <QPointer>
#include <QQuickImageProvider>

class KrvCharacterMapModel;

// Gives QML the pictures that a character map model names in its image URLs; an engine gets it under
// KrvCharacterMapModel::imageProviderId() and owns it. The model may go first. It answers on the main thread, so images
// in QML stay synchronous, as they are unless asked otherwise; elsewhere it gives none.
class CharacterImageProvider : public QQuickImageProvider
{
public:
    explicit CharacterImageProvider(KrvCharacterMapModel* model);

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    QPointer<KrvCharacterMapModel> m_model;
};
