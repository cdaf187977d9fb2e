#include "fontlens/letters/LetterMatcher.h"

#include "fontlens/letters/AskedLetter.h"
#include "fontlens/letters/CandidateFace.h"
#include "fontlens/letters/LetterFit.h"
#include "fontlens/letters/LetterIndex.h"
#include "fontlens/letters/WorkSharing.h"

#include <QHash>
#include <QMutexLocker>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <array>
#include <cmath>

namespace kerval::letters {

namespace {

constexpr int drawnCandidates = 400; // of which the outlines are compared
constexpr int closeCandidates = 48;  // of which they are compared in more detail
constexpr int blurCandidates = 8;    // by which the picture's blur is found
constexpr double coarseHeight = 30;  // pixels that a typical letter is reduced to for the first comparison
constexpr double fineHeight = 80;    // and for the second
constexpr float sizeWeight = 2.5F;   // of squared differences of relative sizes against those of shapes
constexpr std::array<double, 6> blurs = {0, 0.5, 0.8, 1.2, 1.7, 2.4}; // pixels of the picture
// Degrees by which text may be crooked; the second pass turns as much as lies between them.
constexpr std::array<double, 4> turns = {-11, -6, 6, 11};
constexpr std::size_t turnedFrom = 3;     // letters: fewer may be upright, or italic, or both
constexpr std::size_t turnCandidates = 8; // by which it is found whether the text is crooked
constexpr float clearlyCloser = 0.85F;
constexpr double clearlyApart = 0.8;
constexpr float partCost = 0.01F;            // by which a part must be closer than the whole
constexpr std::size_t votingCandidates = 12; // on which part of a cut is the letter
constexpr double mostSquares = 1.5;          // side of a square as large as the mean letter, in heights to compare at
constexpr std::size_t preparingBytes = 128 << 20;
constexpr std::size_t mostFacesForSigns = 20000;

struct Ranked
{
    int face = 0;
    float distance = 0;
    double scale = 0;
    std::vector<bool> mainPart;
    std::vector<int> part; // of the asked letter, or -1
    std::vector<GlyphOutline> outlines;
    LetterFit::State state;
};

// Mean distance of the best few.
float closeness(const std::vector<Ranked>& ranked)
{
    // In a small library eight faces are most of them.
    const std::size_t count = std::clamp<std::size_t>(ranked.size() / 32, 1, turnCandidates);
    float sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += ranked[i].distance;
    return sum / float(count);
}

QVector<QChar> lettersAndDigits()
{
    QVector<QChar> result;
    for (char c = 'a'; c <= 'z'; ++c)
        result << QLatin1Char(c) << QChar(QLatin1Char(c)).toUpper();
    for (char c = '0'; c <= '9'; ++c)
        result << QLatin1Char(c);
    return result;
}

QVector<QChar> signsAndAccents()
{
    QVector<QChar> result;
    for (ushort c = 0x21; c <= 0xff; ++c) {
        const bool isSign = c < 0x7f && !QChar(c).isLetterOrNumber();
        if (isSign || c >= 0xc0 || c == 0xa1 || c == 0xbf)
            result << QChar(c);
    }
    return result;
}

} // namespace

class LetterMatcher::Private
{
public:
    explicit Private(const QString& cacheFolder)
        : index(cacheFolder)
    {
        pool.setMaxThreadCount(qMax(1, QThread::idealThreadCount()));
    }

    void measureAll(const std::atomic<bool>& cancelled);
    static std::vector<Ranked> firstPass(const std::vector<AskedLetter>& letters,
                                         const QVector<LetterTablePtr>& tables);
    static void openOutlines(const std::vector<AskedLetter>& letters, const IndexedFaces& faces, Ranked& candidate);
    double bestDeviance(const std::vector<AskedLetter>& letters, const IndexedFaces& faces,
                        const std::vector<Ranked>& ranked);
    void straighten(const IndexedFaces& faces, const QVector<LetterTablePtr>& tables, std::vector<AskedLetter>& letters,
                    std::vector<Ranked>& ranked);
    void separate(const IndexedFaces& faces, const QVector<LetterTablePtr>& tables, std::vector<AskedLetter>& letters,
                  std::vector<Ranked>& ranked);
    double findBlur(const std::vector<AskedLetter>& letters, std::vector<Ranked>& ranked);
    void compare(const std::vector<AskedLetter>& letters, std::vector<Ranked>& ranked, int count, double height,
                 double blur, int steps);

    LetterIndex index;
    QThreadPool pool;

