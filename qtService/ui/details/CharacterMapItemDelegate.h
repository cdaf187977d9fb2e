#pragma once

#include <QStyledItemDelegate>

// A cell of the character map: the code above the picture of the character, in a frame. The cell that has the keyboard
// carries a frame of double width.
class CharacterMapItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit CharacterMapItemDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // Everything but a picture that is not drawn yet.
    void paintKept(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintCell(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                   const QImage& image) const;
};
