#pragma once

#include <QObject>

#include <memory>

// Tells when the user's session ends: the session manager says so, or the system asks the process to go. Each platform
// has its own sources in its platform_ file. Main thread; needs the application object; one at a time.
class SessionEndWatch : public QObject
{
    Q_OBJECT

public:
    explicit SessionEndWatch(QObject* parent = nullptr);
    ~SessionEndWatch() override;

signals:
    // Emitted once for each sign of the end; the receiver stops the service cleanly.
    void sessionEnding();

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
