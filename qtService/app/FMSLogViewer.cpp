#include "qtService/app/FMSLogViewer.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/app/core/FMSLogModel.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QIcon>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTableView>
#include <QVBoxLayout>

namespace {

constexpr int columnPadding = 16;

} // namespace

FMSLogViewer::FMSLogViewer(QWidget* parent)
    : QWidget(parent)
    , m_model(new FMSLogModel(this))
{
    setObjectName(QStringLiteral("FMSLogViewer"));
    setWindowTitle(tr("Kerval Log"));
    setWindowIcon(QIcon(QStringLiteral(":/icon1.png")));
    m_view = new QTableView(this);
    m_view->setObjectName(QStringLiteral("tv_log"));
    m_view->setAccessibleName(tr("Kerval Log"));
    m_view->setModel(m_model);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 6);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setAlternatingRowColors(true);
    m_view->setShowGrid(false);
    m_view->setTabKeyNavigation(false);
    // Long paths keep their file's name.
    m_view->setWordWrap(false);
    m_view->setTextElideMode(Qt::ElideMiddle);
    auto* close = new QPushButton(tr("Close"), this);
    close->setObjectName(QStringLiteral("btn_close"));
    auto* messages = new QPushButton(tr("Messages"), this);
    messages->setObjectName(QStringLiteral("btn_messages"));
    messages->setToolTip(tr("What the service has said since it was started"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(messages);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_view, 1);
    layout->addLayout(buttons);
    resize(820, 520);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this, &QWidget::close);
    connect(messages, &QPushButton::clicked, this, &FMSLogViewer::messagesRequested);
    connect(m_model, &QAbstractItemModel::layoutChanged, this, &FMSLogViewer::onLogChanged);
    adjustColumns();
    m_view->scrollToBottom();
}

void FMSLogViewer::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    emit closed();
}

void FMSLogViewer::adjustColumns()
{
    // The view measures the rows it shows, not the thousands of a long log.
    m_view->horizontalHeader()->setResizeContentsPrecision(50);
    m_view->resizeColumnToContents(FMSLogModel::TimeColumn);
    m_view->setColumnWidth(FMSLogModel::TimeColumn, m_view->columnWidth(FMSLogModel::TimeColumn) + columnPadding);
    m_view->resizeColumnToContents(FMSLogModel::TypeColumn);
    // Whatever kinds of events are in view now, the others come too.
    int widest = m_view->columnWidth(FMSLogModel::TypeColumn);
    for (int type = FMSLog::ScanStarted; type <= FMSLog::FontRemoved; ++type)
        widest = qMax(widest, m_view->fontMetrics().horizontalAdvance(FMSLog::typeText(type)) + columnPadding);
    m_view->setColumnWidth(FMSLogModel::TypeColumn, widest);
}

void FMSLogViewer::onLogChanged()
{
    const QScrollBar* bar = m_view->verticalScrollBar();
    const bool atEnd = bar->value() >= bar->maximum() - bar->singleStep();
    adjustColumns();
    if (atEnd)
        m_view->scrollToBottom();
}
