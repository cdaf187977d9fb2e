#include "qtService/ui/dialogs/FontActivationDialog.h"

#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"

#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWindow>

namespace {

constexpr int actionColumnWidth = 150;
const QSize reportSize(860, 460);

QString fontName(const StaticFontPtr& font)
{
    return QStringLiteral("%1 %2").arg(font->familyName(), font->styleName());
}

} // namespace

FontActivationDialog::FontActivationDialog(const QSharedPointer<FontManagementService>& service,
                                           const QList<int>& fontIdList, kerval::systemfm::ActivityType activityType,
                                           const QString& title, QWidget* parent)
    : QDialog(parent)
    , m_service(service)
    , m_fontIds(fontIdList)
    , m_activityType(activityType)
{
    setupUi();
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    for (QWidget* report :
         {static_cast<QWidget*>(m_tableDescription), static_cast<QWidget*>(m_table),
          static_cast<QWidget*>(m_treeDescription), static_cast<QWidget*>(m_tree), static_cast<QWidget*>(m_close)})
        report->hide();
    m_description->setText(isActivating() ? tr("Activating %n font(s)", nullptr, fontIdList.size())
                                          : tr("Deactivating %n font(s)", nullptr, fontIdList.size()));
    connect(this, &QDialog::rejected, this, &FontActivationDialog::onRejected);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_close, &QPushButton::clicked, this, &QDialog::accept);
    adjustSize();
}

void FontActivationDialog::setupUi()
{
    setObjectName(QStringLiteral("FontActivationDialog"));
    const auto label = [this](const char* name) {
        auto* widget = new QLabel(this);
        widget->setObjectName(QLatin1String(name));
        widget->setTextFormat(Qt::PlainText);
        return widget;
    };
    m_description = label("lblDescription");
    m_description->setMinimumWidth(360);
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("progressBar"));
    m_bar->setRange(0, 0);
    m_tableDescription = label("lblTableDescription");
    m_table = new QTableWidget(0, 4, this);
    m_table->setObjectName(QStringLiteral("tableWidget"));
    m_table->setHorizontalHeaderLabels({tr("Action"), tr("Font"), tr("Filename"), tr("Conflicting Font Filename")});
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    m_table->setColumnWidth(0, actionColumnWidth);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_treeDescription = label("lblTreeDescription");
    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(QStringLiteral("treeWidget"));
    m_tree->setHeaderLabels({tr("Font"), tr("Filename")});
    m_tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_tree->header()->setStretchLastSection(true);
    // Long paths keep their file's name.
    m_tree->setTextElideMode(Qt::ElideMiddle);
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("btnCancel"));
    m_close = new QPushButton(tr("Close"), this);
    m_close->setObjectName(QStringLiteral("btnClose"));

    auto* buttons = new QHBoxLayout;
    buttons->setObjectName(QStringLiteral("horizontalLayout"));
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_close);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addWidget(m_description);
    layout->addWidget(m_bar);
    layout->addWidget(m_tableDescription);
    layout->addWidget(m_table);
    layout->addWidget(m_treeDescription);
    layout->addWidget(m_tree);
    layout->addLayout(buttons);
}

int FontActivationDialog::exec()
{
    m_command = m_service->setFontActivityType(m_fontIds, m_activityType);
    if (!m_command)
        return Rejected;
    connect(m_command.data(), &AbstractAsynchronousCommand::stateChanged, this,
            &FontActivationDialog::onCommandStateChanged);
    connect(m_command.data(), &FontActivityChangeCommand::currentFontChanged, this,
            &FontActivationDialog::onCurrentFontChanged);
    connect(m_command.data(), &AbstractAsynchronousCommand::progressChanged, this,
            &FontActivationDialog::onProgressChanged);
    m_command->start();
    return QDialog::exec();
}

void FontActivationDialog::onProgressChanged(int progressTotal, int)
{
    // A change of the total reports itself as the current value too; the command knows better.
    m_bar->setRange(0, progressTotal);
    m_bar->setValue(m_command->progressCurrent());
}

void FontActivationDialog::onCurrentFontChanged()
{
    if (const StaticFontPtr font = m_command->currentFont())
        m_description->setText((isActivating() ? tr("Activating %1") : tr("Deactivating %1")).arg(fontName(font)));
}

void FontActivationDialog::onCommandStateChanged(AbstractAsynchronousCommand::State state)
{
    if (state == AbstractAsynchronousCommand::Finished || state == AbstractAsynchronousCommand::Failed)
        checkResults();
}

void FontActivationDialog::onRejected()
{
    if (m_command && (m_command->state() == AbstractAsynchronousCommand::Running ||
                      m_command->state() == AbstractAsynchronousCommand::Idle)) {
        m_command->disconnect(this);
        m_command->cancel();
    }
}

