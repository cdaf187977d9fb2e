#pragma once

#include <QDialog>

class FontGroupList;
class QDialogButtonBox;
class QListWidget;

// Lets the user tick groups of a list; OK is enabled while at least one is ticked.
class GroupSelectionDialog : public QDialog
{
    Q_OBJECT

public:
    GroupSelectionDialog(const QString& title, const FontGroupList& groups, QWidget* parent = nullptr);

    // Ticked ids in list order.
    QList<int> selectedGroupIds() const;

    // Empty when the user cancelled.
    static QList<int> selectGroups(const QString& title, const FontGroupList& groups, QWidget* parent);

private slots:
    void updateOkButtonState();

private:
    QListWidget* m_list;
    QDialogButtonBox* m_buttons;
};
