#include "qtService/ui/widgets/QProgressIndicator.h"

#include <QPainter>

namespace {

constexpr int spokes = 12;
constexpr int stepMs = 80;
constexpr int edge = 36;

} // namespace

QProgressIndicator::QProgressIndicator(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(tr("Working"));
    resize(sizeHint());
}

QSize QProgressIndicator::sizeHint() const
{
    return QSize(edge, edge);
}

void QProgressIndicator::startAnimation()
{
    if (!m_timer.isActive())
        m_timer.start(stepMs, this);
}

void QProgressIndicator::stopAnimation()
{
    m_timer.stop();
}

void QProgressIndicator::timerEvent(QTimerEvent*)
{
    m_step = (m_step + 1) % spokes;
    update();
}

void QProgressIndicator::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal radius = qMin(width(), height()) / 2.0;
    painter.translate(width() / 2.0, height() / 2.0);
    QColor color = palette().color(QPalette::Text);
    for (int i = 0; i < spokes; ++i) {
        const int age = (m_step - i + spokes) % spokes;
        color.setAlphaF(1.0 - 0.85 * age / (spokes - 1));
        painter.setPen(QPen(color, radius * 0.16, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 * i / spokes);
        painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.88));
        painter.restore();
    }
}
