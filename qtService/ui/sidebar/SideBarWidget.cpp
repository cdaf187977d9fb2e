#include "qtService/ui/sidebar/SideBarWidget.h"

#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/fonts/FontDrag.h"
#include "qtService/ui/sidebar/SideBarDelegate.h"
#include "qtService/ui/sidebar/SideBarModel.h"
#include "qtService/ui/window/Palette.h"

#include <QDebug>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QFrame>
#include <QHeaderView>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int barWidth = 204;
// Near the upper or lower end fonts being dragged scroll the bar.
constexpr int dragScrollZone = 16;
constexpr int dragScrollIntervalMs = 80;

const QString frameStyle = QStringLiteral(
    "QFrame {\t\n\tbackground-color: rgb(237, 237, 237);\n\tborder-left-style: none;\n\tborder-top-style: none;\n}\n\n"
    "QFrame::active {\n\tbackground-color:rgb(221, 225, 233);\n\tborder-left-style: none;\n\tborder-top-style: "
    "none;\n}");

const QString treeStyle = QStringLiteral(
    "QTreeView {\n\tbackground-color: rgb(241, 241, 241);\n\tborder-right-style: solid;\n\tborder-right-width: 1px;\n"
    "\tborder-right-color:  rgb(187, 187, 187);\n\tborder-bottom-style: solid;\n\tborder-bottom-width: 1px;\n"
    "\tborder-bottom-color:  rgb(187, 187, 187);\n}\n\n"
    "QTreeView::active {\n\tbackground-color: rgb(230, 233, 239);\n}");

// The same structure for a dark palette.
const QString darkFrameStyle = QStringLiteral(
    "QFrame {\t\n\tbackground-color: rgb(43, 45, 48);\n\tborder-left-style: none;\n\tborder-top-style: none;\n}\n\n"
    "QFrame::active {\n\tbackground-color:rgb(46, 49, 54);\n\tborder-left-style: none;\n\tborder-top-style: none;\n}");

const QString darkTreeStyle = QStringLiteral(
    "QTreeView {\n\tbackground-color: rgb(43, 45, 48);\n\tborder-right-style: solid;\n\tborder-right-width: 1px;\n"
    "\tborder-right-color:  rgb(28, 29, 31);\n\tborder-bottom-style: solid;\n\tborder-bottom-width: 1px;\n"
    "\tborder-bottom-color:  rgb(28, 29, 31);\n}\n\n"
    "QTreeView::active {\n\tbackground-color: rgb(46, 49, 54);\n}");

} // namespace

SideBarWidget::SideBarWidget(QWidget* parent)
    : QWidget(parent)
{
    qRegisterMetaType<FontGroupPtr>("FontGroupPtr");
    setupUi();
    applyStyle();
    m_view->viewport()->installEventFilter(this);
    connect(m_view, &QTreeView::customContextMenuRequested, this, &SideBarWidget::viewContextMenuRequest);
    connect(KrvUiSettings::instance(), &KrvUiSettings::valueChanged, this, &SideBarWidget::onUiSettingsChanged);
    m_dragScroll.setInterval(dragScrollIntervalMs);
    connect(&m_dragScroll, &QTimer::timeout, this, &SideBarWidget::scrollDrag);
}

void SideBarWidget::setupUi()
{
    setObjectName(QStringLiteral("SideBarWidget"));
    setWindowTitle(tr("Form"));
    setMinimumSize(barWidth, 0);
    setMaximumSize(barWidth, QWIDGETSIZE_MAX);
    setAcceptDrops(true);
    m_frame = new QFrame(this);
    m_frame->setObjectName(QStringLiteral("frame"));
    m_view = new QTreeView(m_frame);
    m_view->setObjectName(QStringLiteral("treeView"));
    m_view->setAccessibleName(tr("Groups"));
    m_view->setAttribute(Qt::WA_MacShowFocusRect, false);
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setAcceptDrops(true);
    m_view->setDragDropMode(QAbstractItemView::DropOnly);
    m_view->setDropIndicatorShown(false);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setIndentation(0);
    m_view->setRootIsDecorated(false);
    // The second header needs room above it, so rows do not all have one height.
    m_view->setUniformRowHeights(false);
    m_view->setAnimated(false);
    m_view->setExpandsOnDoubleClick(false);
    m_view->setItemsExpandable(false);
    m_view->setHeaderHidden(true);
    m_view->header()->setStretchLastSection(true);
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    m_delegate = new SideBarDelegate(m_view);
    m_view->setItemDelegate(m_delegate);

    auto* inner = new QVBoxLayout(m_frame);
    inner->setObjectName(QStringLiteral("verticalLayout"));
    inner->setSpacing(0);
    inner->setContentsMargins(0, 0, 0, 0);
    inner->addWidget(m_view);
    auto* outer = new QVBoxLayout(this);
    outer->setObjectName(QStringLiteral("verticalLayout_2"));
    outer->setSpacing(0);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(m_frame);
}

void SideBarWidget::applyStyle()
{
    const bool dark = ui::isDark(palette());
    const QString frame = dark ? darkFrameStyle : frameStyle;
    // Setting a style sheet makes the palette change anew; only a real change of the sheet may do so.
    if (m_frame->styleSheet() == frame)
        return;
    m_frame->setStyleSheet(frame);
    m_view->setStyleSheet(dark ? darkTreeStyle : treeStyle);
}

void SideBarWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyStyle();
}

