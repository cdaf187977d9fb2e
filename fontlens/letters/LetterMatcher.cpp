#include "fontlens/letters/LetterMatcher.h"

namespace kerval::letters {

class LetterMatcher::Private
{
};

LetterMatcher::LetterMatcher(const QString&)
    : m_private(std::make_unique<Private>())
{
}

LetterMatcher::~LetterMatcher() = default;

void LetterMatcher::setCandidates(const QVector<FontCandidate>&) {}

void LetterMatcher::prepare() {}

bool LetterMatcher::isPreparing() const
{
    return false;
}

void LetterMatcher::waitUntilPrepared() {}

QVector<FontMatch> LetterMatcher::match(const QVector<CutLetter>&, int, const std::atomic<bool>*)
{
    return {};
}

} // namespace kerval::letters
