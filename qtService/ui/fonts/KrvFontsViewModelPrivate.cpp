#include "qtService/ui/fonts/KrvFontsViewModelPrivate.h"

#include "qtService/ui/filter/FontFilterCriteria.h"
#include "qtService/ui/filter/FontFiltersState.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/FontColumnValues.h"
#include "qtService/ui/fonts/FontDrag.h"
#include "qtService/ui/fonts/NonexistingFontFileEvent.h"

#include <QApplication>
#include <QDateTime>
#include <QMimeData>
#include <QWidget>

#include <algorithm>

namespace {

// More separate runs of rows than this and one reset is cheaper for a view than so many signals.
constexpr int maximumRowSignals = 64;

// Rows given in ascending order, joined to runs {first, last}.
QVector<QPair<int, int>> runsOf(const QVector<int>& rows)
{
    QVector<QPair<int, int>> runs;
    for (const int row : rows) {
        if (!runs.isEmpty() && runs.last().second == row - 1)
            runs.last().second = row;
        else
            runs.append({row, row});
    }
    return runs;
}

} // namespace

KrvFontsViewModelPrivate::KrvFontsViewModelPrivate(QObject* parent)
    : QAbstractItemModel(parent)
{
    m_reloadTimer.setSingleShot(true);
    m_reloadTimer.setInterval(0);
    connect(&m_reloadTimer, &QTimer::timeout, this, [this] { reloadFonts(m_group); });
    connect(&m_previews, &FontPreviewStore::commandEnded, this,
            &KrvFontsViewModelPrivate::onRenderCommandStatusChanged);
    const bool dense = qApp->devicePixelRatio() > 1;
    for (const char* name : {"inactive", "temporary", "permanent"}) {
        QImage image(QStringLiteral(":/icons/activity_%1%2.png")
                         .arg(QLatin1String(name), dense ? QStringLiteral("2x") : QString()));
        image.setDevicePixelRatio(dense ? 2 : 1);
        m_activityImages.append(image);
    }
}

KrvFontsViewModelPrivate::~KrvFontsViewModelPrivate()
{
    dropCommand();
}

QModelIndex KrvFontsViewModelPrivate::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() || row < 0 || row >= m_fonts.size() || column < 0 || column >= fonts::ColumnCount)
        return QModelIndex();
    return createIndex(row, column);
}

QModelIndex KrvFontsViewModelPrivate::parent(const QModelIndex&) const
{
    return QModelIndex();
}

int KrvFontsViewModelPrivate::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_fonts.size();
}

int KrvFontsViewModelPrivate::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(fonts::ColumnCount);
}

QVariant KrvFontsViewModelPrivate::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_fonts.size())
        return QVariant();
    const int row = index.row();
    switch (index.column()) {
    case fonts::NumberColumn:
        return QVariant();
    case fonts::ActivityImageColumn:
        return activityData(row, role);
    case fonts::PreviewColumn:
        return previewColumnData(row, role);
    default:
        if (role == fonts::ValueRole && index.column() == fonts::DateAddedColumn)
            return m_fonts.at(row)->dateAdded();
        if (role == Qt::DisplayRole || role == fonts::ValueRole)
            return fonts::columnValue(m_fonts.at(row), index.column());
        return QVariant();
    }
}

QVariant KrvFontsViewModelPrivate::activityData(int row, int role) const
{
    const int activity = m_fonts.at(row)->activityType();
    switch (role) {
    case Qt::DecorationRole: {
        const QImage image = m_activityImages.value(activity);
        return image.isNull() ? QVariant() : QVariant(image);
    }
    case Qt::SizeHintRole:
        return m_activityImages.first().size() / m_activityImages.first().devicePixelRatio();
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return fonts::activityText(activity);
    case Qt::DisplayRole:
    case fonts::ValueRole:
        // A number for whoever asks; the delegate shows the image alone.
        return activity;
    default:
        return QVariant();
    }
}

