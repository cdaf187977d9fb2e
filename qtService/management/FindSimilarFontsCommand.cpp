#include "qtService/management/FindSimilarFontsCommand.h"

#include "qtService/database/FontCollectionInterface.h"

#include <algorithm>

FindSimilarFontsCommand::FindSimilarFontsCommand(QSharedPointer<FontCollectionInterface> group,
                                                 KrvSimilarityWrapper* similarity, int fontId,
                                                 const QString& characters, int limit, const QList<int>& inIds,
                                                 SimilarFontsGroup::SimilarityMethod method,
                                                 const MatchingCriteriaPtr& criteria, bool idsOnly)
    : FindMathingFontsCommand(criteria, idsOnly)
    , m_group(std::move(group))
    , m_similarity(*similarity)
    , m_fontId(fontId)
    , m_characters(characters)
    , m_limit(limit)
    , m_inIds(inIds)
    , m_method(method)
{
    connect(&m_similarity, &KrvSimilarityWrapper::similarityDone, this, &FindSimilarFontsCommand::onSimilarityDone);
}

FindSimilarFontsCommand::~FindSimilarFontsCommand() = default;

QHash<int, double> FindSimilarFontsCommand::deviances() const
{
    QReadLocker locker(&m_lock);
    return m_deviances;
}

void FindSimilarFontsCommand::start()
{
    (*this)();
    if (state() != Running)
        return;
    QStringList ids;
    ids.reserve(m_inIds.size());
    for (const int id : m_inIds)
        ids.append(QString::number(id));
    request(ids.join(QLatin1Char(',')));
}

void FindSimilarFontsCommand::operator()()
{
    if (state() != Cancelled)
        setState(Running);
}

void FindSimilarFontsCommand::request(const QString& inIds)
{
    // The program knows the whole catalogue; fonts that this collection does not hold must not use up the limit.
    const int strangers = inIds.isEmpty() ? qMax(0, m_similarity.catalogueSize() - m_group->fontCount()) : 0;
    const int limit = m_limit + strangers;
    const QVariant criteria = QVariant::fromValue(this->criteria());
    switch (m_method) {
    case SimilarFontsGroup::Similar:
        m_similarity.requestSimilar(m_fontId, m_characters, limit, inIds, criteria);
        return;
    case SimilarFontsGroup::HarmonySameFamily:
        m_similarity.requestHarmonySameFamily(m_fontId, m_characters, limit, inIds, criteria);
        return;
    case SimilarFontsGroup::HarmonyContrast:
        m_similarity.requestHarmonyContrast(m_fontId, m_characters, limit, inIds, criteria);
        return;
    case SimilarFontsGroup::HarmonyBody:
        m_similarity.requestHarmonyBody(m_fontId, m_characters, limit, inIds, criteria);
        return;
    case SimilarFontsGroup::HarmonyHeadline:
        m_similarity.requestHarmonyHeadline(m_fontId, m_characters, limit, inIds, criteria);
        return;
    case SimilarFontsGroup::SmartChoiceAll:
        m_similarity.requestSmartChoiceAll(m_fontId, m_characters, limit, inIds, criteria);
        return;
    case SimilarFontsGroup::SmartChoiceBody:
        m_similarity.requestSmartChoiceBody(m_fontId, m_characters, limit, inIds, criteria);
        return;
    case SimilarFontsGroup::SmartChoiceHeadline:
        m_similarity.requestSmartChoiceHeadline(m_fontId, m_characters, limit, inIds, criteria);
        return;
    }
    end(Failed);
}

void FindSimilarFontsCommand::cancel()
{
    FindMathingFontsCommand::cancel();
    QSharedPointer<FindMathingFontsCommand> child;
    {
        QReadLocker locker(&m_lock);
        child = m_childCommand;
    }
    if (child)
        child->cancel();
    m_loop.quit();
}

void FindSimilarFontsCommand::waitForFinished()
{
    if (!hasEnded())
        m_loop.exec();
}

bool FindSimilarFontsCommand::hasEnded() const
{
    return state() != Running;
}

void FindSimilarFontsCommand::end(State state)
{
    setState(state);
    m_loop.quit();
}

void FindSimilarFontsCommand::onSimilarityDone(KrvSimilarityWrapper::Request, KrvSimilarityWrapper::Result result,
                                               int error)
{
    if (state() == Cancelled)
        return;
    if (error != KrvSimilarityWrapper::Success) {
        end(Failed);
        return;
    }

    QList<int> ids;
    {
        QHash<int, double> deviances;
        for (const QPair<int, double>& match : qAsConst(result.matches)) {
            deviances.insert(match.first, match.second);
            if (ids.size() < m_limit && m_group->containsFont(match.first))
                ids.append(match.first);
        }
        QWriteLocker locker(&m_lock);
        m_deviances = deviances;
    }
    const MatchingCriteriaPtr asked = criteria();
    if (!asked || asked->isEmpty()) {
        setMatches(ids);
        end(Finished);
        return;
    }
    const auto child =
        m_group->createFindMathingFontsCommand(MatchingCriteria::allOf({asked, MatchingCriteria::idIn(ids)}), true);
    {
        QWriteLocker locker(&m_lock);
        m_childCommand = child;
    }
    connect(child.data(), &FindMathingFontsCommand::stateChanged, this,
            &FindSimilarFontsCommand::onChildCommandStateChanged);
    child->start();
}

void FindSimilarFontsCommand::onChildCommandStateChanged(AbstractAsynchronousCommand::State state)
{
    if (state < Finished)
        return;
    if (state == Finished) {
        QList<int> ids = m_childCommand->fontIds();
        const QHash<int, double> deviances = this->deviances();
        std::stable_sort(ids.begin(), ids.end(),
                         [&](int left, int right) { return deviances.value(left) < deviances.value(right); });
        setMatches(ids);
    }
    end(state);
}

void FindSimilarFontsCommand::setMatches(const QList<int>& ids)
{
    if (idsOnly()) {
        setFontIds(ids);
        return;
    }
    QList<StaticFontPtr> fonts;
    fonts.reserve(ids.size());
    for (const int id : ids)
        if (const StaticFontPtr font = m_group->font(id))
            fonts.append(font);
    setFonts(fonts);
}
