#include "fontlens/FontLensBusyIndicator.h"

#include "qtService/ui/widgets/QProgressIndicator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace {

constexpr int indicatorEdge = 28;
constexpr int patienceMs = 150;

} // namespace

FontLensBusyIndicator::FontLensBusyIndicator(QWidget* parent)
    : QWidget(parent)
    , m_indicator(new QProgressIndicator(this))
    , m_text(new QLabel(this))
    , m_cancel(new QPushButton(tr("Cancel"), this))
{
    setObjectName(QStringLiteral("busyIndicator"));
    m_indicator->setFixedSize(indicatorEdge, indicatorEdge);
    m_text->setObjectName(QStringLiteral("lblBusy"));
    m_cancel->setObjectName(QStringLiteral("btnCancelRequest"));
    m_cancel->setAutoDefault(false);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(14, 10, 10, 10);
    layout->setSpacing(12);
    layout->addWidget(m_indicator);
    layout->addWidget(m_text);
    layout->addWidget(m_cancel);
    connect(m_cancel, &QPushButton::clicked, this, &FontLensBusyIndicator::cancelled);
    hide();
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceMs);
    connect(&m_patience, &QTimer::timeout, this, &QWidget::show);
}

void FontLensBusyIndicator::start(const QString& text)
{
    m_busy = true;
    m_text->setText(text);
    setAccessibleName(text);
    m_indicator->startAnimation();
    centreIn(m_area);
    raise();
    m_patience.start();
}

void FontLensBusyIndicator::stop()
{
    m_busy = false;
    m_patience.stop();
    m_indicator->stopAnimation();
    hide();
}

void FontLensBusyIndicator::centreIn(const QRect& area)
{
    m_area = area;
    QRect place(QPoint(), sizeHint());
    place.moveCenter(area.center());
    setGeometry(place);
}

void FontLensBusyIndicator::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
}
