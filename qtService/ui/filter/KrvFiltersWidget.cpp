#include "qtService/ui/filter/KrvFiltersWidget.h"

#include "fontfile/KrvFontFile.h"
#include "qtService/ui/window/Palette.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

const QString trueTypeFormat = QStringLiteral("TrueType");
const QString openTypeFormat = QStringLiteral("OpenType");
const QString type1Format = QStringLiteral("Type 1");

// The two last blocks gather what fits nowhere else; as filters they would say nothing.
constexpr int firstCatchAllBlock = 32;

} // namespace

KrvFiltersWidget::KrvFiltersWidget(QWidget* parent)
    : QWidget(parent)
{
    setupUi();
    for (QCheckBox* box : {m_trueType, m_openType, m_type1})
        connect(box, &QCheckBox::stateChanged, this, &KrvFiltersWidget::onFormatsCheckboxesChanged);
    connect(m_serif, &QCheckBox::toggled, this, &KrvFiltersWidget::serifsEnabledChanged);
    connect(m_sansSerif, &QCheckBox::toggled, this, &KrvFiltersWidget::sansSerifsEnabledChanged);
    connect(m_mono, &QCheckBox::toggled, this, &KrvFiltersWidget::monosEnabledChanged);
    connect(m_nonMono, &QCheckBox::toggled, this, &KrvFiltersWidget::nonMonosEnabledChanged);
    connect(m_symbol, &QCheckBox::toggled, this, &KrvFiltersWidget::symbolsEnabledChanged);
    connect(m_nonSymbol, &QCheckBox::toggled, this, &KrvFiltersWidget::nonSymbolsEnabledChanged);
    connect(m_foundry, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { emit currentFoundryChanged(currentFoundry()); });

    const QList<UnicodeBlock> blocks = KrvFontFile::unicodeBlocks();
    for (int block = 0; block < firstCatchAllBlock; ++block) {
        auto* item = new QListWidgetItem(blocks.at(block).name, m_ranges);
        item->setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        item->setCheckState(Qt::Unchecked);
        item->setData(Qt::UserRole, block);
    }
    connect(m_ranges, &QListWidget::itemChanged, this, &KrvFiltersWidget::onCharacterRangeItemChanged);
    setFoundries({});
    reset();
}

QWidget* KrvFiltersWidget::addTab(const char* objectName, const QString& title, int layoutNumber)
{
    auto* page = new QWidget;
    page->setObjectName(QLatin1String(objectName));
    auto* layout = new QVBoxLayout(page);
    layout->setObjectName(QStringLiteral("verticalLayout_%1").arg(layoutNumber));
    m_tabs->addTab(page, title);
    return page;
}

QCheckBox* KrvFiltersWidget::addCheckBox(QWidget* page, const char* objectName, const QString& text)
{
    auto* box = new QCheckBox(text, page);
    box->setObjectName(QLatin1String(objectName));
    ui::outlineChecks(box);
    page->layout()->addWidget(box);
    return box;
}

void KrvFiltersWidget::setupUi()
{
    setObjectName(QStringLiteral("KrvFiltersWidget"));
    setWindowTitle(tr("Form"));
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tabWidget"));
    m_tabs->setAccessibleName(tr("Filters"));
    m_tabs->setDocumentMode(true);
    layout->addWidget(m_tabs);

    QWidget* format = addTab("formatTab", tr("Format"), 2);
    m_openType = addCheckBox(format, "openTypeCheckBox", tr("OpenType"));
    m_trueType = addCheckBox(format, "trueTypeCheckBox", tr("TrueType"));
    m_type1 = addCheckBox(format, "type1CheckBox", tr("Type1"));
    QWidget* serif = addTab("serifTab", tr("Serif"), 3);
    m_serif = addCheckBox(serif, "serifCheckBox", tr("Serif"));
    m_sansSerif = addCheckBox(serif, "sansSerifCheckBox", tr("Sans Serif"));
    QWidget* symbol = addTab("symbolTab", tr("Symbol"), 4);
    m_symbol = addCheckBox(symbol, "symbolCheckBox", tr("Symbol"));
    m_nonSymbol = addCheckBox(symbol, "nonSymbolCheckBox", tr("Non Symbol"));
    QWidget* mono = addTab("monoTab", tr("Mono"), 5);
    m_mono = addCheckBox(mono, "monoCheckBox", tr("Monospaced"));
    m_nonMono = addCheckBox(mono, "nonMonoCheckBox", tr("Non Monospaced"));

    QWidget* foundry = addTab("foundryTab", tr("Foundry"), 6);
    auto* foundryLabel = new QLabel(tr("Foundry Name:"), foundry);
    foundryLabel->setObjectName(QStringLiteral("foundryNameLabel"));
    m_foundry = new QComboBox(foundry);
    m_foundry->setObjectName(QStringLiteral("foundryComboBox"));
    m_foundry->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_foundry->setMinimumContentsLength(30);
    foundryLabel->setBuddy(m_foundry);
    auto* foundryRow = new QHBoxLayout;
    foundryRow->setObjectName(QStringLiteral("horizontalLayout"));
    foundryRow->addWidget(foundryLabel);
    foundryRow->addWidget(m_foundry, 1);
    static_cast<QVBoxLayout*>(foundry->layout())->addLayout(foundryRow);

    QWidget* ranges = addTab("characterRangeTab", tr("Character Range"), 7);
    m_ranges = new QListWidget(ranges);
    m_ranges->setObjectName(QStringLiteral("lwCharacterRanges"));
    m_ranges->setAccessibleName(tr("Character Range"));
    ui::outlineChecks(m_ranges);
    ranges->layout()->addWidget(m_ranges);

    for (QWidget* page : {format, serif, symbol, mono, foundry})
        static_cast<QVBoxLayout*>(page->layout())->addStretch();
}

