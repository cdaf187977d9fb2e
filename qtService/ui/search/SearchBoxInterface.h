#pragma once

#include <QLineEdit>

class QMenu;

// A line to search with: says what to search for once the user has paused typing.
class SearchBoxInterface : public QLineEdit
{
    Q_OBJECT

public:
    explicit SearchBoxInterface(QWidget* parent = nullptr);

    virtual QString searchTerm() const = 0;
    // Options of the search; not owned.
    virtual void setSearchOptionsMenu(QMenu* menu) = 0;

public slots:
    virtual void setSearchTerm(QString searchTerm) = 0;
    // Empties the line; QLineEdit's own slot of this name is not virtual.
    virtual void clear() = 0;

signals:
    void searchTermChanged(QString searchTerm);
};
