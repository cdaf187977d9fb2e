#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace kerval::systemfm {

// Our one fontconfig file: the fonts that are switched off although fontconfig finds them, each by its path.
//
// A rule is a glob where the path has no "*" and "?": it then hits that path alone, while fontconfig compares the file
// names of patterns without regard to case and blanks. Paths with these characters take a pattern.
//
// The file is written whole beside the old one, read by fontconfig's own reader, then renamed. It carries a checksum:
// one that somebody has edited or broken is kept beside it before it is replaced.
//
// Not synchronised: the strategy serialises its changes.
class FontconfigRules
{
public:
    // recoveryFile keeps a second copy of the paths, for the time when the rules cannot be read any more.
    FontconfigRules(const QString& rulesFile, const QString& recoveryFile);

    void load();
    bool save();

    QString fileName() const { return m_rulesFile; }
    const QSet<QString>& rejected() const { return m_rejected; }
    void setRejected(const QSet<QString>& rejected) { m_rejected = rejected; }
    void reject(const QString& path) { m_rejected.insert(path); }
    void accept(const QString& path) { m_rejected.remove(path); }
    // XML knows no way to write most control characters.
    static bool canName(const QString& path);

    // A folder that fontconfig shall read although its configuration does not name it.
    QString extraFolder() const { return m_extraFolder; }
    void setExtraFolder(const QString& folder) { m_extraFolder = folder; }

    // True when what is stored on disk is what save() wrote last.
    bool isStored() const;

private:
    QByteArray content() const;
    bool parse(const QByteArray& content);
    bool keepForeign(const QByteArray& content);
    void readRecovery();
    bool writeRecovery() const;

    QString m_rulesFile;
    QString m_recoveryFile;
    QSet<QString> m_rejected;
    QString m_extraFolder;
    QByteArray m_stored;
};

} // namespace kerval::systemfm
