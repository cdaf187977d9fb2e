#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/app/core/ErrorCode.h"
#include "qtService/database/StaticFont.h"
#include "qtService/management/systemfm/ActivityType.h"

#include <QHash>
#include <QList>
#include <QMultiHash>
#include <QSet>
#include <QSharedPointer>

class FontGroup;
class KrvFontRepository;

namespace kerval::systemfm {
class SystemFontManager;
}

struct ActivityChangeResult
{
    int fontId = 0;
    int error = fms::NotProcessed;
    int conflictingFontId = 0;
};

// Switches a batch of catalogued fonts on or off. A font is a face, the system knows files: a collection is switched as
// a whole as soon as one asked face of it may be, and the records of all its faces follow; results are kept for the
// asked ones.
//
// Two active files whose fonts share a PostScript name are a conflict, found before anything is changed. One refused
// font never stops the others, and the command ends Finished; callers read results(). Cancelled while it runs it keeps
// what it has changed, and the fonts it did not come to stay NotProcessed. The system is told once, at the end of the
// batch. Progress counts the asked fonts.
class FontActivityChangeCommand : public AbstractAsynchronousCommand
{
    Q_OBJECT

public:
    FontActivityChangeCommand(const QSharedPointer<KrvFontRepository>& repository,
                              const QSharedPointer<FontGroup>& systemFontsGroup, const QList<int>& fontIds,
                              kerval::systemfm::ActivityType activityType);
    // For tests: a manager of their own. It outlives the command.
    FontActivityChangeCommand(const QSharedPointer<KrvFontRepository>& repository,
                              const QSharedPointer<FontGroup>& systemFontsGroup, const QList<int>& fontIds,
                              kerval::systemfm::ActivityType activityType,
                              kerval::systemfm::SystemFontManager* manager);
    ~FontActivityChangeCommand() override;

    // By font id; complete once the command has finished.
    QHash<int, ActivityChangeResult> results() const;
    // The font that is being switched; null before the first and after the last.
    StaticFontPtr currentFont() const;

signals:
    void currentFontChanged();

protected:
    void operator()() override;

private:
    // One file of the batch: its asked fonts and every catalogued font of it.
    struct File
    {
        QString name;
        QList<StaticFontPtr> asked;
        QList<StaticFontPtr> all;
    };

    QList<File> collectFiles();
    QMultiHash<QString, StaticFontPtr> activeFontsNamedAlike(const QList<File>& files) const;
    QList<StaticFontPtr> withoutConflicts(const File& file, const QMultiHash<QString, StaticFontPtr>& active,
                                          QHash<QString, StaticFontPtr>& acceptedNames);
    bool refuseProtected(const File& file);
    int change(const QString& fileName, const QStringList& fontNames);
    QList<File> changeFiles(const QList<File>& files);
    void storeActivity(const QList<File>& changed);
    bool isStoppedByUser() const;
    void setResult(int fontId, int error, int conflictingFontId = 0);
    void setCurrentFont(const StaticFontPtr& font);

    QSharedPointer<KrvFontRepository> m_repository;
    QSharedPointer<FontGroup> m_systemFontsGroup;
    QList<int> m_fontIds;
    kerval::systemfm::ActivityType m_activityType;
    kerval::systemfm::SystemFontManager* m_manager;
    QHash<int, ActivityChangeResult> m_results;
    StaticFontPtr m_currentFont;
    bool m_startedCancelled = false; // the worker's alone
};

using FontActivityChangeCommandPtr = QSharedPointer<FontActivityChangeCommand>;
