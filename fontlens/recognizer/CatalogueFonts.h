#pragma once

#include "fontlens/letters/LetterMatcher.h"
#include "fontlens/recognizer/FontListXml.h"

#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QTimer>
#include <QVector>

#include <atomic>
#include <memory>

class FontManagementService;
class KrvFontRepository;

namespace fms {
class StaticFont;
}

namespace kerval::recognizer {

class JobQueue;

// The fonts of the library that a picture may show: those whose files are there, each file's content once however many
// copies the library has of it (an active one, or else the first, stands for all). Measuring begins with the first
// picture that anybody works on, in the background, and follows the catalogue from then on.
//
// Main thread, except find().
class CatalogueFonts : public QObject
{
    Q_OBJECT

public:
    // The queue outlives it, and is gone through before this goes: see LocalRecognizer.
    CatalogueFonts(const QSharedPointer<FontManagementService>& service, JobQueue* queue, const QString& cacheFolder);
    ~CatalogueFonts() override;

    // False while the library is not open.
    bool isOpen() const;
    // Begins to measure, if that has not begun.
    void wake();
    QSharedPointer<fms::StaticFont> font(int id) const;

    // The best fonts, best first, as they are called now. From any thread; takes as long as it takes, and includes
    // whatever the catalogue has changed until now.
    QVector<ProposedFont> find(const QVector<letters::CutLetter>& letters, int limit,
                               const std::atomic<bool>& cancelled);

private:
    void follow(const QSharedPointer<KrvFontRepository>& repository);
    void onCatalogueChanged();
    void refresh();

    const QSharedPointer<FontManagementService> m_service;
    JobQueue* const m_queue;
    letters::LetterMatcher m_matcher;
    QPointer<KrvFontRepository> m_followed;
    QTimer m_settled; // runs out when changes have come to rest
    std::shared_ptr<void> m_refreshing;
    std::atomic<bool> m_isStale{true};
    QMutex m_refreshMutex;                        // guards the member below
    QVector<letters::FontCandidate> m_candidates; // what the matcher has
};

} // namespace kerval::recognizer
