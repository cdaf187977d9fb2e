#include "qtService/ui/preferences/FMSScanPathSettings.h"

#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/sidebar/SideBarModel.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QLabel* caption(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

void select(QComboBox* box, KrvUiSettings::SettingId id)
{
    const KrvUiSettings* settings = KrvUiSettings::instance();
    const int entry = settings->contains(id) ? box->findData(settings->value(id).toInt()) : 0;
    box->setCurrentIndex(qMax(0, entry));
}

} // namespace

FMSScanPathSettings::FMSScanPathSettings(QWidget* parent)
    : AbstractPreferencesWindowTab(parent)
{
    setupUi();
    m_sortBy->addItem(tr("Creation date"), int(SideBarModel::GroupIdRole));
    m_sortBy->addItem(tr("Name"), int(SideBarModel::NameRole));
    m_sortBy->addItem(tr("Number of fonts"), int(SideBarModel::FontCountRole));
    m_sortOrder->addItem(tr("Ascending"), int(Qt::AscendingOrder));
    m_sortOrder->addItem(tr("Descending"), int(Qt::DescendingOrder));
    connect(m_edit, &QPushButton::clicked, this, &FMSScanPathSettings::editPath);
    connect(m_paths, &QListWidget::itemDoubleClicked, this, &FMSScanPathSettings::editPath);
    connect(m_remove, &QPushButton::clicked, this, &FMSScanPathSettings::deletePath);
    connect(m_paths, &QListWidget::itemSelectionChanged, this, &FMSScanPathSettings::updateButtons);
    updateButtons();
}

void FMSScanPathSettings::setupUi()
{
    setObjectName(QStringLiteral("FMSScanPathSettings"));
    setWindowTitle(tr("Form"));
    m_sortBy = new QComboBox(this);
    m_sortBy->setObjectName(QStringLiteral("cmbGroupSortBy"));
    m_sortOrder = new QComboBox(this);
    m_sortOrder->setObjectName(QStringLiteral("cmbGroupSortOrder"));
    m_paths = new QListWidget(this);
    m_paths->setObjectName(QStringLiteral("lw_paths"));
    m_paths->setAccessibleName(tr("Custom scan paths"));
    // Whichever way the interface runs, a path begins at its root.
    m_paths->setLayoutDirection(Qt::LeftToRight);
    auto* add = new QPushButton(tr("Add"), this);
    add->setObjectName(QStringLiteral("btn_add"));
    m_edit = new QPushButton(tr("Edit"), this);
    m_edit->setObjectName(QStringLiteral("btn_edit"));
    m_remove = new QPushButton(tr("Remove"), this);
    m_remove->setObjectName(QStringLiteral("btn_remove"));
    connect(add, &QPushButton::clicked, this, &FMSScanPathSettings::addPath);

    auto* sorting = new QFormLayout;
    sorting->addRow(tr("Sort by:"), m_sortBy);
    sorting->addRow(tr("Order:"), m_sortOrder);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(m_edit);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(caption(tr("Font group sorting"), this));
    layout->addLayout(sorting);
    layout->addSpacing(10);
    layout->addWidget(caption(tr("Custom scan paths"), this));
    layout->addWidget(m_paths, 1);
    layout->addLayout(buttons);
}

void FMSScanPathSettings::loadData()
{
    m_paths->clear();
    const QStringList paths = FontAdder::scanPaths();
    for (const QString& path : paths)
        m_paths->addItem(QDir::toNativeSeparators(path));
    select(m_sortBy, KrvUiSettings::SidGroupSortBy);
    select(m_sortOrder, KrvUiSettings::SidGroupSortOrder);
    updateButtons();
}

void FMSScanPathSettings::saveData()
{
    QStringList paths;
    for (int row = 0; row < m_paths->count(); ++row) {
        const QString path = m_paths->item(row)->text();
        if (!path.trimmed().isEmpty())
            paths.append(QDir::fromNativeSeparators(path));
    }
    FontAdder::setScanPaths(paths);
    KrvUiSettings* settings = KrvUiSettings::instance();
    settings->setValue(KrvUiSettings::SidGroupSortBy, m_sortBy->currentData());
    settings->setValue(KrvUiSettings::SidGroupSortOrder, m_sortOrder->currentData());
}

QString FMSScanPathSettings::askFolder()
{
    return QFileDialog::getExistingDirectory(this, QString(), QDir::homePath(), QFileDialog::ShowDirsOnly);
}

void FMSScanPathSettings::addPath()
{
    const QString folder = askFolder();
    if (!folder.isEmpty())
        m_paths->addItem(QDir::toNativeSeparators(folder));
}

void FMSScanPathSettings::editPath()
{
    QListWidgetItem* item = m_paths->currentItem();
    if (!item)
        return;
    const QString folder = askFolder();
    if (!folder.isEmpty())
        item->setText(QDir::toNativeSeparators(folder));
}

void FMSScanPathSettings::deletePath()
{
    delete m_paths->takeItem(m_paths->currentRow());
    updateButtons();
}

void FMSScanPathSettings::updateButtons()
{
    const bool hasCurrent = m_paths->currentItem() != nullptr;
    m_edit->setEnabled(hasCurrent);
    m_remove->setEnabled(hasCurrent);
}
