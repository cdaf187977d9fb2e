#include "qtService/management/SimilarFontsGroup.h"

#include "qtService/management/FindSimilarFontsCommand.h"

SimilarFontsGroup::SimilarFontsGroup(const QSharedPointer<FontCollectionInterface>& source,
                                     KrvSimilarityWrapper* similarity, int fontId, int resultLimit,
                                     const QList<int>& fontIdList, SimilarityMethod method)
    : FontGroup(source, QStringLiteral("some name"), Start::Empty)
    , m_similarity(similarity)
    , m_fontId(fontId)
    , m_characters(charactersForMethod(method))
    , m_limit(resultLimit)
    , m_inIds(fontIdList)
    , m_method(method)
{
}

SimilarFontsGroup::~SimilarFontsGroup() = default;

QString SimilarFontsGroup::charactersForMethod(SimilarityMethod method)
{
    switch (method) {
    case HarmonySameFamily:
    case HarmonyContrast:
    case HarmonyBody:
    case HarmonyHeadline:
        return QStringLiteral("QhltGMJKaWf");
    default:
        return QStringLiteral("htlaf");
    }
}

QList<StaticFontPtr> SimilarFontsGroup::fonts() const
{
    fontIdList();
    return FontGroup::fonts();
}

QSharedPointer<FindSimilarFontsCommand>
SimilarFontsGroup::createSearch(const QSharedPointer<MatchingCriteria>& criteria, bool idsOnly) const
{
    return QSharedPointer<FindSimilarFontsCommand>::create(source(), m_similarity, m_fontId, m_characters, m_limit,
                                                           m_inIds, m_method, criteria, idsOnly);
}

QSharedPointer<FindMathingFontsCommand>
SimilarFontsGroup::createFindMathingFontsCommand(const QSharedPointer<MatchingCriteria>& criteria, bool idsOnly) const
{
    if (m_loaded)
        return FontGroup::createFindMathingFontsCommand(criteria, idsOnly);
    const auto search = createSearch(criteria, idsOnly);
    // A search that further criteria narrow does not tell the members.
    if (!criteria || criteria->isEmpty()) {
        const QWeakPointer<FindSimilarFontsCommand> weak = search;
        auto* self = const_cast<SimilarFontsGroup*>(this);
        connect(search.data(), &FindSimilarFontsCommand::stateChanged, self,
                [self, weak, idsOnly](AbstractAsynchronousCommand::State state) {
                    const auto finished = weak.toStrongRef();
                    if (state != AbstractAsynchronousCommand::Finished || !finished)
                        return;
                    QList<int> ids = finished->fontIds();
                    if (!idsOnly)
                        for (const StaticFontPtr& font : finished->fonts())
                            ids.append(font->id());
                    self->load(ids);
                });
    }
    return search;
}

QList<int> SimilarFontsGroup::fontIdList() const
{
    if (m_loaded)
        return FontGroup::fontIdList();
    const auto search = createSearch(MatchingCriteria::allOf(), true);
    search->start();
    search->waitForFinished();
    // A search that failed is tried again the next time.
    if (search->state() == AbstractAsynchronousCommand::Finished)
        const_cast<SimilarFontsGroup*>(this)->load(search->fontIds());
    return search->fontIds();
}

void SimilarFontsGroup::load(const QList<int>& fontIds)
{
    setMembers(fontIds);
    m_loaded = true;
}

void SimilarFontsGroup::onFontsAddedToSource(const QList<int>&) {}

void SimilarFontsGroup::onSourceFontsChanged(const QList<int>&) {}
