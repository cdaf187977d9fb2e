#pragma once

#include <QAccessibleWidget>
#include <QHash>

class CharacterMapWidget;

// What a screen reader sees of the character map: a list whose items are the characters. Items are made when they are
// asked for, so a large font costs nothing.
class CharacterMapAccessible : public QAccessibleWidget
{
public:
    explicit CharacterMapAccessible(CharacterMapWidget* map);
    ~CharacterMapAccessible() override;

    // Lets Qt find this class; to be called before the first map is asked about.
    static void install();

    int childCount() const override;
    QAccessibleInterface* child(int row) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* focusChild() const override;

private:
    CharacterMapWidget* map() const;

    mutable QHash<int, QAccessible::Id> m_cells;
};
