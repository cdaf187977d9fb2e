#pragma once

#include "qtService/ui/search/SearchBoxInterface.h"

#include <QTimer>

class KrvToolButton;

// A rounded search line with a magnifier for its options at the left and a button that empties it at the right. Escape
// empties it too.
class KrvSearchBox2 : public SearchBoxInterface
{
    Q_OBJECT

public:
    // The pause in typing after which searchTermChanged() is emitted, in milliseconds.
    explicit KrvSearchBox2(int delayMs, QWidget* parent = nullptr);

    QString searchTerm() const override;
    void setSearchOptionsMenu(QMenu* menu) override;

public slots:
    void setSearchTerm(QString searchTerm) override;
    void clear() override;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void onButtonEntered();
    void onButtonLeft();
    void onSearchTermsChanged();
    void onSearchOptionsButtonClicked();

private:
    void placeButtons();

    KrvToolButton* m_clearButton;
    KrvToolButton* m_optionsButton;
    QMenu* m_menu = nullptr;
    QTimer m_timer;
};