QVariant KrvFontsViewModelPrivate::previewColumnData(int row, int role) const
{
    const StaticFontPtr& font = m_fonts.at(row);
    switch (role) {
    case Qt::DisplayRole:
        return preview(row);
    case Qt::SizeHintRole:
        // Room for a line whose ascenders and descenders go to one and a half times its size.
        return QSize(m_previewSize * 12, m_previewSize * 3 / 2 + 10);
    case Qt::AccessibleTextRole:
    case fonts::FullFontNameRole:
        return QStringLiteral("%1 %2").arg(font->familyName(), font->styleName());
    case fonts::FileNameRole:
        return font->fileName();
    case fonts::LatinMetricsCorrectionRole:
        return font->latinMetricsCorrection();
    case fonts::FullMetricsCorrectionRole:
        return font->fullMetricsCorrection();
    case fonts::FaceIndexRole:
        return font->faceIndex();
    case fonts::ValueRole:
        return font->familyName();
    case fonts::SupportedSubsetsRole:
        return QVariant::fromValue(font->supportedSubsets());
    case fonts::PreviewSizeRole:
        return m_previewSize;
    default:
        return QVariant();
    }
}

QVariant KrvFontsViewModelPrivate::preview(int row) const
{
    const StaticFontPtr& font = m_fonts.at(row);
    FontPreviewStore::Request request;
    request.fontId = font->id();
    request.fileName = font->fileName();
    request.faceIndex = font->faceIndex();
    request.pixelSize = m_previewSize;
    // A row has room for one line.
    const QString line = m_previewText.simplified();
    request.text = line.isEmpty() ? fonts::defaultSampleText(font, false) : line;
    // What the user wrote is drawn as it stands, and missing letters show.
    request.ownScript = line.isEmpty();
    request.correction = KrvFontMetrics::MetricsCorrection::fromString(font->fullMetricsCorrection());
    QImage image;
    return m_previews.find(request, &image) ? QVariant(image) : QVariant();
}

QVariant KrvFontsViewModelPrivate::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return fonts::columnTitle(section);
}

Qt::ItemFlags KrvFontsViewModelPrivate::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags base = QAbstractItemModel::flags(index);
    return index.isValid() ? base | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren : base;
}

QStringList KrvFontsViewModelPrivate::mimeTypes() const
{
    return {fonts::fontIdListMimeType(), fonts::hiddenFontIdListMimeType()};
}

QMimeData* KrvFontsViewModelPrivate::mimeData(const QModelIndexList& indexes) const
{
    QList<StaticFontPtr> dragged;
    QSet<int> seen;
    for (const QModelIndex& index : indexes) {
        const StaticFontPtr font = m_fonts.value(index.row());
        if (font && !seen.contains(font->id())) {
            seen.insert(font->id());
            dragged.append(font);
        }
    }
    const bool hidden =
        m_shownGroup && m_shownGroup->name() == QCoreApplication::translate("HiddenFontsGroup", "Hidden Fonts");
    return fonts::createMimeData(dragged, hidden);
}

void KrvFontsViewModelPrivate::setFontGroup(const FontGroupPtr& fontGroup)
{
    if (m_group)
        m_group->disconnect(this);
    m_group = fontGroup;
    if (m_group) {
        connect(m_group.data(), &FontCollectionInterface::fontsAdded, this, &KrvFontsViewModelPrivate::onFontsAdded);
        connect(m_group.data(), &FontCollectionInterface::fontsRemoved, this,
                &KrvFontsViewModelPrivate::onFontsRemoved);
        connect(m_group.data(), &FontCollectionInterface::fontsChanged, this,
                &KrvFontsViewModelPrivate::onFontsChanged);
    }
    reloadFonts(m_group);
}

void KrvFontsViewModelPrivate::setFiltersState(FontFiltersState* state)
{
    m_filters = state;
    scheduleReload();
}

