#pragma once

#include "qtService/app/core/KrvSingletonObject.h"

#include <QHash>
#include <QMessageBox>
#include <QObject>

class QCheckBox;

// Short notices to the user. The predefined ones can be switched off by the user, one by one, in "messages.ini".
// Main thread.
class KrvMessage : public QObject, public KrvSingletonObject<KrvMessage>
{
    Q_OBJECT

public:
    enum PredefinedMessage
    {
        UnknownMessage = 0,
        FontsAlreadyProcessed = 1,
        FontsProcessed = 2
    };

    explicit KrvMessage(QObject* parent);

    // An empty title becomes the program's name and version. A modal box blocks the caller.
    void info(const QString& text, const QString& title = QString(), const QString& detail = QString(),
              bool modal = false);
    void warning(const QString& text, const QString& title = QString(), bool modal = false);
    // Always modal; the button that was pressed.
    QMessageBox::StandardButton question(const QString& text, const QString& title,
                                         QMessageBox::StandardButtons buttons);
    // Not shown when the user has switched the message off, unless forced.
    void showPredefined(int messageId, bool withCheckBox, bool force, const QString& title = QString());

    static QList<int> predefinedMessages();
    static QString predefinedText(int messageId);
    static bool isShown(int messageId);
    static void setShown(int messageId, bool shown);

private slots:
    void onMsgDlgFinished(int);

private:
    struct OpenBox
    {
        QCheckBox* dontShowAnymore = nullptr;
        int messageId = UnknownMessage;
    };

    QMessageBox* createBox(QMessageBox::Icon icon, const QString& text, const QString& title);
    void showBox(QMessageBox* box, bool modal);

    QHash<QObject*, OpenBox> m_openBoxes;
};
