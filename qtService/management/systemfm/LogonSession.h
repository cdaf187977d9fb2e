#pragma once

#include <QByteArray>
#include <QString>

namespace kerval::systemfm {

// The user's logon session: a folder that ends with it and a random id kept there.
//
// The folder lies in $XDG_RUNTIME_DIR, which the system removes at the end of the session. Where there is none, it is a
// folder of ours under the temporary folder: mode 0700, owned by this user, and emptied when the machine was started
// anew since.
class LogonSession
{
public:
    // Not valid when neither folder can be had.
    static LogonSession current();
    static LogonSession open(const QString& runtimeFolder, const QString& temporaryFolder, const QByteArray& bootId);

    bool isValid() const { return !m_id.isEmpty(); }
    QString folder() const { return m_folder; }
    // 16 bytes.
    QByteArray id() const { return m_id; }

private:
    bool useFolder(const QString& folder);

    QString m_folder;
    QByteArray m_id;
};

} // namespace kerval::systemfm
