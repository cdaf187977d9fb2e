#include "qtService/ui/filter/KrvAttributeSliderWidget.h"

#include "qtService/ui/window/Palette.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QSlider>

KrvAttributeSliderWidget::KrvAttributeSliderWidget(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("KrvAttributeSliderWidget"));
    resize(323, 24);
    m_box = new QCheckBox(this);
    m_box->setObjectName(QStringLiteral("attributeCheckBox"));
    m_slider = new QSlider(Qt::Horizontal, this);
    m_slider->setObjectName(QStringLiteral("attributeSlider"));
    m_slider->setRange(1, 5);
    m_slider->setPageStep(1);
    m_slider->setTickPosition(QSlider::TicksBelow);
    m_slider->setTickInterval(1);
    m_slider->setEnabled(false);
    ui::outlineChecks(m_box);
    auto* layout = new QHBoxLayout(this);
    layout->setObjectName(QStringLiteral("horizontalLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_box);
    layout->addWidget(m_slider, 1);
    connect(m_box, &QCheckBox::toggled, this, &KrvAttributeSliderWidget::setSliderEnabled);
    connect(m_slider, &QSlider::valueChanged, this, &KrvAttributeSliderWidget::valueChanged);
}

int KrvAttributeSliderWidget::value() const
{
    return m_slider->value();
}

bool KrvAttributeSliderWidget::isSliderEnabled() const
{
    return m_slider->isEnabled();
}

void KrvAttributeSliderWidget::setValue(int value)
{
    m_slider->setValue(value);
}

void KrvAttributeSliderWidget::setSliderEnabled(bool enabled)
{
    m_box->setChecked(enabled);
    if (m_slider->isEnabled() == enabled)
        return;
    m_slider->setEnabled(enabled);
    emit sliderEnabledChanged(enabled);
}

void KrvAttributeSliderWidget::setName(QString name)
{
    m_box->setText(name);
    m_slider->setAccessibleName(name);
}