StaticFontPtr FontActivationDialog::font(int fontId) const
{
    const auto repository = m_service->repository();
    return repository ? repository->font(fontId) : StaticFontPtr();
}

void FontActivationDialog::checkResults()
{
    const QHash<int, ActivityChangeResult> results = m_command->results();
    // In the order the user chose the fonts in, not in the hash's.
    for (const int id : qAsConst(m_fontIds)) {
        const ActivityChangeResult result = results.value(id);
        switch (result.error) {
        case fms::NoError:
            break;
        case fms::SystemFontProtected:
            addFailure(tr("Activity of system fonts can't be changed"), id);
            break;
        case fms::ActivationConflict:
            if (result.conflictingFontId != 0)
                addConflict(result);
            else
                addFailure(tr("Unsupported font on this operating system"), id);
            break;
        default:
            addFailure(tr("General activation faliure"), id);
            break;
        }
    }
    const bool hasConflicts = m_table->rowCount() > 0;
    const bool hasFailures = m_tree->topLevelItemCount() > 0;
    m_bar->hide();
    m_cancel->hide();
    m_close->show();
    m_close->setDefault(true);
    m_close->setFocus();
    if (!hasConflicts && !hasFailures) {
        const int count = m_fontIds.size();
        const QString activated =
            count == 1 ? tr("1 font activated") : tr("%n fonts activated", "Not for one font", count);
        const QString deactivated =
            count == 1 ? tr("1 font deactivated") : tr("%n fonts deactivated", "Not for one font", count);
        // Many programs look for fonts only when they start.
        m_description->setText((isActivating() ? activated : deactivated) + QLatin1Char('\n') +
                               tr("Programs that are already running may need a restart to notice."));
        // The dialog has a size of its own by now, and the text may take more lines than the font's name.
        adjustSize();
        return;
    }
    m_description->setText(isActivating() ? tr("Some fonts could not be activated.")
                                          : tr("Some fonts could not be deactivated."));
    m_tableDescription->setText(tr("The following fonts have the name of a font that is active already:"));
    m_treeDescription->setText(isActivating() ? tr("Failed to activate the following fonts:")
                                              : tr("Failed to deactivate the following fonts:"));
    m_tableDescription->setVisible(hasConflicts);
    m_table->setVisible(hasConflicts);
    m_treeDescription->setVisible(hasFailures);
    m_tree->setVisible(hasFailures);
    m_tree->expandAll();
    makeRoomForReport();
}

// Grows around its middle, within the screen. While the window manager still puts a new window in its frame, the window
// is said to be in the corner of the screen; it comes up over its parent then.
void FontActivationDialog::makeRoomForReport()
{
    const QRect room = screen()->availableGeometry();
    const QSize frame = frameGeometry().size() - size();
    const bool isPlaced = windowHandle() && windowHandle()->isExposed();
    const QWidget* around = isPlaced || !parentWidget() ? this : parentWidget()->window();
    const QPoint middle = around->frameGeometry().center();
    resize(size().expandedTo(reportSize).boundedTo(room.size() - frame));
    QRect place(QPoint(), size() + frame);
    place.moveCenter(middle);
    move(qBound(room.left(), place.left(), room.left() + room.width() - place.width()),
         qBound(room.top(), place.top(), room.top() + room.height() - place.height()));
}

void FontActivationDialog::addConflict(const ActivityChangeResult& result)
{
    const StaticFontPtr refused = font(result.fontId);
    const StaticFontPtr other = font(result.conflictingFontId);
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    m_table->setItem(row, 0, new QTableWidgetItem(tr("Not activated")));
    m_table->setItem(row, 1, new QTableWidgetItem(refused ? fontName(refused) : QString()));
    m_table->setItem(row, 2, new QTableWidgetItem(refused ? refused->fileName() : QString()));
    m_table->setItem(row, 3, new QTableWidgetItem(other ? other->fileName() : QString()));
}

void FontActivationDialog::addFailure(const QString& reason, int fontId)
{
    QTreeWidgetItem* parent = nullptr;
    for (int i = 0; i < m_tree->topLevelItemCount() && !parent; ++i) {
        if (m_tree->topLevelItem(i)->text(0) == reason)
            parent = m_tree->topLevelItem(i);
    }
    if (!parent) {
        parent = new QTreeWidgetItem(m_tree, {reason});
        parent->setFirstColumnSpanned(true);
    }
    const StaticFontPtr failed = font(fontId);
    new QTreeWidgetItem(parent,
                        {failed ? fontName(failed) : QString::number(fontId), failed ? failed->fileName() : QString()});
}
