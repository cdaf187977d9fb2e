#include "qtService/ui/quick/CharacterImageProvider.h"

#include "qtService/ui/details/KrvCharacterMapModel.h"

#include <QThread>

CharacterImageProvider::CharacterImageProvider(KrvCharacterMapModel* model)
    : QQuickImageProvider(QQuickImageProvider::Image)
    , m_model(model)
{
}

QImage CharacterImageProvider::requestImage(const QString& id, QSize* size, const QSize&)
{
    QImage image;
    if (m_model && m_model->thread() == QThread::currentThread())
        image = m_model->image(id);
    if (size)
        *size = image.size();
    return image;
}
