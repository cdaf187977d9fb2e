#pragma once

#include "qtService/management/FontGroup.h"

#include <QSet>
#include <QSortFilterProxyModel>

class FontFiltersState;
class KrvFontsViewModelPrivate;

// The sorted list of fonts that the window shows: the fonts of one group that pass the filters. Sorting compares ready
// keys of the source's records, in the order the user's language has. Main thread.
class KrvFontsViewModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit KrvFontsViewModel(QObject* parent = nullptr);
    ~KrvFontsViewModel() override;

    void setFontGroup(const FontGroupPtr& fontGroup);
    FontGroupPtr fontGroup() const;
    // Not owned; its changes are followed.
    void setFiltersState(FontFiltersState* state);
    bool isFiltering() const;

    QString previewText() const;
    int previewSize() const;

    // Null for an invalid index.
    StaticFontPtr font(const QModelIndex& index) const;
    // Invalid when the font is not shown.
    QModelIndex indexOfFont(int fontId, int column = 0) const;
    // Tells which rows are visible, so that previews of others are not rendered in vain.
    void setRowsInView(int firstRow, int lastRow);

public slots:
    void setPreviewText(QString text);
    void setPreviewSize(int size);

signals:
    void filteringStatusChanged(bool filtering);
    // Around every change of the rows: which fonts will be there, and whether they are still those of the same group.
    void rowsAboutToChange(const QSet<int>& fontIds, bool sameGroup);
    void rowsChanged();

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private slots:
    void onFilteringCriteriaChanged();

private:
    KrvFontsViewModelPrivate* m_source;
    FontFiltersState* m_filters = nullptr;
};
