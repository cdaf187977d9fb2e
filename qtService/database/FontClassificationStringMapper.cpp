#include "qtService/database/FontClassificationStringMapper.h"

using fms::StaticFont;

FontClassificationStringMapper::FontClassificationStringMapper(QObject*)
{
    QWriteLocker locker(&m_lock);
    m_texts.insert(StaticFont::NoClassification, QString());
    m_texts.insert(StaticFont::Classic, QStringLiteral("Classic"));
    m_texts.insert(StaticFont::Comic, QStringLiteral("Comic"));
    m_texts.insert(StaticFont::Handwriting, QStringLiteral("Handwriting"));
    m_texts.insert(StaticFont::Blackletter, QStringLiteral("Blackletter"));
    m_texts.insert(StaticFont::Typewriter, QStringLiteral("Typewriter"));
    m_texts.insert(StaticFont::Modern, QStringLiteral("Modern"));
    m_texts.insert(StaticFont::Symbol, QStringLiteral("Symbol"));
    m_texts.insert(StaticFont::Serif, QStringLiteral("Serif"));
    m_texts.insert(StaticFont::Headline, QStringLiteral("Headline"));
    m_texts.insert(StaticFont::Boxed, QStringLiteral("Boxed"));
    m_texts.insert(StaticFont::Monospace, QStringLiteral("Monospace"));
    m_texts.insert(StaticFont::Smallcaps, QStringLiteral("Smallcaps"));
    m_texts.insert(StaticFont::UncompleteLower, QStringLiteral("UncompleteLower"));
    m_texts.insert(StaticFont::UncompleteUpper, QStringLiteral("UncompleteUpper"));
    m_texts.insert(StaticFont::HatedFonts, QStringLiteral("HatedFonts"));
}