void SideBarWidget::setGroups(const QSharedPointer<SystemFontGroupList>& systemGroups,
                              const QSharedPointer<UserFontGroupList>& userGroups)
{
    m_systemGroups = systemGroups;
    m_userGroups = userGroups;
    SideBarModel* old = m_model;
    m_model = new SideBarModel(systemGroups, userGroups, devicePixelRatioF(), this);
    m_view->setModel(m_model);
    delete old;
    m_view->expandAll();
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SideBarWidget::onGroupSelectionChanged);
    connect(m_model, &QAbstractItemModel::rowsInserted, m_view, &QTreeView::expandAll);
    // Whoever deleted the group that is looked at: the one that is always there takes its place.
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, [this] {
        if (m_lookedAt != 0 && !m_model->indexOfGroup(m_lookedAt).isValid())
            selectGroup(SystemFontGroupList::AllFonts);
    });
    sortGroups();
}

int SideBarWidget::selectedGroupId() const
{
    if (!m_view->selectionModel())
        return 0;
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? 0 : selected.first().data(SideBarModel::GroupIdRole).toInt();
}

int SideBarWidget::selectedUserGroupId() const
{
    return qMax(0, selectedGroupId());
}

FontGroupPtr SideBarWidget::selectedGroup() const
{
    const int id = selectedGroupId();
    if (id > 0)
        return m_userGroups->group(id);
    return id < 0 ? m_systemGroups->group(id) : FontGroupPtr();
}

void SideBarWidget::selectGroup(int id)
{
    const QModelIndex index = m_model ? m_model->indexOfGroup(id) : QModelIndex();
    if (index.isValid())
        m_view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void SideBarWidget::clearSelection()
{
    m_lookedAt = 0;
    m_view->clearSelection();
}

void SideBarWidget::onGroupSelectionChanged()
{
    if (const int id = selectedGroupId()) {
        m_lookedAt = id;
        emit groupIdSelected(id);
        emit groupSelected(selectedGroup());
    }
}

int SideBarWidget::groupIdAt(const QPoint& pos) const
{
    return m_view->indexAt(pos).data(SideBarModel::GroupIdRole).toInt();
}

void SideBarWidget::viewContextMenuRequest(QPoint pos)
{
    if (const int id = groupIdAt(pos))
        emit contextMenuRequested(id, m_view->viewport()->mapTo(this, pos));
}

void SideBarWidget::onUiSettingsChanged(KrvUiSettings::SettingId id)
{
    if (id == KrvUiSettings::SidGroupSortBy || id == KrvUiSettings::SidGroupSortOrder)
        sortGroups();
}

void SideBarWidget::sortGroups()
{
    if (!m_model)
        return;
    const KrvUiSettings* settings = KrvUiSettings::instance();
    const int role = settings->value(KrvUiSettings::SidGroupSortBy, int(SideBarModel::GroupIdRole)).toInt();
    const int order = settings->value(KrvUiSettings::SidGroupSortOrder, int(Qt::AscendingOrder)).toInt();
    qDebug() << "M_3_"
             << "SideBarWidget::sortGroups" << role << order;
    m_model->setSortRole(role);
    m_model->sort(0, order == Qt::DescendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void SideBarWidget::dragTo(const QPoint& pos)
{
    m_dragPosition = pos;
    const QModelIndex index = m_view->indexAt(pos);
    const QModelIndex target = index.parent().isValid() ? index : QModelIndex();
    if (m_delegate->dropTarget() != target) {
        m_delegate->setDropTarget(target);
        m_view->viewport()->update();
    }
    const bool atEdge = pos.y() < dragScrollZone || pos.y() >= m_view->viewport()->height() - dragScrollZone;
    if (!atEdge)
        m_dragScroll.stop();
    else if (!m_dragScroll.isActive())
        m_dragScroll.start();
}

void SideBarWidget::endDrag()
{
    m_dragScroll.stop();
    m_delegate->setDropTarget(QModelIndex());
    m_view->viewport()->update();
}

void SideBarWidget::scrollDrag()
{
    m_view->verticalScrollBar()->triggerAction(m_dragPosition.y() < dragScrollZone
                                                   ? QAbstractSlider::SliderSingleStepSub
                                                   : QAbstractSlider::SliderSingleStepAdd);
    dragTo(m_dragPosition);
}

bool SideBarWidget::eventFilter(QObject* watched, QEvent* event)
{
    // All drag events are answered here: the view's own handling would ask the model to take the data.
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        // A press on a caption or beside the rows would leave nothing selected while the list goes on showing a group.
        return groupIdAt(static_cast<QMouseEvent*>(event)->pos()) == 0;
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* drag = static_cast<QDragMoveEvent*>(event);
        const bool fonts = fonts::hasFontIds(drag->mimeData());
        const int group = groupIdAt(drag->pos());
        if (fonts && (group != 0 || event->type() == QEvent::DragEnter)) {
            drag->setDropAction(Qt::CopyAction);
            drag->accept();
        } else {
            drag->ignore();
        }
        if (fonts)
            dragTo(drag->pos());
        return true;
    }
    case QEvent::DragLeave:
        endDrag();
        return true;
    case QEvent::Drop: {
        endDrag();
        auto* drop = static_cast<QDropEvent*>(event);
        const QList<int> ids = fonts::fontIdsOf(drop->mimeData());
        const int group = groupIdAt(drop->pos());
        if (ids.isEmpty() || group == 0) {
            drop->ignore();
            return true;
        }
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        emit fontsDropped(ids, group);
        return true;
    }
    default:
        return QWidget::eventFilter(watched, event);
    }
}
