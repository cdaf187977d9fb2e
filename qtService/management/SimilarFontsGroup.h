#pragma once

#include "qtService/management/FontGroup.h"

#include <atomic>

class FindSimilarFontsCommand;
class KrvSimilarityWrapper;

// The fonts that a similarity search finds, best first. The search runs when the members are first asked for; until
// then the group is empty. Later additions and changes of the source do not touch it, removals do.
class SimilarFontsGroup : public FontGroup
{
    Q_OBJECT

public:
    enum SimilarityMethod
    {
        Similar = 1,
        HarmonySameFamily = 2,
        HarmonyContrast = 3,
        HarmonyBody = 4,
        HarmonyHeadline = 5,
        SmartChoiceAll = 6,
        SmartChoiceBody = 7,
        SmartChoiceHeadline = 8
    };
    Q_ENUM(SimilarityMethod)

    // The wrapper outlives the group; fontIdList restricts the search when it is not empty.
    SimilarFontsGroup(const QSharedPointer<FontCollectionInterface>& source, KrvSimilarityWrapper* similarity,
                      int fontId, int resultLimit, const QList<int>& fontIdList, SimilarityMethod method);
    ~SimilarFontsGroup() override;

    QList<StaticFontPtr> fonts() const override;
    // Until the members are known a command of this group searches for similar fonts and lives on the calling thread.
    QSharedPointer<FindMathingFontsCommand>
    createFindMathingFontsCommand(const QSharedPointer<MatchingCriteria>& criteria, bool idsOnly) const override;
    // Runs the search when it has not been run, processing the calling thread's events meanwhile.
    QList<int> fontIdList() const override;

    // The characters whose shapes a method compares.
    static QString charactersForMethod(SimilarityMethod method);

protected slots:
    void onFontsAddedToSource(const QList<int>& fontIdList) override;
    void onSourceFontsChanged(const QList<int>& fontIdList) override;

private:
    QSharedPointer<FindSimilarFontsCommand> createSearch(const QSharedPointer<MatchingCriteria>& criteria,
                                                         bool idsOnly) const;
    void load(const QList<int>& fontIds);

    KrvSimilarityWrapper* const m_similarity;
    const int m_fontId;
    const QString m_characters;
    const int m_limit;
    const QList<int> m_inIds;
    const SimilarityMethod m_method;
    std::atomic<bool> m_loaded{false};
};

using SimilarFontsGroupPtr = QSharedPointer<SimilarFontsGroup>;
