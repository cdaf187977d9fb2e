#pragma once

#include "qtService/database/FindMathingFontsCommand.h"
#include "qtService/management/KrvSimilarityWrapper.h"
#include "qtService/management/SimilarFontsGroup.h"

#include <QEventLoop>
#include <QHash>

// One similarity search over a collection, narrowed by further criteria: the result is ordered by deviance, best first.
// Driven by the signals of a similarity wrapper of its own in the thread that makes the command, which has to process
// events; waitForFinished() does so. Fonts that left the collection meanwhile are not among the results.
class FindSimilarFontsCommand : public FindMathingFontsCommand
{
    Q_OBJECT

public:
    FindSimilarFontsCommand(QSharedPointer<FontCollectionInterface> group, KrvSimilarityWrapper* similarity, int fontId,
                            const QString& characters, int limit, const QList<int>& inIds,
                            SimilarFontsGroup::SimilarityMethod method, const MatchingCriteriaPtr& criteria,
                            bool idsOnly);
    ~FindSimilarFontsCommand() override;

    // Of the fonts that the search found, whether they are among the results or not.
    QHash<int, double> deviances() const;

    void start() override;
    void cancel() override;
    void waitForFinished() override;

protected:
    void operator()() override;

private slots:
    void onSimilarityDone(KrvSimilarityWrapper::Request req, KrvSimilarityWrapper::Result result, int error);
    void onChildCommandStateChanged(AbstractAsynchronousCommand::State state);

private:
    bool hasEnded() const;
    void end(State state);
    void request(const QString& inIds);
    // Stores the fonts in this order as what was asked for.
    void setMatches(const QList<int>& ids);

    const QSharedPointer<FontCollectionInterface> m_group;
    KrvSimilarityWrapper m_similarity;
    const int m_fontId;
    const QString m_characters;
    const int m_limit;
    const QList<int> m_inIds;
    const SimilarFontsGroup::SimilarityMethod m_method;
    QHash<int, double> m_deviances;
    QSharedPointer<FindMathingFontsCommand> m_childCommand;
    QEventLoop m_loop;
};
