#pragma once

#include <QChar>
#include <QImage>
#include <QPointF>
#include <QString>
#include <QVector>

#include <atomic>
#include <memory>

namespace kerval::letters {

// A face that may be the answer; the id is the caller's.
struct FontCandidate
{
    int id = 0;
    QString file;
    int faceIndex = 0;
};

// A letter as LetterCutter gives it, and what it shows.
struct CutLetter
{
    QChar character;
    QImage image;
    double scale = 1;          // LetterCut::scale
    QPointF click = QPointF(); // LetterCut::click
};

struct FontMatch
{
    int id = 0;
    double deviance = 0; // 0 the same drawing; 0.1 hard to tell apart; above 1 nothing in common
};

// Ranks faces by how well letters cut from a picture fit theirs.
//
// Two passes: compact descriptors of all candidates (LetterIndex), then the outlines of the best few hundred are drawn
// at the size of the cut letters, moved into place and compared with them. All letters are taken to share one size.
//
// All functions may be called from any thread and at the same time; match() blocks for the time of the work, which it
// spreads over the machine's cores. The first query for a character that is neither in memory nor in the cache folder
// opens every candidate once. Damaged fonts are passed over. The destructor cancels and waits for what runs.
class LetterMatcher
{
public:
    // The folder is made when needed; what is in it can be lost at any time. Empty: nothing is kept on disk.
    explicit LetterMatcher(const QString& cacheFolder);
    ~LetterMatcher();
    LetterMatcher(const LetterMatcher&) = delete;
    LetterMatcher& operator=(const LetterMatcher&) = delete;

    // Replaces the candidates and returns at once. What is known of files that stay is kept.
    void setCandidates(const QVector<FontCandidate>& candidates);

    // Measures the letters and digits of all candidates in the background, at low priority, and keeps them in the cache
    // folder, so that no query has to wait for it. Call it after setCandidates(); a second call replaces the first.
    void prepare();
    bool isPreparing() const;
    void waitUntilPrepared();

    // The best candidates, smallest deviance first; candidates that have none of the letters are left out. Letters
    // without a character or ink are ignored; without any left, or when cancelled, the answer is empty.
    QVector<FontMatch> match(const QVector<CutLetter>& letters, int limit = 100,
                             const std::atomic<bool>* cancelled = nullptr);

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace kerval::letters
