#include "qtService/ui/details/KrvCharacterMapWidget.h"

#include "fontfile/KrvFontFile.h"
#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/ui/details/CharacterMapWidget.h"
#include "qtService/ui/details/KrvCharacterMapModel.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>

namespace {

using Settings = KrvUiSettings;

constexpr int sizes[] = {12, 14, 16, 18, 20, 22, 24, 26, 30, 34, 40, 50, 60, 70, 80};
constexpr int defaultSize = 34;

} // namespace

KrvCharacterMapWidget::KrvCharacterMapWidget(QWidget* parent)
    : KrvAbstractFontDetailsWidget(parent)
    , m_model(new KrvCharacterMapModel(this))
{
    setupUi();
    const Settings* settings = Settings::instance();
    m_chosenRange = settings->value(Settings::SidCharacterMapRange, 0).toInt();
    for (const int size : sizes)
        m_size->addItem(QString::number(size), size);
    int entry = m_size->findData(settings->value(Settings::SidCharacterMapSize, defaultSize).toInt());
    if (entry < 0)
        entry = m_size->findData(defaultSize);
    m_size->setCurrentIndex(entry);
    m_model->setNormalImageSize(m_size->currentData().toInt());
    m_map->setModel(m_model);

    connect(m_range, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &KrvCharacterMapWidget::onCharacterRangeComboBoxIndexChanged);
    connect(m_size, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &KrvCharacterMapWidget::onFontSizeComboBoxIndexChanged);
}

void KrvCharacterMapWidget::setupUi()
{
    setObjectName(QStringLiteral("KrvCharacterMapWidget"));
    auto* rangeLabel = new QLabel(tr("Characters:"), this);
    m_range = new QComboBox(this);
    m_range->setObjectName(QStringLiteral("characterRangeComboBox"));
    m_range->setAccessibleName(tr("Character range"));
    m_range->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_range->setMinimumContentsLength(28);
    rangeLabel->setBuddy(m_range);
    auto* sizeLabel = new QLabel(tr("Size:"), this);
    m_size = new QComboBox(this);
    m_size->setObjectName(QStringLiteral("fontSizeComboBox"));
    m_size->setAccessibleName(tr("Character size in pixels"));
    sizeLabel->setBuddy(m_size);
    m_map = new CharacterMapWidget(this);
    m_map->setObjectName(QStringLiteral("characterMap"));
    m_map->setAccessibleName(tr("Character Map"));

    auto* row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("horizontalLayout"));
    row->setContentsMargins(8, 6, 8, 6);
    row->setSpacing(6);
    row->addWidget(rangeLabel);
    row->addWidget(m_range);
    row->addSpacing(16);
    row->addWidget(sizeLabel);
    row->addWidget(m_size);
    row->addStretch(1);
    auto* layout = new QGridLayout(this);
    layout->setObjectName(QStringLiteral("gridLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(row, 0, 0);
    layout->addWidget(m_map, 1, 0);
}

void KrvCharacterMapWidget::updateView()
{
    const QSignalBlocker blocker(m_range);
    m_range->clear();
    m_model->setDevicePixelRatio(devicePixelRatioF());
    if (!font()) {
        m_model->setFont(QString(), 0, {});
        return;
    }
    m_model->setFont(font()->fileName(), font()->faceIndex(),
                     KrvFontMetrics::MetricsCorrection::fromString(font()->fullMetricsCorrection()));
    const QList<int> ranges = m_model->ranges();
    for (const int range : ranges)
        m_range->addItem(range == CharacterMapFont::AllCharacters ? tr("All Characters")
                                                                  : KrvFontFile::unicodeBlock(range).name,
                         range);
    if (ranges.isEmpty())
        return;
    m_range->setCurrentIndex(qMax(0, m_range->findData(m_chosenRange)));
    m_model->setRange(m_range->currentData().toInt());
}

void KrvCharacterMapWidget::onCharacterRangeComboBoxIndexChanged()
{
    if (m_range->currentIndex() < 0)
        return;
    m_chosenRange = m_range->currentData().toInt();
    Settings::instance()->setValue(Settings::SidCharacterMapRange, m_chosenRange);
    m_model->setRange(m_chosenRange);
}

void KrvCharacterMapWidget::onFontSizeComboBoxIndexChanged()
{
    const int size = m_size->currentData().toInt();
    Settings::instance()->setValue(Settings::SidCharacterMapSize, size);
    m_model->setNormalImageSize(size);
}

void KrvCharacterMapWidget::showEvent(QShowEvent* event)
{
    KrvAbstractFontDetailsWidget::showEvent(event);
    m_model->setDevicePixelRatio(devicePixelRatioF());
}

bool KrvCharacterMapWidget::event(QEvent* event)
{
    // Moved to a screen of another resolution.
    if (event->type() == QEvent::ScreenChangeInternal)
        m_model->setDevicePixelRatio(devicePixelRatioF());
    return KrvAbstractFontDetailsWidget::event(event);
}
