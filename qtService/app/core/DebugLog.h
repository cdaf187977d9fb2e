#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// The handler of the framework's message channel. Messages carry a prefix: a level letter (M message, W warning,
// E error), "_", a verbosity digit, "_" and a blank ("M_1_ text"); "U_ " marks lines the user sees in the service's log
// window. Lines are echoed to standard error when asked for; no log file is ever written, so the verbosity digit only
// tells readers of the code how chatty a line is. Any thread may log.
namespace krv::debuglog {

struct UserLine
{
    QDateTime time;
    QString text;
};

void setTimestamps(bool on);
void setEchoToStandardError(bool echo);

// Installs the handler and writes the first line.
void initialize();

// The "U_ " lines so far, oldest first; bounded, the oldest go.
QList<UserLine> userLines();

// The line that is echoed for a message: its prefix stripped, a time stamp before it when asked for.
QString formattedLine(const QString& message, const QDateTime& now, bool timestamps);

} // namespace krv::debuglog
