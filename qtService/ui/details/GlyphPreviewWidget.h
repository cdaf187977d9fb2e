#pragma once

#include <QImage>
#include <QWidget>

// One character in large, beside the mouse; the mouse does not notice it.
class GlyphPreviewWidget : public QWidget
{
    Q_OBJECT

public:
    explicit GlyphPreviewWidget(QWidget* parent);

    void setImage(const QImage& image);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
};
