#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

struct _FcConfig;

namespace kerval::systemfm {

// fontconfig as every program on this machine sees it, asked through its library. Nothing here is the process-wide
// configuration of the library: what the window's own text is drawn with stays untouched.
//
// readAll() costs as much as a program's start. The other operations cost only the folders they name: they let
// fontconfig's own code judge a configuration made of the real rules and just these folders.
//
// Not synchronised: the strategy serialises its calls.
class FontconfigDatabase
{
public:
    struct Contents
    {
        QHash<QString, bool> files; // every font file of the configured folders; true: programs get it
        QStringList folders;        // every folder that is read
        QStringList configuration;  // files and folders of the configuration
    };

    Contents readAll();
    // True when nothing that readAll() read has changed since; seconds are what fontconfig looks at.
    bool isCurrent();

    // Reads the configuration again when any of its files has changed. A file that is new shows by itself only in a
    // folder that was there: who makes one says so by forget().
    void refresh();
    void forget();
    // The configured folders, without their subfolders. Call refresh() first, as for everything below.
    QStringList roots() const { return m_roots; }
    QStringList configurationFiles() const;
    bool isConfigurationFile(const QString& path) const { return m_configuration.contains(path); }
    // True when fontconfig comes from a root through every subfolder down to the folder. Only the last levels are
    // looked at afresh.
    bool reaches(const QString& folder);

    // Makes fontconfig read the folders' fonts and store what it found, whether or not it thinks it knows them.
    void readAgain(const QStringList& folders);
    // The font files directly in the folder, hidden ones included.
    QStringList filesIn(const QString& folder);
    // The files directly in the folders that programs get.
    QSet<QString> accepted(const QStringList& folders);

    // The configuration files that are no well-formed XML.
    QStringList brokenFiles();
    // The file among the configuration whose rules hide the font file; empty when none does.
    QString hidingFile(const QString& path);

    // True when fontconfig reads the one file without complaint.
    static bool canRead(const QString& configurationFile);
    // The names of the files that hold the family which a generic name like "serif" resolves to.
    static QStringList filesOfGeneric(const QStringList& genericNames);

    struct ConfigDeleter
    {
        void operator()(_FcConfig* config) const;
    };
    using Config = std::unique_ptr<_FcConfig, ConfigDeleter>;
    // The whole configuration with all its fonts; never null.
    static Config loadWithFonts();

private:
    struct Rules
    {
        QDateTime modified;
        qint64 size = -1;
        QByteArray selections; // the file's <selectfont> elements
        bool wellFormed = true;
    };

    const Rules& rulesOf(const QString& file);
    QByteArray frame(const QByteArray& selections, const QStringList& folders) const;
    QSet<QString> acceptedUnder(const QByteArray& selections, const QStringList& folders) const;
    bool listsSubfolder(const QString& folder, const QString& subfolder);

    Config m_config; // parsed, without fonts
    Config m_whole;  // as of the last readAll()
    QStringList m_roots;
    QStringList m_cacheFolders;
    QSet<QString> m_configuration;
    QHash<QString, QPair<QDateTime, qint64>> m_stamps;
    QHash<QString, Rules> m_rules;
    QByteArray m_selections;
};

} // namespace kerval::systemfm