void KrvFontsViewModelPrivate::updateCriteria()
{
    scheduleReload();
}

void KrvFontsViewModelPrivate::scheduleReload()
{
    m_reloadTimer.start();
}

void KrvFontsViewModelPrivate::dropCommand()
{
    if (!m_command)
        return;
    m_command->disconnect(this);
    m_command->cancel();
    m_command.clear();
}

FindMathingFontsCommandPtr KrvFontsViewModelPrivate::reloadFonts(FontGroupPtr fontGroup)
{
    m_reloadTimer.stop();
    const bool wasFiltering = isFiltering();
    dropCommand();
    if (!fontGroup) {
        replaceRows({}, fontGroup);
        if (wasFiltering)
            emit filteringStatusChanged(false);
        return m_command;
    }
    const MatchingCriteriaPtr criteria = m_filters ? criteriaForFilters(*m_filters) : MatchingCriteria::allOf();
    m_command = fontGroup->createFindMathingFontsCommand(criteria, false);
    connect(m_command.data(), &AbstractAsynchronousCommand::stateChanged, this,
            &KrvFontsViewModelPrivate::onFindMathchingFontsStateChanged);
    if (!wasFiltering)
        emit filteringStatusChanged(true);
    m_command->start();
    return m_command;
}

void KrvFontsViewModelPrivate::onFindMathchingFontsStateChanged(AbstractAsynchronousCommand::State)
{
    // A queued word of a command that was dropped meanwhile is none of ours any more. Its sender is no proof: the next
    // command may lie where the dropped one was. The command itself knows whether it has ended.
    if (!m_command || sender() != m_command.data())
        return;
    const AbstractAsynchronousCommand::State state = m_command->state();
    if (state < AbstractAsynchronousCommand::Finished)
        return;
    const FindMathingFontsCommandPtr command = m_command;
    m_command->disconnect(this);
    m_command.clear();
    if (state == AbstractAsynchronousCommand::Finished)
        replaceRows(command->fonts(), m_group);
    emit filteringStatusChanged(false);
}

void KrvFontsViewModelPrivate::replaceRows(const QList<StaticFontPtr>& fonts, const FontGroupPtr& group)
{
    QSet<int> wanted;
    wanted.reserve(fonts.size());
    for (const StaticFontPtr& font : fonts)
        wanted.insert(font->id());
    const bool sameGroup = m_shownGroup == group;
    emit rowsAboutToChange(wanted, sameGroup);
    m_shownGroup = group;
    if (sameGroup)
        showFonts(fonts, wanted);
    else
        resetTo(fonts);
    emit rowsChanged();
}

// Follows a new result of the shown group: removes what left, appends what came. Where that would not give the order of
// the result, or would take too many steps, the model is reset.
void KrvFontsViewModelPrivate::showFonts(const QList<StaticFontPtr>& fonts, const QSet<int>& wanted)
{
    QVector<int> leaving;
    int staying = 0;
    bool inOrder = true;
    for (int row = 0; row < m_fonts.size(); ++row) {
        if (!wanted.contains(m_fonts.at(row)->id()))
            leaving.append(row);
        else if (staying < fonts.size() && fonts.at(staying)->id() == m_fonts.at(row)->id())
            ++staying;
        else
            inOrder = false;
    }
    const QVector<QPair<int, int>> runs = runsOf(leaving);
    if (!inOrder || runs.size() > maximumRowSignals) {
        resetTo(fonts);
        return;
    }
    m_sortKeys.clear();
    for (auto run = runs.crbegin(); run != runs.crend(); ++run) {
        beginRemoveRows(QModelIndex(), run->first, run->second);
        m_fonts.remove(run->first, run->second - run->first + 1);
        indexRows();
        endRemoveRows();
    }
    // The records themselves may have been replaced by newer ones.
    for (int row = 0; row < staying; ++row)
        m_fonts[row] = fonts.at(row);
    if (staying < fonts.size()) {
        beginInsertRows(QModelIndex(), staying, fonts.size() - 1);
        for (int row = staying; row < fonts.size(); ++row)
            m_fonts.append(fonts.at(row));
        indexRows();
        m_sortKeys.clear();
        endInsertRows();
    }
}

