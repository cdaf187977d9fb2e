#include "qtService/database/RelationalFindMathingFontsCommand.h"

#include "qtService/database/DatabaseTableGateway.h"
#include "qtService/database/RecordListFontFactory.h"
#include "qtService/database/RelationalFontRepositoryStrategy.h"
#include "qtService/database/SqlCriteria.h"

RelationalFindMathingFontsCommand::RelationalFindMathingFontsCommand(const QSharedPointer<FontDatabase>& database,
                                                                     const MatchingCriteriaPtr& criteria, bool idsOnly)
    : FindMathingFontsCommand(criteria, idsOnly)
    , m_database(database)
{
}

RelationalFindMathingFontsCommand::~RelationalFindMathingFontsCommand()
{
    waitForFinished();
}

void RelationalFindMathingFontsCommand::operator()()
{
    using Gateway = DatabaseTableGateway<FontDatabase::FontTableColumn>;
    if (state() == Cancelled)
        return;
    setState(Running);

    const QList<FontDatabase::FontTableColumn> columns =
        idsOnly() ? QList<FontDatabase::FontTableColumn>{FontDatabase::id} : QList<FontDatabase::FontTableColumn>{};
    Gateway::Order order;
    const auto& propertyColumns = RelationalFontRepositoryStrategy::propertyColumns();
    if (propertyColumns.contains(orderProperty()))
        order.column = propertyColumns.value(orderProperty());
    order.order = sortOrder();

    const SqlCriteria sql = SqlCriteria::build(criteria(), *m_database);
    const auto rows =
        m_database->fontGateway()->selectWhere(sql.condition, sql.values, columns, order, Gateway::ForwardOnly);
    QList<int> ids;
    QList<StaticFontPtr> fonts;
    for (int row = 0; state() != Cancelled && rows->hasRow(row); ++row) {
        if (idsOnly())
            ids.append(rows->value(row, FontDatabase::id).toInt());
        else
            fonts.append(RecordListFontFactory::instance()->createFont(*rows, row));
    }
    setFontIds(ids);
    setFonts(fonts);
    setState(rows->hasFailed() ? Failed : Finished);
}
