#pragma once

#include "qtService/management/systemfm/FontManagerStrategyInterface.h"
#include "qtService/management/systemfm/FontPlaces.h"
#include "qtService/management/systemfm/FontconfigDatabase.h"
#include "qtService/management/systemfm/FontconfigRules.h"
#include "qtService/management/systemfm/LogonSession.h"
#include "qtService/management/systemfm/PlacedFonts.h"
#include "qtService/management/systemfm/SessionFonts.h"

#include <QHash>
#include <QMutex>
#include <QReadWriteLock>
#include <QSet>
#include <QThread>
#include <QVector>

namespace kerval::systemfm {

class FolderWatch;

// Fonts where fontconfig is the registry: what lies in one of its folders, and no rule hides, every program gets.
//
// A font that fontconfig does not find by itself is switched on by a file of ours in the user's font folder
// (PlacedFonts) or, for the session, by a link (SessionFonts). One that it finds is switched off by a rule of ours
// (FontconfigRules); temporarily active, it has the rule and the link, and so is off in the next session.
//
// Changes are carried out in an order that leaves, at any moment, a state from which the next start recovers: what is
// to be ours is noted, made, checked; rules are renamed into place; files are removed; then what is gone is forgotten.
// When both a file and a link of one font are found, or a link beside a font that programs get anyway, the permanent
// one counts.
//
// After every change fontconfig is asked whether it now answers as wished, by its own code; if not, the change is
// undone and refused. Costs follow the folders that are touched, never the number of active fonts.
//
// Folders and configuration are watched on a thread of the strategy's own, which reads everything again after changes,
// its own ones included, and announces when the set of active fonts differs from the one announced last.
class FontManagerStrategyFontconfig : public FontManagerStrategyInterface
{
    Q_OBJECT

public:
    FontManagerStrategyFontconfig();
    FontManagerStrategyFontconfig(const FontPlaces& places, const LogonSession& session);
    ~FontManagerStrategyFontconfig() override;

    QList<SystemFontDescriptor> activeFonts() override;
    QStringList installedFontFiles() override;
    QHash<QString, int> activatePermanently(const QString& fileName, const QStringList& fontNames) override;
    QHash<QString, int> activateTemporarily(const QString& fileName, const QStringList& fontNames) override;
    QHash<QString, int> deactivate(const QString& fileName, const QStringList& fontNames) override;
    bool hasNativeConflictCheck() override;
    void notifyFontChange() override;
    void beginBatch() override;
    QHash<QString, int> endBatch() override;
    QString fontsFolder() override;
    QStringList protectedFontFiles() override;
    FontActivityReason activityReason(const QString& fileName) override;

private slots:
    void rereadIfChanged();
    void reread();
    void touchForLateReaders();

private:
    // One file and what is to become of it.
    struct Change
    {
        QString fileName;
        ActivityType activityType = Inactive;
        QString outline;      // empty: the file is gone
        QStringList listed;   // the paths under which fontconfig finds it by itself
        QStringList rejected; // those of them that had a rule of ours
        bool made = false;    // a file or link was made for it
        bool failed = false;
    };

    QHash<QString, int> request(const QString& fileName, ActivityType activityType, const QStringList& fontNames);
    QHash<QString, int> carryOut(const QHash<QString, ActivityType>& requests);
    Change planFor(const QString& fileName, ActivityType activityType);
    bool isSettled(const Change& change) const;
    void lookIntoFolder(const QString& folder);
    void makeFiles(QVector<Change>& changes);
    void writeRules(QVector<Change>& changes);
    void confirm(QVector<Change>& changes);
    bool isAsWished(const Change& change, const QSet<QString>& accepted) const;
    void undo(QVector<Change>& changes);
    void dropFiles(const QVector<Change>& changes);
    void readTouched();
    void publish(const QVector<Change>& changes);

    // A file that fontconfig finds by itself.
    struct Found
    {
        QString name; // of the font it leads to
        bool accepted = false;
        bool supported = false;
    };
    // What callers are told.
    struct View
    {
        QHash<QString, Found> files;             // by fontconfig's path
        QMultiHash<QString, QString> otherPaths; // font -> paths it is found under that are not its own
        QHash<QString, bool> placed;             // fonts with a file of ours; true: programs get it
        QHash<QString, bool> session;            // fonts with a link of ours; true: programs get it

        QStringList pathsOf(const QString& fileName) const;
        bool isFound(const QString& fileName) const;
        void addFile(const QString& path, const QString& name, bool accepted);
        QList<SystemFontDescriptor> active() const;
    };

    void start();
    bool readAndPublish();
    void tidy(const View& view, const QStringList& placedGone);
    void watchFolders(const FontconfigDatabase::Contents& contents);
    void storeTemporary();

    QMutex m_operation; // held by whoever changes the system; guards everything up to the next lock
    const FontPlaces m_places;
    const LogonSession m_session;
    FontconfigDatabase m_database;
    FontconfigRules m_rules;
    PlacedFonts m_placed;
    SessionFonts m_sessionFonts;
    QSet<QString> m_folders; // that fontconfig reads
    int m_changes = 0;       // counts batches that changed something

    QMutex m_batchLock; // guards the two below
    Qt::HANDLE m_batchThread = nullptr;
    QHash<QString, ActivityType> m_batch;

    // Changed in place, so that one switch does not copy fifty thousand entries.
    QReadWriteLock m_viewLock;
    View m_view;

    // Of the thread that reads everything: this one at first, then m_thread. Reading takes no lock, so that a switch
    // does not wait for it.
    FontconfigDatabase m_reader;
    QHash<SystemFontDescriptor, ActivityType> m_announced;

    QThread m_thread;
    FolderWatch* m_watch = nullptr; // lives in m_thread
};

} // namespace kerval::systemfm
