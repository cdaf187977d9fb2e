#pragma once

#include <QWidget>

class QCheckBox;
class QSlider;

// A bucket from 1 to 5 that counts only while its box is checked.
class KrvAttributeSliderWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(bool sliderEnabled READ isSliderEnabled WRITE setSliderEnabled NOTIFY sliderEnabledChanged)

public:
    explicit KrvAttributeSliderWidget(QWidget* parent = nullptr);

    int value() const;
    bool isSliderEnabled() const;

public slots:
    void setValue(int value);
    void setSliderEnabled(bool enabled);
    void setName(QString name);

signals:
    void valueChanged(int value);
    void sliderEnabledChanged(bool enabled);

private:
    QCheckBox* m_box;
    QSlider* m_slider;
};