QStringList KrvFiltersWidget::enabledFormats() const
{
    QStringList formats;
    if (m_trueType->isChecked())
        formats.append(trueTypeFormat);
    if (m_openType->isChecked())
        formats.append(openTypeFormat);
    if (m_type1->isChecked())
        formats.append(type1Format);
    return formats;
}

void KrvFiltersWidget::setEnabledFormats(QStringList formats)
{
    m_trueType->setChecked(formats.isEmpty() || formats.contains(trueTypeFormat));
    m_openType->setChecked(formats.isEmpty() || formats.contains(openTypeFormat));
    m_type1->setChecked(formats.isEmpty() || formats.contains(type1Format));
}

void KrvFiltersWidget::onFormatsCheckboxesChanged()
{
    emit enabledFormatsChanged(enabledFormats());
}

bool KrvFiltersWidget::serifsEnabled() const
{
    return m_serif->isChecked();
}

void KrvFiltersWidget::setSerifsEnabled(bool enabled)
{
    m_serif->setChecked(enabled);
}

bool KrvFiltersWidget::sansSerifsEnabled() const
{
    return m_sansSerif->isChecked();
}

void KrvFiltersWidget::setSansSerifsEnabled(bool enabled)
{
    m_sansSerif->setChecked(enabled);
}

bool KrvFiltersWidget::monosEnabled() const
{
    return m_mono->isChecked();
}

void KrvFiltersWidget::setMonosEnabled(bool enabled)
{
    m_mono->setChecked(enabled);
}

bool KrvFiltersWidget::nonMonosEnabled() const
{
    return m_nonMono->isChecked();
}

void KrvFiltersWidget::setNonMonosEnabled(bool enabled)
{
    m_nonMono->setChecked(enabled);
}

bool KrvFiltersWidget::symbolsEnabled() const
{
    return m_symbol->isChecked();
}

void KrvFiltersWidget::setSymbolsEnabled(bool enabled)
{
    m_symbol->setChecked(enabled);
}

bool KrvFiltersWidget::nonSymbolsEnabled() const
{
    return m_nonSymbol->isChecked();
}

void KrvFiltersWidget::setNonSymbolsEnabled(bool enabled)
{
    m_nonSymbol->setChecked(enabled);
}

void KrvFiltersWidget::setFoundries(QStringList foundries)
{
    const QString current = currentFoundry();
    if (!foundries.contains(QString()))
        foundries.append(QString());
    foundries.sort(Qt::CaseInsensitive);
    m_foundries = foundries;
    {
        const QSignalBlocker blocker(m_foundry);
        m_foundry->clear();
        m_foundry->addItems(foundries);
        setCurrentFoundry(current);
    }
    emit foundriesChanged(m_foundries);
}

QString KrvFiltersWidget::currentFoundry() const
{
    return m_foundry->currentText();
}

void KrvFiltersWidget::setCurrentFoundry(QString foundry)
{
    const int index = m_foundries.indexOf(foundry);
    if (index >= 0)
        m_foundry->setCurrentIndex(index);
}

QList<int> KrvFiltersWidget::selectedCharacterRanges() const
{
    QList<int> ranges;
    for (int row = 0; row < m_ranges->count(); ++row) {
        if (m_ranges->item(row)->checkState() == Qt::Checked)
            ranges.append(m_ranges->item(row)->data(Qt::UserRole).toInt());
    }
    return ranges;
}

void KrvFiltersWidget::onCharacterRangeItemChanged()
{
    emit selectedCharacterRangesChanged(selectedCharacterRanges());
}

void KrvFiltersWidget::setSelectedCharacterRanges(QList<int> ranges)
{
    for (int row = 0; row < m_ranges->count(); ++row) {
        QListWidgetItem* item = m_ranges->item(row);
        item->setCheckState(ranges.contains(item->data(Qt::UserRole).toInt()) ? Qt::Checked : Qt::Unchecked);
    }
}

void KrvFiltersWidget::reset()
{
    setEnabledFormats({});
    for (QCheckBox* box : {m_serif, m_sansSerif, m_symbol, m_nonSymbol, m_mono, m_nonMono})
        box->setChecked(true);
    setCurrentFoundry(QString());
    setSelectedCharacterRanges({});
}
