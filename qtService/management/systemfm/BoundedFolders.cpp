#include "qtService/management/systemfm/BoundedFolders.h"

namespace kerval::systemfm {

BoundedFolders::BoundedFolders(const QString& root)
    : m_root(root)
{
}

QString BoundedFolders::take(int files)
{
    int number = -1;
    for (const int candidate : qAsConst(m_withRoom)) {
        if (m_counts.value(candidate) + files <= capacity && (number < 0 || candidate < number))
            number = candidate;
        if (m_withRoom.size() > 64 && number >= 0)
            break;
    }
    if (number < 0) {
        number = 0;
        // Gaps left by removed folders are filled first.
        if (!m_counts.isEmpty())
            number = m_counts.lastKey() + 1 == m_counts.size() ? m_counts.size() : 0;
        while (m_counts.contains(number))
            ++number;
    }
    const QString name = QStringLiteral("%1").arg(number, 2, 16, QLatin1Char('0'));
    count(name, files);
    return name;
}

void BoundedFolders::count(const QString& name, int files)
{
    bool ok = false;
    const int number = name.toInt(&ok, 16);
    if (!ok)
        return;
    const int now = qMax(0, m_counts.value(number) + files);
    m_withRoom.remove(number);
    if (now == 0) {
        m_counts.remove(number);
        return;
    }
    m_counts.insert(number, now);
    if (now < capacity)
        m_withRoom.insert(number);
}

void BoundedFolders::release(const QString& name, int files)
{
    count(name, -files);
}

} // namespace kerval::systemfm
