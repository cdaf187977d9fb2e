#pragma once

#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/management/FontGroup.h"
#include "qtService/ui/fonts/FontPreviewStore.h"
#include "qtService/ui/fonts/FontSortKeys.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QImage>
#include <QSet>
#include <QTimer>
#include <QVector>

class FontFiltersState;

// The fonts of one group that pass the filters, a row each, in the group's order. Filters run as background searches;
// until a search ends the old rows stay. A reload of the same group keeps every row that stays, so that selection,
// current font and scroll position survive it; several wishes to reload cost one search. Main thread.
class KrvFontsViewModelPrivate : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit KrvFontsViewModelPrivate(QObject* parent = nullptr);
    ~KrvFontsViewModelPrivate() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

    void setFontGroup(const FontGroupPtr& fontGroup);
    FontGroupPtr fontGroup() const { return m_group; }
    // Not owned; null: no filter.
    void setFiltersState(FontFiltersState* state);
    // Searches again with the filters as they are now.
    void updateCriteria();

    void setPreviewText(const QString& text);
    QString previewText() const { return m_previewText; }
    void setPreviewSize(int size);
    int previewSize() const { return m_previewSize; }
    // Previews that wait for other rows are dropped.
    void setRowsInView(const QVector<int>& rows);

    StaticFontPtr font(int row) const { return m_fonts.value(row); }
    int rowOfFont(int fontId) const { return m_rowOfFont.value(fontId, -1); }
    bool isFiltering() const { return !m_command.isNull(); }

    // Whether one row comes before another by a column's values.
    bool lessByColumn(int column, int left, int right) const;

signals:
    void filteringStatusChanged(bool filtering);
    // Around every change of the rows: which fonts will be there, and whether they are still those of the same group.
    void rowsAboutToChange(const QSet<int>& fontIds, bool sameGroup);
    void rowsChanged();

private slots:
    FindMathingFontsCommandPtr reloadFonts(FontGroupPtr fontGroup);
    void onFontsAdded(QList<int> fontIdList);
    void onFontsRemoved(QList<int> fontIdList);
    void onFontsChanged(QList<int> fontIdList);
    void onFindMathchingFontsStateChanged(AbstractAsynchronousCommand::State state);
    void onRenderCommandStatusChanged(QString commandId);

private:
    void scheduleReload();
    void dropCommand();
    void replaceRows(const QList<StaticFontPtr>& fonts, const FontGroupPtr& group);
    void showFonts(const QList<StaticFontPtr>& fonts, const QSet<int>& wanted);
    void resetTo(const QList<StaticFontPtr>& fonts);
    void indexRows();
    void announceChanged(const QList<int>& fontIds, int firstColumn, int lastColumn);
    QVariant preview(int row) const;
    QVariant previewColumnData(int row, int role) const;
    QVariant activityData(int row, int role) const;

    FontGroupPtr m_group;
    FontGroupPtr m_shownGroup; // the group that the rows belong to; it lags behind while a search runs
    FontFiltersState* m_filters = nullptr;
    FindMathingFontsCommandPtr m_command;
    QTimer m_reloadTimer;
    QVector<StaticFontPtr> m_fonts;
    QHash<int, int> m_rowOfFont;
    QString m_previewText;
    int m_previewSize = 24;
    QVector<QImage> m_activityImages;
    mutable FontPreviewStore m_previews; // asking for a preview orders it
    mutable FontSortKeys m_sortKeys;
};
