#pragma once

#include <QStyledItemDelegate>

// Paints the activity column: the item as the style draws it, then the image in its middle. The base class would make
// an icon of the image for every row at every paint, which fills the program's pixmap cache, and would tint it where
// the row is selected.
class FontActivityDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit FontActivityDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};
