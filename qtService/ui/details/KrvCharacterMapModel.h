#pragma once

#include "fontfile/KrvFontMetrics.h"
#include "qtService/ui/details/CharacterMapFont.h"

#include <QAbstractItemModel>

// The characters of one font, or of one range of it, as a flat list for a view of widgets or of QML. It holds code
// points only; a picture is drawn when a view asks for it. Main thread.
class KrvCharacterMapModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role
    {
        NormalImageRole = Qt::DecorationRole,
        CharacterCodeRole = Qt::DisplayRole,
        LargeImageRole = Qt::UserRole + 1,
        NormalImageUrlRole,
        LargeImageUrlRole,
        NormalImageSizeRole,
        LargeImageSizeRole,
        CharacterRole, // the character itself as text
        KeptImageRole, // as NormalImageRole, but null when it would have to be drawn first
    };
    static constexpr int LargeImageSize = 120;
    // Of the image URLs.
    static QString imageProviderId();

    explicit KrvCharacterMapModel(QObject* parent = nullptr);

    // Opens the file and shows the range; an empty file name shows nothing.
    void setFont(const QString& fileName, int faceIndex, const KrvFontMetrics::MetricsCorrection& correction);
    // Those that setRange() takes, as CharacterMapFont has them.
    QList<int> ranges();
    void setRange(int range);
    int normalImageSize() const { return m_normalSize; }
    void setNormalImageSize(int size);
    // Pixels for each unit of the sizes.
    void setDevicePixelRatio(double ratio);

    uint character(const QModelIndex& index) const;
    static QString codeText(uint character);
    // For an image provider: the picture that a key of the image URLs names; null for a key of another font.
    QImage image(const QString& key);

    QModelIndex index(int row, int column = 0, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QString imageUrl(uint character, int size) const;

    mutable CharacterMapFont m_font; // drawing on demand changes what it keeps
    QVector<uint> m_characters;
    int m_range = CharacterMapFont::AllCharacters;
    int m_normalSize;
    double m_pixelRatio = 1.0;
};
