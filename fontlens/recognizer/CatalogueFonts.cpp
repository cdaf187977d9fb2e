#include "fontlens/recognizer/CatalogueFonts.h"

#include "fontlens/recognizer/JobQueue.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/database/StaticFont.h"

#include <QHash>

#include <algorithm>

namespace kerval::recognizer {

namespace {

// Fonts come in from the adder every few seconds; measuring starts when they have stopped coming.
constexpr int settlingMs = 15 * 1000;

struct Copy
{
    letters::FontCandidate candidate;
    bool isActive = false;
};

bool sameCandidates(const QVector<letters::FontCandidate>& a, const QVector<letters::FontCandidate>& b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(), [](const auto& x, const auto& y) {
        return x.id == y.id && x.faceIndex == y.faceIndex && x.file == y.file;
    });
}

QVector<letters::FontCandidate> candidatesOf(const QList<StaticFontPtr>& fonts)
{
    QHash<QString, Copy> copies;
    copies.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts) {
        if (!font->fileExists() || font->isDeleted() || font->fileName().isEmpty())
            continue;
        const QString content = font->fileHash().isEmpty() ? font->fileName() : font->fileHash();
        const Copy copy{{font->id(), font->fileName(), font->faceIndex()}, font->activityType() > 0};
        Copy& kept = copies[content + QLatin1Char('#') + QString::number(copy.candidate.faceIndex)];
        const bool isBetter = copy.isActive == kept.isActive ? copy.candidate.id < kept.candidate.id : copy.isActive;
        if (kept.candidate.file.isEmpty() || isBetter)
            kept = copy;
    }
    QVector<letters::FontCandidate> candidates;
    candidates.reserve(copies.size());
    for (const Copy& copy : qAsConst(copies))
        candidates.append(copy.candidate);
    std::sort(candidates.begin(), candidates.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    return candidates;
}

} // namespace

CatalogueFonts::CatalogueFonts(const QSharedPointer<FontManagementService>& service, JobQueue* queue,
                               const QString& cacheFolder)
    : m_service(service)
    , m_queue(queue)
    , m_matcher(cacheFolder)
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(settlingMs);
    connect(&m_settled, &QTimer::timeout, this, [this] {
        m_refreshing = m_queue->add(
            [this](const JobQueue::Cancelled&) {
                refresh();
                return JobQueue::Done();
            },
            {});
    });
}

CatalogueFonts::~CatalogueFonts() = default;

bool CatalogueFonts::isOpen() const
{
    return m_service && m_service->isStarted() && m_service->repository();
}

StaticFontPtr CatalogueFonts::font(int id) const
{
    const auto repository = m_service ? m_service->repository() : QSharedPointer<KrvFontRepository>();
    return repository ? repository->font(id) : StaticFontPtr();
}

void CatalogueFonts::wake()
{
    const auto repository = m_service ? m_service->repository() : QSharedPointer<KrvFontRepository>();
    if (!repository || m_followed == repository.data())
        return;
    follow(repository);
    m_isStale = true;
    m_settled.start(0);
}

void CatalogueFonts::follow(const QSharedPointer<KrvFontRepository>& repository)
{
    if (m_followed)
        m_followed->disconnect(this);
    m_followed = repository.data();
    connect(m_followed, &FontCollectionInterface::fontsAdded, this, &CatalogueFonts::onCatalogueChanged);
    connect(m_followed, &FontCollectionInterface::fontsRemoved, this, &CatalogueFonts::onCatalogueChanged);
    connect(m_followed, &FontCollectionInterface::fontsChanged, this, &CatalogueFonts::onCatalogueChanged);
}

void CatalogueFonts::onCatalogueChanged()
{
    m_isStale = true;
    m_settled.start(settlingMs);
}

void CatalogueFonts::refresh()
{
    const auto repository = m_service ? m_service->repository() : QSharedPointer<KrvFontRepository>();
    QMutexLocker lock(&m_refreshMutex);
    // A change that comes now is seen by the next one.
    if (!repository || !m_isStale.exchange(false))
        return;
    const auto candidates = candidatesOf(repository->fonts());
    if (sameCandidates(candidates, m_candidates))
        return;
    m_candidates = candidates;
    m_matcher.setCandidates(candidates);
    m_matcher.prepare();
}

QVector<ProposedFont> CatalogueFonts::find(const QVector<letters::CutLetter>& letters, int limit,
                                           const std::atomic<bool>& cancelled)
{
    refresh();
    const auto matches = m_matcher.match(letters, limit, &cancelled);
    const auto repository = m_service ? m_service->repository() : QSharedPointer<KrvFontRepository>();
    QVector<ProposedFont> found;
    for (const letters::FontMatch& match : matches) {
        const StaticFontPtr font = repository ? repository->font(match.id) : StaticFontPtr();
        if (font)
            found.append({match.id, font->familyName(), font->styleName(), font->foundry(), match.deviance});
    }
    // Of designs that fit equally well (a family in two formats) the order is that of their names.
    std::stable_sort(found.begin(), found.end(), [](const ProposedFont& a, const ProposedFont& b) {
        if (a.deviance < b.deviance || b.deviance < a.deviance)
            return a.deviance < b.deviance;
        const int order = a.family.compare(b.family, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a.style.compare(b.style, Qt::CaseInsensitive) < 0;
    });
    return found;
}

} // namespace kerval::recognizer
