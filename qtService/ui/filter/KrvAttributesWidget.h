#pragma once

#include <QWidget>

class KrvAttributeSliderWidget;

// The four attributes of a design by which the list can be narrowed.
class KrvAttributesWidget : public QWidget
{
    Q_OBJECT

public:
    explicit KrvAttributesWidget(QWidget* parent = nullptr);

    KrvAttributeSliderWidget* weightSlider() const { return m_weight; }
    KrvAttributeSliderWidget* widthSlider() const { return m_width; }
    KrvAttributeSliderWidget* italicAngleSlider() const { return m_italicAngle; }
    KrvAttributeSliderWidget* opticalSizeSlider() const { return m_opticalSize; }
    QList<KrvAttributeSliderWidget*> sliders() const;

private:
    void alignSliders();

    KrvAttributeSliderWidget* m_weight;
    KrvAttributeSliderWidget* m_width;
    KrvAttributeSliderWidget* m_italicAngle;
    KrvAttributeSliderWidget* m_opticalSize;
};
