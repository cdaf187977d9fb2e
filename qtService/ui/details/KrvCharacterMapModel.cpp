#include "qtService/ui/details/KrvCharacterMapModel.h"

namespace {

constexpr int defaultNormalSize = 34;

} // namespace

QString KrvCharacterMapModel::imageProviderId()
{
    return QStringLiteral("charactermap");
}

KrvCharacterMapModel::KrvCharacterMapModel(QObject* parent)
    : QAbstractItemModel(parent)
    , m_normalSize(defaultNormalSize)
{
}

void KrvCharacterMapModel::setFont(const QString& fileName, int faceIndex,
                                   const KrvFontMetrics::MetricsCorrection& correction)
{
    beginResetModel();
    m_font.setFont(fileName, faceIndex, correction);
    m_characters.clear();
    endResetModel();
}

QList<int> KrvCharacterMapModel::ranges()
{
    return m_font.ranges();
}

void KrvCharacterMapModel::setRange(int range)
{
    beginResetModel();
    m_range = range;
    m_characters = m_font.characters(range);
    endResetModel();
}

void KrvCharacterMapModel::setNormalImageSize(int size)
{
    beginResetModel();
    m_normalSize = size;
    endResetModel();
}

void KrvCharacterMapModel::setDevicePixelRatio(double ratio)
{
    if (qFuzzyCompare(ratio, m_pixelRatio))
        return;
    m_pixelRatio = ratio;
    if (!m_characters.isEmpty())
        emit dataChanged(index(0), index(m_characters.size() - 1));
}

uint KrvCharacterMapModel::character(const QModelIndex& index) const
{
    return index.isValid() && index.row() < m_characters.size() ? m_characters.at(index.row()) : 0;
}

// Above U+FFFF there are two UTF-16 values; the code point they stand for says more and takes less room.
QString KrvCharacterMapModel::codeText(uint character)
{
    return QStringLiteral("0x%1").arg(QStringLiteral("%1").arg(character, 4, 16, QLatin1Char('0')).toUpper());
}

QString KrvCharacterMapModel::imageUrl(uint character, int size) const
{
    return QStringLiteral("image://%1/%2").arg(imageProviderId(), m_font.imageKey(character, size, m_pixelRatio));
}

QImage KrvCharacterMapModel::image(const QString& key)
{
    const int code = key.lastIndexOf(QLatin1Char('-')) + 1;
    const uint character = key.midRef(code).toUInt(nullptr, 16);
    for (const int size : {m_normalSize, LargeImageSize}) {
        if (m_font.imageKey(character, size, m_pixelRatio) == key)
            return m_font.image(character, size, m_pixelRatio);
    }
    return QImage();
}

QModelIndex KrvCharacterMapModel::index(int row, int column, const QModelIndex& parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex KrvCharacterMapModel::parent(const QModelIndex&) const
{
    return QModelIndex();
}

int KrvCharacterMapModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_characters.size();
}

int KrvCharacterMapModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant KrvCharacterMapModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_characters.size())
        return QVariant();
    const uint character = m_characters.at(index.row());
    switch (role) {
    case NormalImageRole:
        return m_font.image(character, m_normalSize, m_pixelRatio);
    case KeptImageRole:
        return m_font.keptImage(character, m_normalSize, m_pixelRatio);
    case LargeImageRole:
        return m_font.image(character, LargeImageSize, m_pixelRatio);
    case CharacterCodeRole:
        return codeText(character);
    case NormalImageUrlRole:
        return imageUrl(character, m_normalSize);
    case LargeImageUrlRole:
        return imageUrl(character, LargeImageSize);
    case NormalImageSizeRole:
        return m_normalSize;
    case LargeImageSizeRole:
        return int(LargeImageSize);
    case CharacterRole:
        return QString::fromUcs4(&character, 1);
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1 %2").arg(QString::fromUcs4(&character, 1), codeText(character));
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> KrvCharacterMapModel::roleNames() const
{
    return {{NormalImageUrlRole, "normalImageUrl"},
            {LargeImageUrlRole, "largeImageUrl"},
            {CharacterCodeRole, "characterCode"},
            {NormalImageSizeRole, "normalImageSize"},
            {LargeImageSizeRole, "largeImageSize"}};
}
