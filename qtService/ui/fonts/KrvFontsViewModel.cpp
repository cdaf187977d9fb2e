#include "qtService/ui/fonts/KrvFontsViewModel.h"

#include "qtService/ui/filter/FontFiltersState.h"
#include "qtService/ui/fonts/KrvFontsViewModelPrivate.h"

KrvFontsViewModel::KrvFontsViewModel(QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_source(new KrvFontsViewModelPrivate(this))
{
    setSourceModel(m_source);
    connect(m_source, &KrvFontsViewModelPrivate::filteringStatusChanged, this,
            &KrvFontsViewModel::filteringStatusChanged);
    connect(m_source, &KrvFontsViewModelPrivate::rowsAboutToChange, this, &KrvFontsViewModel::rowsAboutToChange);
    connect(m_source, &KrvFontsViewModelPrivate::rowsChanged, this, &KrvFontsViewModel::rowsChanged);
}

KrvFontsViewModel::~KrvFontsViewModel() = default;

void KrvFontsViewModel::setFontGroup(const FontGroupPtr& fontGroup)
{
    m_source->setFontGroup(fontGroup);
}

FontGroupPtr KrvFontsViewModel::fontGroup() const
{
    return m_source->fontGroup();
}

void KrvFontsViewModel::setFiltersState(FontFiltersState* state)
{
    if (m_filters)
        m_filters->disconnect(this);
    m_filters = state;
    m_source->setFiltersState(state);
    if (m_filters)
        connect(m_filters, &FontFiltersState::changed, this, &KrvFontsViewModel::onFilteringCriteriaChanged);
}

bool KrvFontsViewModel::isFiltering() const
{
    return m_source->isFiltering();
}

QString KrvFontsViewModel::previewText() const
{
    return m_source->previewText();
}

int KrvFontsViewModel::previewSize() const
{
    return m_source->previewSize();
}

StaticFontPtr KrvFontsViewModel::font(const QModelIndex& index) const
{
    return index.isValid() ? m_source->font(mapToSource(index).row()) : StaticFontPtr();
}

QModelIndex KrvFontsViewModel::indexOfFont(int fontId, int column) const
{
    return mapFromSource(m_source->index(m_source->rowOfFont(fontId), column));
}

void KrvFontsViewModel::setRowsInView(int firstRow, int lastRow)
{
    QVector<int> rows;
    for (int row = firstRow; row <= lastRow; ++row)
        rows.append(mapToSource(index(row, 0)).row());
    m_source->setRowsInView(rows);
}

void KrvFontsViewModel::setPreviewText(QString text)
{
    m_source->setPreviewText(text);
}

void KrvFontsViewModel::setPreviewSize(int size)
{
    m_source->setPreviewSize(size);
}

void KrvFontsViewModel::onFilteringCriteriaChanged()
{
    m_source->updateCriteria();
}

bool KrvFontsViewModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    return m_source->lessByColumn(left.column(), left.row(), right.row());
}
