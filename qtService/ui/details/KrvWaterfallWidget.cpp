#include "qtService/ui/details/KrvWaterfallWidget.h"

#include "fontfile/KrvFontPainter.h"
#include "qtService/ui/details/DetailsStyle.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTableWidget>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int sizes[] = {8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 30, 34, 40, 50, 60, 70, 80};
constexpr int sizeCount = int(std::size(sizes));
// A longer text is no sample any more, and its picture is as wide as the text is long.
constexpr int maximumTextLength = 300;
constexpr int leftMargin = 8;
constexpr int emptyRowHeight = 24;

// The item views would scale the decoration to an icon; this draws it as it is, in the colour of text.
class WaterfallDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const QImage image = index.data(Qt::DecorationRole).value<QImage>();
        painter->save();
        painter->setClipRect(option.rect);
        if (option.state & QStyle::State_HasFocus) {
            QStyleOptionFocusRect focus;
            focus.QStyleOption::operator=(option);
            const QWidget* widget = option.widget;
            QStyle* style = widget ? widget->style() : QApplication::style();
            style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, widget);
        }
        if (!image.isNull()) {
            const double height = image.height() / image.devicePixelRatio();
            const double ratio = painter->device()->devicePixelRatioF();
            // On whole pixels of the screen: between them the small sizes blur.
            const double top = std::round((option.rect.top() + (option.rect.height() - height) / 2) * ratio) / ratio;
            painter->drawImage(QPointF(option.rect.left() + leftMargin, top),
                               ui::tinted(image, option.palette.color(QPalette::Text)));
        }
        painter->restore();
    }
};

} // namespace

KrvWaterfallWidget::KrvWaterfallWidget(QWidget* parent)
    : KrvAbstractFontDetailsWidget(parent)
    , m_baseSize(*std::max_element(std::begin(sizes), std::end(sizes)))
{
    setupUi();
    fillTexts();
    connect(m_text, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &KrvWaterfallWidget::onPreviewTextIndexChanged);
    connect(m_text, &QComboBox::editTextChanged, this, &KrvWaterfallWidget::onPreviewTextIndexChanged);
}

void KrvWaterfallWidget::setupUi()
{
    setObjectName(QStringLiteral("KrvWaterfallWidget"));
    setWindowTitle(tr("Form"));
    auto* label = new QLabel(tr("Sample text:"), this);
    m_text = new QComboBox(this);
    m_text->setObjectName(QStringLiteral("previewTextComboBox"));
    m_text->setEditable(true);
    m_text->setInsertPolicy(QComboBox::NoInsert);
    m_text->setCompleter(nullptr); // it would put another case over what is typed
    m_text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_text->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_text->setMinimumContentsLength(24);
    m_text->setAccessibleName(tr("Sample text"));
    m_text->lineEdit()->setAccessibleName(m_text->accessibleName()); // what really takes the keyboard
    m_text->lineEdit()->setMaxLength(maximumTextLength);
    label->setBuddy(m_text);

    m_rows = new QTableWidget(sizeCount, 1, this);
    m_rows->setObjectName(QStringLiteral("waterfallView"));
    m_rows->setAccessibleName(tr("Waterfall"));
    m_rows->setFrameShape(QFrame::NoFrame);
    m_rows->setShowGrid(false);
    m_rows->setSelectionMode(QAbstractItemView::NoSelection);
    m_rows->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_rows->setTabKeyNavigation(false);
    m_rows->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_rows->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_rows->setItemDelegate(new WaterfallDelegate(m_rows));
    m_rows->horizontalHeader()->hide();
    m_rows->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_rows->verticalHeader()->setMinimumSectionSize(1);
    m_rows->verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_rows->verticalHeader()->setHighlightSections(false);
    m_rows->verticalHeader()->setSectionsClickable(false);
    m_rows->verticalHeader()->setStyleSheet(ui::plainHeaderStyle());
    QStringList labels;
    for (int row = 0; row < sizeCount; ++row) {
        labels.append(QString::number(sizes[row]));
        m_rows->setItem(row, 0, new QTableWidgetItem);
        m_rows->setRowHeight(row, emptyRowHeight);
    }
    m_rows->setVerticalHeaderLabels(labels);

    auto* row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("horizontalLayout"));
    row->setContentsMargins(8, 6, 8, 6);
    row->setSpacing(6);
    row->addWidget(label);
    row->addWidget(m_text, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(row);
    layout->addWidget(m_rows, 1);
}

