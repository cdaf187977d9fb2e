#include "fontlens/FontLensDropHint.h"

#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {

constexpr int iconEdge = 56;
constexpr int radius = 14;

} // namespace

FontLensDropHint::FontLensDropHint(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("dropHint"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* icon = new QLabel(this);
    icon->setPixmap(QIcon(QStringLiteral(":/icons/drop_picture.png")).pixmap(iconEdge, iconEdge));
    icon->setAlignment(Qt::AlignCenter);
    auto* title = new QLabel(tr("Drop a picture with letters here"), this);
    title->setObjectName(QStringLiteral("lblDropTitle"));
    title->setAlignment(Qt::AlignCenter);
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.35);
    large.setBold(true);
    title->setFont(large);
    auto* text = new QLabel(tr("or paste one with %1, or open a file or a web address")
                                .arg(QKeySequence(QKeySequence::Paste).toString(QKeySequence::NativeText)),
                            this);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(40, 28, 40, 28);
    layout->setSpacing(8);
    layout->addWidget(icon);
    layout->addWidget(title);
    layout->addWidget(text);
}

void FontLensDropHint::setHighlighted(bool highlighted)
{
    m_highlighted = highlighted;
    update();
}

void FontLensDropHint::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = palette().color(QPalette::Base);
    if (m_highlighted)
        ground = QColor::fromRgbF(ground.redF() * 0.85 + palette().color(QPalette::Highlight).redF() * 0.15,
                                  ground.greenF() * 0.85 + palette().color(QPalette::Highlight).greenF() * 0.15,
                                  ground.blueF() * 0.85 + palette().color(QPalette::Highlight).blueF() * 0.15);
    QPen pen(palette().color(m_highlighted ? QPalette::Highlight : QPalette::Mid), 2, Qt::DashLine, Qt::RoundCap);
    pen.setDashPattern({3, 3});
    painter.setPen(pen);
    painter.setBrush(ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), radius, radius);
}
