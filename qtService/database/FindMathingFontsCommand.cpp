#include "qtService/database/FindMathingFontsCommand.h"

FindMathingFontsCommand::FindMathingFontsCommand(const MatchingCriteriaPtr& criteria, bool idsOnly)
    : m_criteria(criteria)
    , m_idsOnly(idsOnly)
{
}

MatchingCriteriaPtr FindMathingFontsCommand::criteria() const
{
    return m_criteria;
}

bool FindMathingFontsCommand::idsOnly() const
{
    return m_idsOnly;
}

void FindMathingFontsCommand::setOrdering(const QString& propertyName, Qt::SortOrder order)
{
    QWriteLocker locker(&m_lock);
    m_orderProperty = propertyName;
    m_sortOrder = order;
}

QString FindMathingFontsCommand::orderProperty() const
{
    QReadLocker locker(&m_lock);
    return m_orderProperty;
}

Qt::SortOrder FindMathingFontsCommand::sortOrder() const
{
    QReadLocker locker(&m_lock);
    return m_sortOrder;
}

QList<StaticFontPtr> FindMathingFontsCommand::fonts() const
{
    QReadLocker locker(&m_lock);
    return m_fonts;
}

QList<int> FindMathingFontsCommand::fontIds() const
{
    QReadLocker locker(&m_lock);
    return m_fontIds;
}

void FindMathingFontsCommand::setFonts(const QList<StaticFontPtr>& fonts)
{
    QWriteLocker locker(&m_lock);
    m_fonts = fonts;
}

void FindMathingFontsCommand::setFontIds(const QList<int>& ids)
{
    QWriteLocker locker(&m_lock);
    m_fontIds = ids;
}

void FindMathingFontsCommand::setResult(const QList<StaticFontPtr>& fonts)
{
    if (!m_idsOnly) {
        setFonts(fonts);
        return;
    }
    QList<int> ids;
    ids.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        ids.append(font->id());
    setFontIds(ids);
}

void FindMathingFontsCommand::runPart(const QSharedPointer<FindMathingFontsCommand>& part)
{
    const auto connection = connect(
        this, &AbstractAsynchronousCommand::stateChanged, this,
        [part](State state) {
            if (state == Cancelled)
                part->cancel();
        },
        Qt::DirectConnection);
    if (state() == Cancelled)
        part->cancel();
    part->start();
    part->waitForFinished();
    disconnect(connection);
}