    QMutex mutex;
    QHash<QPair<QString, int>, QVector<int>> ids;
    std::shared_ptr<QThread> preparing;
    std::shared_ptr<std::atomic<bool>> cancelPreparing;
};

LetterMatcher::LetterMatcher(const QString& cacheFolder)
    : m_private(std::make_unique<Private>(cacheFolder))
{
}

LetterMatcher::~LetterMatcher()
{
    if (m_private->cancelPreparing)
        *m_private->cancelPreparing = true;
    waitUntilPrepared();
    m_private->pool.waitForDone();
}

void LetterMatcher::setCandidates(const QVector<FontCandidate>& candidates)
{
    QHash<QPair<QString, int>, QVector<int>> ids;
    QVector<QPair<QString, int>> files;
    for (const FontCandidate& candidate : candidates) {
        const QPair<QString, int> file(candidate.file, candidate.faceIndex);
        QVector<int>& same = ids[file];
        if (same.isEmpty())
            files.append(file);
        same.append(candidate.id);
    }
    const QMutexLocker locker(&m_private->mutex);
    m_private->ids = ids;
    m_private->index.setFaces(files);
}

void LetterMatcher::prepare()
{
    const auto cancel = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<QThread> earlier;
    const std::shared_ptr<QThread> thread(
        QThread::create([data = m_private.get(), cancel] { data->measureAll(*cancel); }));
    {
        const QMutexLocker locker(&m_private->mutex);
        if (m_private->cancelPreparing)
            *m_private->cancelPreparing = true;
        m_private->cancelPreparing = cancel;
        earlier = m_private->preparing;
        m_private->preparing = thread;
        thread->start(QThread::LowestPriority);
    }
    // Cancelled, so it ends with the face it is at. Nobody else has to wait for that: the lock is free.
    if (earlier)
        earlier->wait();
}

bool LetterMatcher::isPreparing() const
{
    const QMutexLocker locker(&m_private->mutex);
    return m_private->preparing && m_private->preparing->isRunning();
}

void LetterMatcher::waitUntilPrepared()
{
    std::shared_ptr<QThread> thread;
    {
        const QMutexLocker locker(&m_private->mutex);
        thread = m_private->preparing;
    }
    if (thread)
        thread->wait();
}

// Faces are opened once for as many characters as the memory allows.
void LetterMatcher::Private::measureAll(const std::atomic<bool>& cancelled)
{
    const auto faces = qMax<std::size_t>(1, index.faces()->size());
    // Of very many faces only the letters and digits, lest the folder's bound cost one what another gained.
    const QVector<QChar> characters =
        faces > mostFacesForSigns ? lettersAndDigits() : lettersAndDigits() + signsAndAccents();
    const int atOnce = int(qBound<std::size_t>(4, preparingBytes / (faces * sizeof(LetterTable::Row)), 64));
    for (int i = 0; i < characters.size() && !cancelled; i += atOnce)
        index.tables(characters.mid(i, atOnce), nullptr, [&cancelled] { return cancelled.load(); });
}

std::vector<Ranked> LetterMatcher::Private::firstPass(const std::vector<AskedLetter>& letters,
                                                      const QVector<LetterTablePtr>& tables)
{
    const std::size_t count = letters.size();
    const std::size_t faces = tables.first()->rows.size();
    std::vector<Ranked> result;
    std::vector<const ShapeDescriptor*> shapes(count);
    std::vector<const AskedLetter*> seen(count);
    std::vector<float> distances(count);
    std::vector<float> sizes(2 * count);
    std::vector<float> sorted;
    for (std::size_t face = 0; face < faces; ++face) {
        Ranked ranked;
        ranked.mainPart.assign(count, false);
        ranked.part.assign(count, -1);
        sorted.clear();
        std::size_t found = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const LetterTable& table = *tables[int(i)];
            shapes[i] = nullptr;
            distances[i] = mostDistance;
            if (table.rows[face].state != LetterTable::Measured)
                continue;
            ++found;
            seen[i] = &letters[i];
            shapes[i] = &table.rows[face].shape;
            distances[i] = qMin(mostDistance, letters[i].shape.distance(*shapes[i]));
            const auto mainPart = table.mainParts.find(int(face));
            const auto lookAt = [&](const AskedLetter& letter, int part) {
                const auto take = [&](const ShapeDescriptor& shape, bool isMainPart) {
                    const float other = letter.shape.distance(shape) + (part < 0 ? 0 : partCost);
                    if (other >= distances[i])
                        return;
                    distances[i] = other;
                    seen[i] = &letter;
                    shapes[i] = &shape;
                    ranked.mainPart[i] = isMainPart;
                    ranked.part[i] = part;
                };
                if (part >= 0)
                    take(table.rows[face].shape, false);
                if (letter.single && mainPart != table.mainParts.end())
                    take(mainPart->second, true);
            };
            lookAt(letters[i], -1);
            for (std::size_t part = 0; part < letters[i].parts.size(); ++part)
                lookAt(letters[i].parts[part], int(part));
            sizes[2 * i] = seen[i]->shape.logWidth - shapes[i]->logWidth;
            sizes[2 * i + 1] = seen[i]->shape.logHeight - shapes[i]->logHeight;
            sorted.push_back(sizes[2 * i]);
            sorted.push_back(sizes[2 * i + 1]);
        }
        if (found == 0)
            continue;
        const auto middle = sorted.begin() + long(sorted.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        const float size = *middle;
        for (std::size_t i = 0; i < count; ++i) {
            if (!shapes[i]) {
                ranked.distance += mostDistance;
                continue;
            }
            const float across = sizes[2 * i] - size;
            const float down = sizes[2 * i + 1] - size;
            ranked.distance += qMin(mostDistance, distances[i] + sizeWeight * (across * across + down * down));
        }
        ranked.face = int(face);
        ranked.distance /= float(count);
        ranked.scale = std::exp(double(size));
        result.push_back(std::move(ranked));
    }
    const auto end = result.size() > drawnCandidates ? result.begin() + drawnCandidates : result.end();
    std::partial_sort(result.begin(), end, result.end(),
                      [](const Ranked& one, const Ranked& other) { return one.distance < other.distance; });
    result.erase(end, result.end());
    return result;
}

void LetterMatcher::Private::openOutlines(const std::vector<AskedLetter>& letters, const IndexedFaces& faces,
                                          Ranked& candidate)
{
    const IndexedFace& entry = faces[std::size_t(candidate.face)];
    CandidateFace face(entry.file, entry.faceIndex);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        GlyphOutline outline = face.outline(letters[i].character);
        candidate.outlines.push_back(candidate.mainPart[i] ? outline.mainPart() : outline);
    }
}

