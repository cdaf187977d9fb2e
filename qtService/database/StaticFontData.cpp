#include "qtService/database/StaticFontData.h"

#include "qtService/database/FoldedSearch.h"
#include "qtService/database/FontClassificationStringMapper.h"

#include <QCryptographicHash>
#include <QDir>

#include <limits>
#include <vector>

namespace fms {

quint32 toUnixSeconds(const QDateTime& moment)
{
    constexpr quint32 unknown = std::numeric_limits<quint32>::max();
    if (!moment.isValid())
        return unknown;
    const qint64 seconds = moment.toSecsSinceEpoch();
    return seconds < 0 || seconds >= unknown ? unknown : quint32(seconds);
}

QDateTime fromUnixSeconds(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds);
}

void SecondsText::set(const QString& text)
{
    bool isNumber = false;
    const quint32 number = text.toUInt(&isNumber);
    if (isNumber && QString::number(number) == text) {
        m_number = number;
        m_other.clear();
    } else {
        m_number = -1;
        m_other = text;
    }
}

void SecondsText::set(const QDateTime& moment)
{
    setSeconds(toUnixSeconds(moment));
}

void SecondsText::setSeconds(quint32 seconds)
{
    m_number = seconds;
    m_other.clear();
}

QString SecondsText::text() const
{
    return m_number < 0 ? m_other : QString::number(m_number);
}

qint64 SecondsText::seconds() const
{
    if (m_number < 0)
        return m_other.toInt();
    return m_number > std::numeric_limits<int>::max() ? 0 : m_number;
}

QDateTime SecondsText::moment() const
{
    return fromUnixSeconds(seconds());
}

void SubsetNumbers::clear()
{
    m_low = 0;
    m_others.clear();
}

void SubsetNumbers::insert(int number)
{
    if (number >= 0 && number < 64)
        m_low |= quint64(1) << number;
    else
        m_others.insert(number);
}

void SubsetNumbers::set(const QSet<int>& numbers)
{
    clear();
    for (int number : numbers)
        insert(number);
}

QSet<int> SubsetNumbers::numbers() const
{
    QSet<int> numbers = m_others;
    for (int i = 0; i < 64; ++i) {
        if (m_low >> i & 1)
            numbers.insert(i);
    }
    return numbers;
}

QString SubsetNumbers::text() const
{
    const QSet<int> set = numbers();
    QList<int> sorted(set.cbegin(), set.cend());
    std::sort(sorted.begin(), sorted.end());
    QString text;
    for (int number : qAsConst(sorted))
        text += (text.isEmpty() ? QString() : QStringLiteral(",")) + QString::number(number);
    return text;
}

void SubsetNumbers::setText(const QString& text)
{
    clear();
    const auto parts = text.splitRef(QLatin1Char(','));
    for (const QStringRef& part : parts)
        insert(part.toInt());
}

bool SubsetNumbers::containsAll(const SubsetNumbers& asked) const
{
    return (m_low & asked.m_low) == asked.m_low && m_others.contains(asked.m_others);
}

bool SubsetNumbers::sharesOne(const SubsetNumbers& asked) const
{
    return (m_low & asked.m_low) != 0 || m_others.intersects(asked.m_others);
}

namespace {

void shareIfEqual(QString& text, const QString& other)
{
    if (text == other)
        text = other;
}

} // namespace

void StaticFontData::shareEqualTexts()
{
    shareIfEqual(originalFileName, fileName);
    shareIfEqual(sfntPostScriptName, postScriptName);
    shareIfEqual(fullName, familyName.text());
    shareIfEqual(fullMetricsCorrection, latinMetricsCorrection);
}

int StaticFontData::opticalSize() const
{
    const auto product = qint32(quint32(specificWidth) * quint32(specificHeight));
    return int(double(product) / 1000.0);
}

bool StaticFontData::hasClass(StaticFont::Classification value) const
{
    static const std::vector<FoldedWord> keywords = [] {
        std::vector<FoldedWord> words;
        for (int i = StaticFont::NoClassification; i <= StaticFont::HatedFonts; ++i)
            words.emplace_back(FontClassificationStringMapper::instance()->toString(StaticFont::Classification(i)));
        return words;
    }();
    return keywords[size_t(value)].isIn(otherInfo2.folded());
}

QString StaticFontData::computedFontHash() const
{
    const QString text = fileHash + QDir::fromNativeSeparators(fileName).toLower();
    const QByteArray digest = QCryptographicHash::hash(text.toLatin1(), QCryptographicHash::Sha1).toHex();
    return QStringLiteral("%1%2").arg(QString::fromLatin1(digest)).arg(faceIndex, 2, 16, QLatin1Char('0'));
}

} // namespace fms
