#include "qtService/ui/filter/KrvAttributesWidget.h"

#include "qtService/ui/filter/KrvAttributeSliderWidget.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

namespace {

KrvAttributeSliderWidget* addSlider(QGridLayout* grid, int row, const char* label, const QString& labelText,
                                    const char* slider, const QString& name, const QString& scale)
{
    QWidget* parent = grid->parentWidget();
    auto* caption = new QLabel(labelText, parent);
    caption->setObjectName(QLatin1String(label));
    auto* widget = new KrvAttributeSliderWidget(parent);
    widget->setObjectName(QLatin1String(slider));
    widget->setName(name);
    widget->setToolTip(scale); // the steps have no captions
    grid->addWidget(caption, row, 0);
    grid->addWidget(widget, row, 1);
    return widget;
}

} // namespace

KrvAttributesWidget::KrvAttributesWidget(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("KrvAttributesWidget"));
    auto* grid = new QGridLayout(this);
    grid->setObjectName(QStringLiteral("gridLayout"));
    grid->setHorizontalSpacing(18);
    m_weight =
        addSlider(grid, 0, "lblWight", tr("Weight"), "weightAttributeSlider", tr("Weight"), tr("From light to heavy"));
    m_width =
        addSlider(grid, 1, "lblWidth", tr("Width"), "widthAttributeSlider", tr("Width"), tr("From narrow to wide"));
    m_italicAngle = addSlider(grid, 2, "lblItalicAngle", tr("Italic angle"), "italicAngleAttributeSlider", tr("Italic"),
                              tr("From upright to slanted"));
    m_opticalSize = addSlider(grid, 3, "lblOpticalSize", tr("Optical size"), "opticalSizeAttributeSlider",
                              tr("Optical"), tr("From small letters to large ones"));
    alignSliders();
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(4, 1);
}

// The names differ in length with the language; the sliders begin at one edge all the same.
void KrvAttributesWidget::alignSliders()
{
    QList<QCheckBox*> boxes;
    int width = 0;
    for (const KrvAttributeSliderWidget* slider : sliders()) {
        boxes.append(slider->findChild<QCheckBox*>());
        width = qMax(width, boxes.last()->sizeHint().width());
    }
    for (QCheckBox* box : qAsConst(boxes))
        box->setMinimumWidth(width);
}

QList<KrvAttributeSliderWidget*> KrvAttributesWidget::sliders() const
{
    return {m_weight, m_width, m_italicAngle, m_opticalSize};
}