// Fits the outlines of the first candidates to the letters, drawn so that the typical one is of this height, and sorts
// them by how well they fit.
void LetterMatcher::Private::compare(const std::vector<AskedLetter>& letters, std::vector<Ranked>& ranked, int count,
                                     double height, double blur, int steps)
{
    double factor = height / typicalHeight(letters); // pixels drawn for each of the picture
    for (const AskedLetter& letter : letters)
        factor = qMin(factor, 1 / letter.unit); // letters are only ever reduced
    // Words cut as one letter would cost as much as all others together.
    double area = 0;
    for (const AskedLetter& letter : letters)
        area += double(letter.ink.width) * letter.ink.height * letter.unit * letter.unit;
    factor = qMin(factor, mostSquares * height * std::sqrt(double(letters.size()) / area));
    std::vector<Coverage> reduced;
    for (const AskedLetter& letter : letters)
        reduced.push_back(letter.ink.reduced(factor * letter.unit));
    const LetterFit fit(std::move(reduced), blur * factor);
    count = qMin(count, int(ranked.size()));
    shareWork(&pool, count, [&](int i) {
        Ranked& candidate = ranked[std::size_t(i)];
        LetterFit::State state = LetterFit::rescaled(candidate.state, factor);
        state.scale = (candidate.state.letters.empty() ? candidate.scale : candidate.state.scale) * factor;
        fit.run(candidate.outlines, steps, state);
        candidate.state = LetterFit::rescaled(state, 1 / factor);
    });
    std::stable_sort(ranked.begin(), ranked.begin() + count,
                     [](const Ranked& one, const Ranked& other) { return one.state.deviance < other.state.deviance; });
}

// How well the best of the first candidates fits.
double LetterMatcher::Private::bestDeviance(const std::vector<AskedLetter>& letters, const IndexedFaces& faces,
                                            const std::vector<Ranked>& ranked)
{
    std::vector<Ranked> first(ranked.begin(), ranked.begin() + long(std::min(turnCandidates, ranked.size())));
    shareWork(&pool, int(first.size()), [&](int i) { openOutlines(letters, faces, first[std::size_t(i)]); });
    compare(letters, first, int(first.size()), coarseHeight, blurs[2], 2);
    return first.front().state.deviance;
}

// Of letters that touch others, keeps those parts which the closest faces take for the letters, when outlines fit them
// clearly better than all of the ink.
void LetterMatcher::Private::separate(const IndexedFaces& faces, const QVector<LetterTablePtr>& tables,
                                      std::vector<AskedLetter>& letters, std::vector<Ranked>& ranked)
{
    std::vector<AskedLetter> apart = letters;
    if (!findParts(tables, apart))
        return;
    const std::vector<Ranked> voters = firstPass(apart, tables);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        std::vector<float> votes(apart[i].parts.size() + 1, 0);
        for (std::size_t k = 0; k < std::min(votingCandidates, voters.size()); ++k)
            votes[std::size_t(voters[k].part[i] + 1)] += 1 / (0.001F + voters[k].distance);
        const auto chosen = std::size_t(std::max_element(votes.begin(), votes.end()) - votes.begin());
        AskedLetter letter = chosen > 0 ? apart[i].parts[chosen - 1] : letters[i];
        apart[i] = std::move(letter);
    }
    std::vector<Ranked> found = firstPass(apart, tables);
    if (bestDeviance(apart, faces, found) >= clearlyApart * bestDeviance(letters, faces, ranked))
        return;
    letters = std::move(apart);
    ranked = std::move(found);
}

