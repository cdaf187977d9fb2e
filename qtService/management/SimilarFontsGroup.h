#pragma once

#include "qtService/app/core/AbstractAsynchronousCommand.h"
#include "qtService/management/FontGroup.h"

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
    SimilarFontsGroup(QSharedPointer<FontCollectionInterface> source, KrvSimilarityWrapper* similarity, int fontId,
                      int resultLimit, const QList<int>& fontIdList, SimilarityMethod method);
    ~SimilarFontsGroup() override;

    QSharedPointer<FindMathingFontsCommand> createFindMathingFontsCommand(QSharedPointer<MatchingCriteria> criteria,
                                                                          bool idsOnly) override;
    QList<int> fontIdList() override;

    // The characters whose shapes a method compares.
    static QString charactersForMethod(SimilarityMethod method);

protected slots:
    void onFontsAddedToSource(QList<int> fontIdList) override;
    void onSourceFontsChanged(QList<int> fontIdList) override;

private slots:
    void onCommandStateChanged(AbstractAsynchronousCommand::State state);
};

using SimilarFontsGroupPtr = QSharedPointer<SimilarFontsGroup>;
