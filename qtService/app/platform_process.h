#pragma once

#include <QString>

#include <functional>

// What the program needs to know of processes on this platform.
namespace krv::platform {

// Full path of the running executable, links resolved, however it was started.
QString executablePath();

// Keeps every descriptor but the three standard ones from programs started after this call.
void keepDescriptorsFromChildren();

// Calls `ended` from a thread of its own when the process ends (at once when it is gone); never calls after
// destruction.
class ProcessEndWatch
{
public:
    ProcessEndWatch(qint64 processId, std::function<void()> ended);
    ~ProcessEndWatch();
    ProcessEndWatch(const ProcessEndWatch&) = delete;
    ProcessEndWatch& operator=(const ProcessEndWatch&) = delete;

private:
    struct Private;
    Private* m_private;
};

// Folder of the file through which launcher and service meet; without a trailing slash.
QString rendezvousFolder();

// Chooses where windows go before the application object exists: without a display the service runs all the same, on a
// platform that draws nowhere. Returns what to say about it in the log, or an empty text.
QString prepareDisplay();

} // namespace krv::platform
