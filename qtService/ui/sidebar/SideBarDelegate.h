#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

// Paints the side bar's rows: headers as small captions, groups with icon, name and a badge with their number of fonts.
class SideBarDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit SideBarDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // The group that dragged fonts would go to; invalid: none. The view repaints.
    void setDropTarget(const QModelIndex& index) { m_dropTarget = index; }
    QModelIndex dropTarget() const { return m_dropTarget; }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintHeader(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintGroup(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;

    QPersistentModelIndex m_dropTarget;
};
