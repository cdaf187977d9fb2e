#include "qtService/app/core/FMSLogModel.h"

#include "qtService/app/core/FMSLog.h"

#include <QDateTime>
#include <QLocale>

FMSLogModel::FMSLogModel(QObject* parent)
    : QAbstractTableModel(parent)
{
    if (FMSLog* log = FMSLog::instance()) {
        m_rows = log->entryCount();
        connect(log, &FMSLog::logChanged, this, &FMSLogModel::fireLayoutChanged);
    }
}

int FMSLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int FMSLogModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FMSLogModel::data(const QModelIndex& index, int role) const
{
    const FMSLog* log = FMSLog::instance();
    if (!index.isValid() || role != Qt::DisplayRole || !log)
        return QVariant();
    const FMSLog::Entry entry = log->entry(index.row());
    switch (index.column()) {
    case TimeColumn: {
        // Events are quick: the seconds are told, which short formats leave out.
        const QDateTime time = QDateTime::fromSecsSinceEpoch(entry.time);
        return QString(QLocale().toString(time.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
                       time.toString(QStringLiteral("HH:mm:ss")));
    }
    case TypeColumn:
        return FMSLog::typeText(entry.type);
    default:
        return entry.text;
    }
}

QVariant FMSLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case TypeColumn:
        return tr("Type");
    case DescriptionColumn:
        return tr("Description");
    default:
        return QVariant();
    }
}

void FMSLogModel::fireLayoutChanged()
{
    const FMSLog* log = FMSLog::instance();
    const int rows = log ? log->entryCount() : 0;
    emit layoutAboutToBeChanged();
    m_rows = rows;
    emit layoutChanged();
}