// Turns letters of crooked text upright, when some turn brings them clearly closer to some faces.
void LetterMatcher::Private::straighten(const IndexedFaces& faces, const QVector<LetterTablePtr>& tables,
                                        std::vector<AskedLetter>& letters, std::vector<Ranked>& ranked)
{
    if (letters.size() < turnedFrom)
        return;
    float closest = clearlyCloser * closeness(ranked);
    std::vector<AskedLetter> straight;
    std::vector<Ranked> rankedStraight;
    double best = 0;
    const std::vector<AskedLetter> small = reduced(letters, qMin(1.0, coarseHeight / typicalHeight(letters)));
    for (const double turn : turns) {
        const std::vector<AskedLetter> tried = turned(small, turn);
        if (tried.size() != letters.size())
            continue;
        std::vector<Ranked> found = firstPass(tried, tables);
        if (closeness(found) < closest) {
            closest = closeness(found);
            best = turn;
            rankedStraight = std::move(found);
        }
    }
    if (best != 0)
        straight = turned(letters, best);
    if (straight.size() != letters.size() ||
        bestDeviance(straight, faces, rankedStraight) >= bestDeviance(letters, faces, ranked))
        return;
    letters = std::move(straight);
    ranked = std::move(rankedStraight);
}

// The blur under which the best of the first candidates fits best.
double LetterMatcher::Private::findBlur(const std::vector<AskedLetter>& letters, std::vector<Ranked>& ranked)
{
    std::vector<Ranked> first(ranked.begin(), ranked.begin() + qMin(blurCandidates, int(ranked.size())));
    double best = 1;
    double found = 0;
    for (const double blur : blurs) {
        std::vector<Ranked> tried = first;
        compare(letters, tried, blurCandidates, coarseHeight, blur, 2);
        if (tried.front().state.deviance < best) {
            best = tried.front().state.deviance;
            found = blur;
        }
    }
    return found;
}

QVector<FontMatch> LetterMatcher::match(const QVector<CutLetter>& cutLetters, int limit,
                                        const std::atomic<bool>* cancelled)
{
    const auto isCancelled = [cancelled] { return cancelled && cancelled->load(); };
    std::vector<AskedLetter> letters = readLetters(cutLetters);
    QHash<QPair<QString, int>, QVector<int>> ids;
    QVector<LetterTablePtr> tables;
    {
        const QMutexLocker locker(&m_private->mutex);
        ids = m_private->ids;
    }
    if (letters.empty() || ids.isEmpty())
        return {};
    QVector<QChar> characters;
    for (const AskedLetter& letter : letters) {
        if (!characters.contains(letter.character))
            characters.append(letter.character);
    }
    const QVector<LetterTablePtr> found = m_private->index.tables(characters, &m_private->pool, isCancelled);
    for (const AskedLetter& letter : letters)
        tables.append(found[characters.indexOf(letter.character)]);
    const IndexedFaces& faces = *tables.first()->faces;
    if (isCancelled() || faces.empty())
        return {};

    std::vector<Ranked> ranked = Private::firstPass(letters, tables);
    if (ranked.empty())
        return {};
    m_private->separate(faces, tables, letters, ranked);
    m_private->straighten(faces, tables, letters, ranked);
    shareWork(&m_private->pool, int(ranked.size()), [&](int i) {
        if (!isCancelled())
            Private::openOutlines(letters, faces, ranked[std::size_t(i)]);
    });
    if (isCancelled())
        return {};
    const double blur = m_private->findBlur(letters, ranked);
    m_private->compare(letters, ranked, drawnCandidates, coarseHeight, blur, 2);
    if (isCancelled())
        return {};
    m_private->compare(letters, ranked, closeCandidates, fineHeight, blur, 3);

    QVector<FontMatch> result;
    double last = 0;
    for (const Ranked& candidate : ranked) {
        // The two comparisons differ a little in what they measure; the order is what counts.
        last = qMax(last, candidate.state.deviance);
        const IndexedFace& face = faces[std::size_t(candidate.face)];
        for (const int id : ids.value({face.file, face.faceIndex})) {
            if (result.size() < limit)
                result.append({id, last});
        }
    }
    return result;
}

} // namespace kerval::letters
