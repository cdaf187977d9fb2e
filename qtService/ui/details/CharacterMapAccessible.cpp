#include "qtService/ui/details/CharacterMapAccessible.h"

#include "qtService/ui/details/CharacterMapWidget.h"

#include <QPointer>

namespace {

// One row of the map's model, whatever character that is at the moment.
class CellAccessible : public QAccessibleInterface
{
public:
    CellAccessible(CharacterMapWidget* map, int row)
        : m_map(map)
        , m_row(row)
    {
    }

    int row() const { return m_row; }

    bool isValid() const override { return index().isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_map ? m_map->window()->windowHandle() : nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_map); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text text) const override
    {
        return text == QAccessible::Name ? index().data(Qt::AccessibleTextRole).toString() : QString();
    }

    QRect rect() const override
    {
        if (!isValid())
            return QRect();
        const QRect cell = m_map->visualRect(index());
        return QRect(m_map->viewport()->mapToGlobal(cell.topLeft()), cell.size());
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.selectable = true;
        state.multiSelectable = true;
        state.focusable = true;
        state.selected = m_map->selectionModel()->isSelected(index());
        state.focused = m_map->hasFocus() && m_map->currentIndex() == index();
        state.offscreen = !m_map->viewport()->rect().intersects(m_map->visualRect(index()));
        return state;
    }

private:
    QModelIndex index() const { return m_map && m_map->model() ? m_map->model()->index(m_row, 0) : QModelIndex(); }

    QPointer<CharacterMapWidget> m_map;
    int m_row;
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object)
{
    auto* map = className == QLatin1String("CharacterMapWidget") ? qobject_cast<CharacterMapWidget*>(object) : nullptr;
    return map ? new CharacterMapAccessible(map) : nullptr;
}

} // namespace

CharacterMapAccessible::CharacterMapAccessible(CharacterMapWidget* map)
    : QAccessibleWidget(map, QAccessible::List)
{
}

CharacterMapAccessible::~CharacterMapAccessible()
{
    for (const QAccessible::Id id : qAsConst(m_cells))
        QAccessible::deleteAccessibleInterface(id);
}

void CharacterMapAccessible::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed)
}

CharacterMapWidget* CharacterMapAccessible::map() const
{
    return static_cast<CharacterMapWidget*>(object());
}

int CharacterMapAccessible::childCount() const
{
    return map() && map()->model() ? map()->model()->rowCount() : 0;
}

QAccessibleInterface* CharacterMapAccessible::child(int row) const
{
    if (row < 0 || row >= childCount())
        return nullptr;
    const auto known = m_cells.constFind(row);
    if (known != m_cells.cend())
        return QAccessible::accessibleInterface(*known);
    auto* cell = new CellAccessible(map(), row);
    m_cells.insert(row, QAccessible::registerAccessibleInterface(cell));
    return cell;
}

QAccessibleInterface* CharacterMapAccessible::childAt(int x, int y) const
{
    return map() ? child(map()->indexAt(map()->viewport()->mapFromGlobal(QPoint(x, y))).row()) : nullptr;
}

int CharacterMapAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* cell = dynamic_cast<const CellAccessible*>(child);
    return cell ? cell->row() : -1;
}

QAccessibleInterface* CharacterMapAccessible::focusChild() const
{
    return map() && map()->hasFocus() ? child(map()->currentIndex().row()) : nullptr;
}
