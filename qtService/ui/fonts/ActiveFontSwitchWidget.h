#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/management/FontActivityChangeCommand.h"

#include <QTimer>
#include <QWidget>

class FontManagementService;
class QLabel;
class QProgressIndicator;
class QPushButton;
class QStackedWidget;

// One button that switches a single font on or off, turns into a busy indicator meanwhile and then says for a moment
// what came of it. It follows changes of the font's activity by others. Main thread.
class ActiveFontSwitchWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ActiveFontSwitchWidget(const QSharedPointer<FontManagementService>& service, QWidget* parent = nullptr);

    // Null: no font, the button is disabled.
    void setFont(const StaticFontPtr& font);

private slots:
    void onActivateClicked();
    void onFontsChanged(const QList<int>& fontIdList);
    void onDeactivationStateChanged(AbstractAsynchronousCommand::State state);
    void onActivationStateChanged(AbstractAsynchronousCommand::State state);

private:
    void setupUi();
    void followLibrary();
    void showButton();
    void showResult(const QString& success);

    QSharedPointer<FontManagementService> m_service;
    StaticFontPtr m_font;
    QSharedPointer<FontActivityChangeCommand> m_command;
    QStackedWidget* m_pages;
    QPushButton* m_button;
    QProgressIndicator* m_waiting;
    QLabel* m_result;
    QTimer m_resultShown;
    bool m_hadFocus = false; // the button, when it was pressed
};
