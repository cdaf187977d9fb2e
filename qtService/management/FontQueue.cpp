#include "qtService/management/FontQueue.h"

#include "qtService/app/core/PathCodec.h"

#include <QFile>
#include <QSaveFile>

bool FontQueue::append(const Face& face)
{
    if (m_members.contains(face))
        return false;
    m_members.insert(face);
    m_faces.append(face);
    return true;
}

FontQueue::Face FontQueue::takeFirst()
{
    const Face face = m_faces.takeFirst();
    m_members.remove(face);
    return face;
}

void FontQueue::clear()
{
    m_faces.clear();
    m_members.clear();
}

bool FontQueue::save(const QString& fileName, const QList<Face>& faces)
{
    QByteArray text;
    for (const Face& face : faces) {
        text += krv::encodePath(face.first);
        text += '\n';
        text += krv::encodePath(QString::number(face.second));
        text += '\n';
    }
    QSaveFile file(fileName);
    const bool saved = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    if (!saved)
        qWarning("E_0_ The queue file \"%s\" could not be written: %s", qPrintable(fileName),
                 qPrintable(file.errorString()));
    return saved;
}

QList<FontQueue::Face> FontQueue::load(const QString& fileName)
{
    QList<Face> faces;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return faces;
    while (!file.atEnd()) {
        const QString path = krv::decodePath(file.readLine().trimmed());
        bool isNumber = false;
        const int index = krv::decodePath(file.readLine().trimmed()).toInt(&isNumber);
        if (isNumber && index >= 0 && !path.isEmpty())
            faces.append({path, index});
    }
    return faces;
}
