#include "fontlens/FontLensSimilarFontsModel.h"

#include "fontlens/recognition/FontRecognizerSession.h"

#include <QPainter>

using FontRecognizer::FontDataPtr;
using FontRecognizer::FontRecognizerSession;

namespace {

constexpr int renderedSize = 32;
constexpr int cellMargin = 4;

QImage emptyCell(qreal ratio, const QColor& ground)
{
    QImage cell(FontLensSimilarFontsModel::previewSize() * ratio, QImage::Format_ARGB32_Premultiplied);
    cell.fill(ground);
    return cell;
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

void FontLensSimilarFontsModel::setDevicePixelRatio(qreal ratio)
{
    m_ratio = ratio;
}

void FontLensSimilarFontsModel::setSession(const QSharedPointer<FontRecognizerSession>& session)
{
    if (m_session)
        m_session->disconnect(this);
    m_session = session;
    beginResetModel();
    m_fonts.clear();
    m_previews.clear();
    endResetModel();
    if (m_session)
        connect(m_session.data(), &FontRecognizerSession::renderPreviewFinished, this,
                &FontLensSimilarFontsModel::onPreviewRendered);
}

void FontLensSimilarFontsModel::setFonts(const QList<FontDataPtr>& fonts)
{
    QImage placeholder = emptyCell(m_ratio, Qt::transparent);
    placeholder.setDevicePixelRatio(m_ratio);
    beginResetModel();
    m_fonts = fonts;
    m_previews.fill(placeholder, fonts.size());
    endResetModel();
    if (!m_session)
        return;
    for (const FontDataPtr& font : fonts)
        m_session->renderPreview(font->id, renderedSize);
}

FontDataPtr FontLensSimilarFontsModel::font(const QModelIndex& index) const
{
    return index.isValid() && index.row() < m_fonts.size() ? m_fonts.at(index.row()) : FontDataPtr();
}

void FontLensSimilarFontsModel::onPreviewRendered(bool success, int fontId, QImage previewImage)
{
    if (!success || previewImage.isNull())
        return;
    QImage cell = emptyCell(m_ratio, Qt::white);
    const int margin = qRound(cellMargin * m_ratio);
    const QSize room = cell.size() - QSize(2 * margin, 2 * margin);
    const QSize wanted = previewImage.size() * m_ratio;
    const QSize size = wanted.width() > room.width() || wanted.height() > room.height()
                           ? wanted.scaled(room, Qt::KeepAspectRatio)
                           : wanted;
    {
        const QImage scaled =
            previewImage.scaled(size.expandedTo(QSize(1, 1)), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QPainter(&cell).drawImage(margin, (cell.height() - scaled.height()) / 2, scaled);
    }
    cell.setDevicePixelRatio(m_ratio);
    for (int row = 0; row < m_fonts.size(); ++row) {
        if (m_fonts.at(row)->id != fontId)
            continue;
        m_previews[row] = cell;
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
        return index.column() == PreviewColumn ? m_previews.at(index.row()) : QVariant();
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
