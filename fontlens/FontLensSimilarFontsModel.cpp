#include "fontlens/FontLensSimilarFontsModel.h"

#include "fontlens/recognition/FontRecognizerSession.h"

#include <QPainter>

using FontRecognizer::FontDataPtr;
using FontRecognizer::FontRecognizerSession;

namespace {

constexpr int renderedSize = 32;
constexpr int cellMargin = 4;

// Black on white becomes ink on nothing.
QImage inked(const QImage& image, const QColor& ink)
{
    QImage coverage = image.convertToFormat(QImage::Format_Grayscale8);
    coverage.invertPixels();
    QImage result(image.size(), QImage::Format_ARGB32);
    result.fill(ink);
    result.setAlphaChannel(coverage);
    return result;
}

} // namespace

FontLensSimilarFontsModel::FontLensSimilarFontsModel(QObject* parent)
    : QAbstractItemModel(parent)
{
}

QSize FontLensSimilarFontsModel::previewSize()
{
    return QSize(260, renderedSize + 2 * cellMargin);
}

void FontLensSimilarFontsModel::setAppearance(const QColor& ink, qreal devicePixelRatio)
{
    if (ink == m_ink && devicePixelRatio == m_ratio)
        return;
    m_ink = ink;
    m_ratio = devicePixelRatio;
    for (int row = 0; row < m_fonts.size(); ++row)
        m_cells[row] = cellOf(m_rendered.at(row));
    if (!m_fonts.isEmpty())
        emit dataChanged(index(0, PreviewColumn), index(m_fonts.size() - 1, PreviewColumn), {Qt::DecorationRole});
}

QImage FontLensSimilarFontsModel::cellOf(const QImage& rendered) const
{
    QImage cell(previewSize() * m_ratio, QImage::Format_ARGB32_Premultiplied);
    cell.fill(Qt::transparent);
    if (!rendered.isNull()) {
        const int margin = qRound(cellMargin * m_ratio);
        const QSize room = cell.size() - QSize(2 * margin, 2 * margin);
        QSize size = rendered.size() * (m_ratio / m_renderedRatio);
        if (size.width() > room.width() || size.height() > room.height())
            size.scale(room, Qt::KeepAspectRatio);
        QImage image(rendered.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter(&image).drawImage(0, 0, rendered);
        const bool isInk = image.allGray();
        if (!isInk)
            cell.fill(Qt::white);
        image = image.scaled(size.expandedTo(QSize(1, 1)), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QPainter(&cell).drawImage(margin, (cell.height() - image.height()) / 2, isInk ? inked(image, m_ink) : image);
    }
    cell.setDevicePixelRatio(m_ratio);
    return cell;
}

void FontLensSimilarFontsModel::setSession(const QSharedPointer<FontRecognizerSession>& session)
{
    if (m_session)
        m_session->disconnect(this);
    m_session = session;
    beginResetModel();
    m_fonts.clear();
    m_rendered.clear();
    m_cells.clear();
    endResetModel();
    if (m_session)
        connect(m_session.data(), &FontRecognizerSession::renderPreviewFinished, this,
                &FontLensSimilarFontsModel::onPreviewRendered);
}

void FontLensSimilarFontsModel::setFonts(const QList<FontDataPtr>& fonts)
{
    beginResetModel();
    m_fonts = fonts;
    m_rendered.fill(QImage(), fonts.size());
    m_cells.fill(cellOf(QImage()), fonts.size());
    endResetModel();
    if (!m_session)
        return;
    m_renderedRatio = m_ratio;
    for (const FontDataPtr& font : fonts)
        m_session->renderPreview(font->id, qRound(renderedSize * m_renderedRatio));
}

FontDataPtr FontLensSimilarFontsModel::font(const QModelIndex& index) const
{
    return index.isValid() && index.row() < m_fonts.size() ? m_fonts.at(index.row()) : FontDataPtr();
}

void FontLensSimilarFontsModel::onPreviewRendered(bool success, int fontId, QImage previewImage)
{
    if (!success || previewImage.isNull())
        return;
    for (int row = 0; row < m_fonts.size(); ++row) {
        if (m_fonts.at(row)->id != fontId)
            continue;
        m_rendered[row] = previewImage;
        m_cells[row] = cellOf(previewImage);
        const QModelIndex changed = index(row, PreviewColumn);
        emit dataChanged(changed, changed, {Qt::DecorationRole});
    }
}

QModelIndex FontLensSimilarFontsModel::index(int row, int column, const QModelIndex& parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column) : QModelIndex();
}

QModelIndex FontLensSimilarFontsModel::parent(const QModelIndex&) const
{
    return QModelIndex();
}

int FontLensSimilarFontsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_fonts.size();
}

int FontLensSimilarFontsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FontLensSimilarFontsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const FontRecognizer::FontData& font = *m_fonts.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        switch (index.column()) {
        case NameColumn:
            return font.name;
        case StyleColumn:
            return font.style;
        case FoundryColumn:
            return font.foundry;
        default:
            return QVariant();
        }
    case Qt::DecorationRole:
        return index.column() == PreviewColumn ? m_cells.at(index.row()) : QVariant();
    case Qt::AccessibleTextRole:
        return index.column() == PreviewColumn ? tr("%1 %2").arg(font.name, font.style) : QVariant();
    case FontIdRole:
        return font.id;
    default:
        return QVariant();
    }
}

QVariant FontLensSimilarFontsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case PreviewColumn:
        return tr("Preview");
    case NameColumn:
        return tr("Name");
    case StyleColumn:
        return tr("Style");
    case FoundryColumn:
        return tr("Foundry");
    default:
        return QVariant();
    }
}
