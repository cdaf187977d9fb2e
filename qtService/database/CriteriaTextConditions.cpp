#include "qtService/database/CriteriaTextConditions.h"

#include "qtService/database/FoldedSearch.h"

#include <unordered_map>

using fms::FontField;
using fms::SharedText;
using fms::StaticFontData;

namespace criteria {

bool isAt(TextPlace place, const QString& text, const QString& word, Qt::CaseSensitivity caseSensitivity)
{
    switch (place) {
    case TextPlace::Anywhere:
        return text.contains(word, caseSensitivity);
    case TextPlace::Start:
        return text.startsWith(word, caseSensitivity);
    case TextPlace::End:
        return text.endsWith(word, caseSensitivity);
    }
    return false;
}

namespace {

class PlainTextEquals : public CriteriaCondition
{
public:
    PlainTextEquals(const FontField& field, const QString& text)
        : m_get(field.text)
        , m_text(text)
    {
    }
    bool holds(const StaticFontData& data) const override { return m_get(data) == m_text; }

private:
    const QString& (*const m_get)(const StaticFontData&);
    const QString m_text;
};

// Holds the asked text in the pool, so that equal texts are the same entry.
class SharedTextEquals : public CriteriaCondition
{
public:
    SharedTextEquals(const FontField& field, const QString& text)
        : m_get(field.shared)
        , m_text(text)
    {
    }
    bool holds(const StaticFontData& data) const override { return m_get(data).identity() == m_text.identity(); }

private:
    const SharedText& (*const m_get)(const StaticFontData&);
    const SharedText m_text;
};

class PlainTextSearch : public CriteriaCondition
{
public:
    PlainTextSearch(const FontField& field, TextPlace place, const QString& word, Qt::CaseSensitivity caseSensitivity)
        : m_get(field.text)
        , m_place(place)
        , m_word(word)
        , m_caseSensitivity(caseSensitivity)
    {
    }
    bool holds(const StaticFontData& data) const override
    {
        return isAt(m_place, m_get(data), m_word, m_caseSensitivity);
    }

private:
    const QString& (*const m_get)(const StaticFontData&);
    const TextPlace m_place;
    const QString m_word;
    const Qt::CaseSensitivity m_caseSensitivity;
};

class SharedTextSearch : public CriteriaCondition
{
public:
    SharedTextSearch(const FontField& field, TextPlace place, const QString& word, Qt::CaseSensitivity caseSensitivity)
        : m_get(field.shared)
        , m_place(place)
        , m_word(word)
        , m_folded(word)
        , m_caseSensitivity(caseSensitivity)
    {
    }

    bool holds(const StaticFontData& data) const override
    {
        const SharedText& text = m_get(data);
        if (text.text().size() < LongText)
            return search(text);
        // Records of one family lie together, so the last answer is often the one that is needed.
        if (m_last && text.identity() == m_last->text.identity())
            return m_last->found;
        auto answer = m_answers.find(text.identity());
        if (answer == m_answers.end())
            answer = m_answers.emplace(text.identity(), Answer{text, search(text)}).first;
        m_last = &answer->second;
        return m_last->found;
    }

private:
    struct Answer
    {
        SharedText text; // keeps the identity from being given to another text
        bool found;
    };

    // Shorter texts are searched faster than an answer is looked up.
    static constexpr int LongText = 160;

    bool search(const SharedText& text) const
    {
        if (m_caseSensitivity == Qt::CaseSensitive)
            return isAt(m_place, text.text(), m_word, Qt::CaseSensitive);
        switch (m_place) {
        case TextPlace::Anywhere:
            return m_folded.isIn(text.folded());
        case TextPlace::Start:
            return m_folded.isStartOf(text.folded());
        case TextPlace::End:
            return m_folded.isEndOf(text.folded());
        }
        return false;
    }

    const SharedText& (*const m_get)(const StaticFontData&);
    const TextPlace m_place;
    const QString m_word;
    const fms::FoldedWord m_folded;
    const Qt::CaseSensitivity m_caseSensitivity;
    mutable std::unordered_map<const void*, Answer> m_answers;
    mutable const Answer* m_last = nullptr;
};

} // namespace

std::unique_ptr<CriteriaCondition> textEquals(const FontField& field, const QString& text)
{
    if (field.shared)
        return std::make_unique<SharedTextEquals>(field, text);
    return std::make_unique<PlainTextEquals>(field, text);
}

std::unique_ptr<CriteriaCondition> textSearch(const FontField& field, TextPlace place, const QString& word,
                                              Qt::CaseSensitivity caseSensitivity)
{
    if (field.shared)
        return std::make_unique<SharedTextSearch>(field, place, word, caseSensitivity);
    return std::make_unique<PlainTextSearch>(field, place, word, caseSensitivity);
}

} // namespace criteria
