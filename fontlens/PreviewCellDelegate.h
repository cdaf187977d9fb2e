#pragma once

#include <QStyledItemDelegate>

// Draws the preview of a result; that of the selected one in the colour of selected text.
class PreviewCellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