void KrvFontsViewModelPrivate::resetTo(const QList<StaticFontPtr>& fonts)
{
    beginResetModel();
    m_fonts = fonts.toVector();
    m_sortKeys.clear();
    indexRows();
    endResetModel();
}

void KrvFontsViewModelPrivate::indexRows()
{
    m_rowOfFont.clear();
    m_rowOfFont.reserve(m_fonts.size());
    for (int row = 0; row < m_fonts.size(); ++row)
        m_rowOfFont.insert(m_fonts.at(row)->id(), row);
    m_sortKeys.clear();
}

void KrvFontsViewModelPrivate::onFontsAdded(QList<int>)
{
    scheduleReload();
}

void KrvFontsViewModelPrivate::onFontsRemoved(QList<int>)
{
    scheduleReload();
}

void KrvFontsViewModelPrivate::onFontsChanged(QList<int> fontIdList)
{
    announceChanged(fontIdList, 0, fonts::ColumnCount - 1);
}

void KrvFontsViewModelPrivate::announceChanged(const QList<int>& fontIds, int firstColumn, int lastColumn)
{
    QVector<int> rows;
    for (const int id : fontIds) {
        const int row = rowOfFont(id);
        if (row >= 0) {
            rows.append(row);
            m_sortKeys.update(row, m_fonts.at(row));
        }
    }
    std::sort(rows.begin(), rows.end());
    QVector<QPair<int, int>> runs = runsOf(rows);
    if (runs.size() > maximumRowSignals)
        runs = {{rows.first(), rows.last()}};
    for (const auto& run : qAsConst(runs))
        emit dataChanged(index(run.first, firstColumn), index(run.second, lastColumn));
}

void KrvFontsViewModelPrivate::setPreviewText(const QString& text)
{
    if (text == m_previewText)
        return;
    m_previewText = text;
    m_previews.clear();
    if (!m_fonts.isEmpty())
        emit dataChanged(index(0, fonts::PreviewColumn), index(m_fonts.size() - 1, fonts::PreviewColumn));
}

void KrvFontsViewModelPrivate::setPreviewSize(int size)
{
    if (size == m_previewSize || size < 1)
        return;
    m_previewSize = size;
    m_previews.clear();
    if (m_fonts.isEmpty())
        return;
    // Row heights change too, and views only lay out again when told so.
    emit layoutAboutToBeChanged();
    emit layoutChanged();
}

void KrvFontsViewModelPrivate::setRowsInView(const QVector<int>& rows)
{
    QSet<int> ids;
    for (const int row : rows) {
        if (row >= 0 && row < m_fonts.size())
            ids.insert(m_fonts.at(row)->id());
    }
    m_previews.keepOnly(ids);
}

void KrvFontsViewModelPrivate::onRenderCommandStatusChanged(QString commandId)
{
    const FontPreviewStore::Outcome outcome = m_previews.takeFinished(commandId);
    if (!outcome.fileExists) {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        const QSet<QWidget*> topLevel(widgets.cbegin(), widgets.cend());
        for (QWidget* widget : topLevel) {
            NonexistingFontFileEvent event;
            QApplication::sendEvent(widget, &event);
        }
    }
    for (const int id : outcome.fontIds) {
        const int row = rowOfFont(id);
        if (row >= 0)
            emit dataChanged(index(row, fonts::PreviewColumn), index(row, fonts::PreviewColumn), {Qt::DisplayRole});
    }
}

bool KrvFontsViewModelPrivate::lessByColumn(int column, int left, int right) const
{
    if (m_sortKeys.column() != column)
        m_sortKeys.build(column, m_fonts);
    return m_sortKeys.less(left, right);
}
