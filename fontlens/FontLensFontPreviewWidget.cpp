#include "fontlens/FontLensFontPreviewWidget.h"

#include "qtService/ui/messages/OpenOutside.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>

namespace {

constexpr int firstPreviewSize = 24;
constexpr int smallestPreviewSize = 4;
constexpr int largestPreviewSize = 48;

} // namespace

FontLensFontPreviewWidget::FontLensFontPreviewWidget(QWidget* parent)
    : QWidget(parent)
    , m_previewSize(firstPreviewSize)
{
    setupUi();
    connect(m_text, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FontLensFontPreviewWidget::previewTextChanged);
    connect(m_enlarge, &QToolButton::clicked, this, &FontLensFontPreviewWidget::increasePreviewSize);
    connect(m_reduce, &QToolButton::clicked, this, &FontLensFontPreviewWidget::decreasePreviewSize);
    connect(m_shop, &QPushButton::clicked, this, &FontLensFontPreviewWidget::onOpenStoreUrlClicked);
    setPreviewSize(m_previewSize);
}

void FontLensFontPreviewWidget::setupUi()
{
    setObjectName(QStringLiteral("FontLensFontPreviewWidget"));
    m_text = new QComboBox(this);
    m_text->setObjectName(QStringLiteral("cmbPreviewText"));
    m_text->setAccessibleName(tr("Sample text"));
    m_text->setEditable(true);
    m_text->setInsertPolicy(QComboBox::InsertAtBottom);
    m_text->setDuplicatesEnabled(false);
    m_text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_text->setMinimumContentsLength(20);
    m_text->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_text->addItems({QStringLiteral("The quick brown fox jumps over lazy dog"),
                      QStringLiteral("Lorem ipsum dolor sit amet, consectetur adipiscing elit."),
                      QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWYZabcdefghijklmnopqrstuvwyz,.!1234567890")});
    m_text->lineEdit()->setCursorPosition(0);
    m_reduce = makeSizeButton("btnDecreaseSize", QStringLiteral("\u2212"), tr("Smaller preview"));
    m_enlarge = makeSizeButton("btnIncreaseSize", QStringLiteral("+"), tr("Larger preview"));
    m_sizeLabel = new QLabel(this);
    m_sizeLabel->setObjectName(QStringLiteral("lblSize"));
    m_sizeLabel->setAlignment(Qt::AlignCenter);
    m_sizeLabel->setMinimumWidth(m_sizeLabel->fontMetrics().horizontalAdvance(QStringLiteral("00px")));
    m_shop = new QPushButton(this);
    m_shop->setObjectName(QStringLiteral("btnOpenStoreUrl"));
    m_shop->setAutoDefault(false);
    m_shop->setEnabled(false);
    m_shop->hide(); // until there is a font to name

    auto* scrollArea = new QScrollArea(this);
    scrollArea->setObjectName(QStringLiteral("scrollArea"));
    scrollArea->setStyleSheet(QStringLiteral("#scrollArea{background-color: white}"));
    scrollArea->setAccessibleName(tr("Preview of the font"));
    scrollArea->setWidgetResizable(true);
    auto* content = new QWidget(scrollArea);
    content->setObjectName(QStringLiteral("scrollAreaWidgetContents"));
    content->setStyleSheet(QStringLiteral("background-color: white"));
    m_preview = new QLabel(content);
    m_preview->setObjectName(QStringLiteral("lblPreview"));
    auto* contentLayout = new QHBoxLayout(content);
    contentLayout->addWidget(m_preview);
    contentLayout->addStretch();
    scrollArea->setWidget(content);
    const QMargins margins = contentLayout->contentsMargins();
    scrollArea->setFixedHeight(largestPreviewSize + margins.top() + margins.bottom() + 2 * scrollArea->frameWidth() +
                               scrollArea->style()->pixelMetric(QStyle::PM_ScrollBarExtent));

    auto* row = new QHBoxLayout;
    row->addWidget(m_text, 1);
    row->addSpacing(8);
    row->addWidget(m_reduce);
    row->addWidget(m_sizeLabel);
    row->addWidget(m_enlarge);
    row->addSpacing(8);
    row->addWidget(m_shop);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(scrollArea);
}

QToolButton* FontLensFontPreviewWidget::makeSizeButton(const char* objectName, const QString& text,
                                                       const QString& description)
{
    auto* button = new QToolButton(this);
    button->setObjectName(QLatin1String(objectName));
    button->setText(text);
    button->setToolTip(description);
    button->setAccessibleName(description);
    button->setAutoRepeat(true);
    return button;
}

void FontLensFontPreviewWidget::setFont(const FontRecognizer::FontDataPtr& font)
{
    QString text;
    if (font) {
        text = tr("Buy %1 %2").arg(font->name, font->style);
        text.replace(QLatin1Char('&'), QLatin1String("&&"));
    }
    m_shop->setText(text);
    m_shop->setVisible(font && m_hasShop);
    setUrl(QUrl());
}

void FontLensFontPreviewWidget::setUrl(const QUrl& url)
{
    m_url = url;
    m_shop->setEnabled(!m_url.isEmpty());
}

void FontLensFontPreviewWidget::setHasShop(bool hasShop)
{
    m_hasShop = hasShop;
    m_shop->setVisible(hasShop && !m_shop->text().isEmpty());
}

void FontLensFontPreviewWidget::setImage(const QImage& image)
{
    m_image = image;
    showImage();
}

QString FontLensFontPreviewWidget::currentText() const
{
    return m_text->currentText();
}

void FontLensFontPreviewWidget::onOpenStoreUrlClicked()
{
    if (!m_url.isEmpty())
        ui::openAddress(m_url);
}

void FontLensFontPreviewWidget::increasePreviewSize()
{
    if (m_previewSize + 1 <= largestPreviewSize)
        setPreviewSize(m_previewSize + 1);
}

void FontLensFontPreviewWidget::decreasePreviewSize()
{
    if (m_previewSize - 1 >= smallestPreviewSize)
        setPreviewSize(m_previewSize - 1);
}

void FontLensFontPreviewWidget::setPreviewSize(int size)
{
    m_previewSize = size;
    m_sizeLabel->setText(tr("%1px").arg(size));
    showImage();
}

void FontLensFontPreviewWidget::showImage()
{
    if (m_image.isNull()) {
        m_preview->clear();
        return;
    }
    const qreal ratio = devicePixelRatioF();
    QImage scaled = m_image.scaledToHeight(qRound(m_previewSize * ratio), Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    m_preview->setPixmap(QPixmap::fromImage(scaled));
}