void KrvWaterfallWidget::fillTexts()
{
    QFile file(QStringLiteral(":/ui/sample_texts.txt"));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (!line.trimmed().isEmpty())
            m_text->addItem(line.trimmed());
    }
}

void KrvWaterfallWidget::setPreviewText(const QString& text)
{
    const QString line = text.simplified();
    const int entry = m_text->findText(line, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (entry >= 0)
        m_text->setCurrentIndex(entry);
    else
        m_text->setEditText(line.left(maximumTextLength));
    m_text->lineEdit()->home(false); // a long text is read from its beginning
}

void KrvWaterfallWidget::showSize(int points)
{
    const auto nearest = std::min_element(std::begin(sizes), std::end(sizes), [points](int a, int b) {
        return std::abs(a - points) < std::abs(b - points);
    });
    m_rows->scrollToItem(m_rows->item(int(nearest - std::begin(sizes)), 0), QAbstractItemView::PositionAtCenter);
}

double KrvWaterfallWidget::pixelRatio() const
{
    return qApp->devicePixelRatio();
}

void KrvWaterfallWidget::onPreviewTextIndexChanged()
{
    // Choosing an entry announces both the entry and its text.
    if (m_masterFontId != 0 && m_text->currentText() == m_masterText)
        return;
    m_masterFontId = 0;
    updateView();
}

void KrvWaterfallWidget::updateView()
{
    if (!font()) {
        if (m_master.isNull() && m_masterFontId == 0)
            return;
        m_master = QImage();
        m_master.setDevicePixelRatio(pixelRatio());
        m_masterFontId = 0;
        fillRows();
    } else if (m_master.isNull() || m_masterFontId != font()->id()) {
        renderMaster();
        fillRows();
    }
}

void KrvWaterfallWidget::renderMaster()
{
    const double ratio = pixelRatio();
    PointSizePreviewRequest request;
    request.dpi = 72;
    request.pointSize = int(ratio * m_baseSize);
    request.text = m_text->currentText();
    request.color = qRgb(0, 0, 0);
    if (!KrvFontPainter::renderPreview(font()->fileName(), request, &m_master, font()->faceIndex(), nullptr,
                                       Qt::AlignLeft, false, 0))
        m_master = QImage();
    m_master.setDevicePixelRatio(ratio);
    m_scale = (m_master.height() / ratio) / m_baseSize;
    m_masterFontId = font()->id();
    m_masterText = request.text;
}

void KrvWaterfallWidget::fillRows()
{
    const double ratio = pixelRatio();
    // Scaling works on true colours; converting once spares it sixteen conversions.
    const QImage source = m_master.isNull() ? QImage() : m_master.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < sizeCount; ++row) {
        QTableWidgetItem* item = m_rows->item(row, 0);
        if (m_master.isNull()) {
            item->setData(Qt::DecorationRole, QVariant());
            item->setData(Qt::AccessibleTextRole, QVariant());
            m_rows->setRowHeight(row, emptyRowHeight);
            continue;
        }
        const int height = int(ratio * sizes[row] * m_scale);
        QImage image = m_master;
        if (sizes[row] != m_baseSize && height > 0) {
            image = source.scaledToHeight(height, Qt::SmoothTransformation);
            image.setDevicePixelRatio(ratio);
        }
        item->setData(Qt::DecorationRole, image);
        item->setData(Qt::AccessibleTextRole, tr("%1 in %2 points").arg(m_masterText, QString::number(sizes[row])));
        // The smallest rows have to hold their labels.
        m_rows->setRowHeight(row, qMax(qRound(image.height() / ratio), m_rows->fontMetrics().height()));
    }
    m_rows->setColumnWidth(0, m_master.isNull() ? 0 : qRound(m_master.width() / ratio) + 2 * leftMargin);
}

void KrvWaterfallWidget::changeEvent(QEvent* event)
{
    KrvAbstractFontDetailsWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_rows->viewport()->update();
}
