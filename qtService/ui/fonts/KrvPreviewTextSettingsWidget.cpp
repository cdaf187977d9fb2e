#include "qtService/ui/fonts/KrvPreviewTextSettingsWidget.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

constexpr int typingPauseMs = 1000;
constexpr int offeredSizes[] = {8, 10, 12, 14, 18, 20, 22, 24, 26, 30, 34, 40, 50, 60, 70, 80};

QStringList sampleTexts()
{
    QStringList texts;
    QFile file(QStringLiteral(":/ui/sample_texts.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return texts;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (!line.trimmed().isEmpty())
            texts.append(line.trimmed());
    }
    return texts;
}

} // namespace

KrvPreviewTextSettingsWidget::KrvPreviewTextSettingsWidget(QWidget* parent)
    : QWidget(parent)
{
    setupUi();
    // The first entry is the sample each row makes of its font's own name.
    m_sampleText->addItem(tr("A sentence with the font's name"), QString());
    const QStringList texts = sampleTexts();
    for (const QString& text : texts)
        m_sampleText->addItem(text, text);
    m_sampleText->addItem(tr("Own sample text"));
    for (const int size : offeredSizes)
        m_size->addItem(tr("%1 px").arg(size), size);
    m_ownText->setEnabled(false);

    m_typing.setSingleShot(true);
    m_typing.setInterval(typingPauseMs);
    connect(&m_typing, &QTimer::timeout, this, &KrvPreviewTextSettingsWidget::onCustomPreviewTextChanged);
    connect(m_ownText, &QPlainTextEdit::textChanged, &m_typing, qOverload<>(&QTimer::start));
    connect(m_sampleText, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &KrvPreviewTextSettingsWidget::onPreviewTextSelectionChanged);
    connect(m_size, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &KrvPreviewTextSettingsWidget::onPreviewSizeChanged);
}

void KrvPreviewTextSettingsWidget::setupUi()
{
    setObjectName(QStringLiteral("KrvPreviewTextSettingsWidget"));
    setWindowTitle(tr("Form"));
    auto* sampleLabel = new QLabel(tr("Sample text:"), this);
    sampleLabel->setObjectName(QStringLiteral("sampleTextLabel"));
    m_sampleText = new QComboBox(this);
    m_sampleText->setObjectName(QStringLiteral("sampleTextComboBox"));
    m_sampleText->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_sampleText->setMinimumContentsLength(32);
    sampleLabel->setBuddy(m_sampleText);
    auto* sizeLabel = new QLabel(tr("Preview size:"), this);
    sizeLabel->setObjectName(QStringLiteral("previewSize"));
    m_size = new QComboBox(this);
    m_size->setObjectName(QStringLiteral("previewSizeComboBox"));
    m_size->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_size->setMinimumContentsLength(6);
    sizeLabel->setBuddy(m_size);
    auto* ownLabel = new QLabel(tr("Own sample text:"), this);
    ownLabel->setObjectName(QStringLiteral("ownSampleTextLabel"));
    m_ownText = new QPlainTextEdit(this);
    m_ownText->setObjectName(QStringLiteral("sampleTextEditor"));
    m_ownText->setTabChangesFocus(true);
    ownLabel->setBuddy(m_ownText);

    auto* row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("horizontalLayout"));
    row->addWidget(sampleLabel);
    row->addWidget(m_sampleText, 1);
    row->addSpacing(16);
    row->addWidget(sizeLabel);
    row->addWidget(m_size);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addLayout(row);
    layout->addWidget(ownLabel);
    layout->addWidget(m_ownText, 1);
}

bool KrvPreviewTextSettingsWidget::isOwnTextChosen() const
{
    return m_sampleText->currentIndex() == m_sampleText->count() - 1;
}

QString KrvPreviewTextSettingsWidget::previewText() const
{
    return isOwnTextChosen() ? m_ownText->toPlainText() : m_sampleText->currentData().toString();
}

int KrvPreviewTextSettingsWidget::previewSize() const
{
    return m_size->currentData().toInt();
}

void KrvPreviewTextSettingsWidget::setPreviewText(QString text)
{
    const int last = m_sampleText->count() - 1;
    int entry = last;
    for (int i = 0; i < last && entry == last; ++i) {
        if (m_sampleText->itemData(i).toString() == text)
            entry = i;
    }
    if (entry == last) {
        const QSignalBlocker blocker(m_ownText);
        m_ownText->setPlainText(text);
    }
    m_sampleText->setCurrentIndex(entry);
    m_ownText->setEnabled(entry == last);
}

void KrvPreviewTextSettingsWidget::setPreviewSize(int size)
{
    m_size->setCurrentIndex(m_size->findData(size));
}

void KrvPreviewTextSettingsWidget::onPreviewTextSelectionChanged()
{
    m_typing.stop();
    m_ownText->setEnabled(isOwnTextChosen());
    emit previewTextChanged(previewText());
}

void KrvPreviewTextSettingsWidget::onCustomPreviewTextChanged()
{
    if (isOwnTextChosen())
        emit previewTextChanged(m_ownText->toPlainText());
}

void KrvPreviewTextSettingsWidget::onPreviewSizeChanged()
{
    if (previewSize() > 0)
        emit previewSizeChanged(previewSize());
}
