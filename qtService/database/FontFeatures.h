#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QSharedPointer>
#include <QVector>

// The shape features of one face: for each key (one byte) the vectors stored under it, in the order of insertion.
class FontFeatures : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int fontId READ fontId WRITE setFontId)

public:
    FontFeatures();

    int fontId() const;
    void setFontId(int fontId);

    void insert(ushort key, const QVector<float>& vector);
    // Ascending.
    QList<ushort> keys() const;
    QList<QVector<float>> vectors(ushort key) const;
    bool isEmpty() const;
    int vectorCount() const;

private:
    int m_fontId = 0;
    QMap<ushort, QList<QVector<float>>> m_vectors;
};

using FontFeaturesPtr = QSharedPointer<FontFeatures>;

Q_DECLARE_METATYPE(FontFeaturesPtr)
