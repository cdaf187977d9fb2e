#pragma once

#include <QStyledItemDelegate>

// Paints the preview column: the item as the style draws it, then the preview image, clipped to the cell.
class KrvPreviewDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit KrvPreviewDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
