#pragma once

#include "qtService/ui/details/KrvAbstractFontDetailsWidget.h"

class CharacterMapWidget;
class KrvCharacterMapModel;
class QComboBox;

// Every character of the current font, by ranges and in a size of the user's choice. The chosen range is kept for all
// fonts that have it; one that lacks it shows its first range meanwhile.
class KrvCharacterMapWidget : public KrvAbstractFontDetailsWidget
{
    Q_OBJECT

public:
    explicit KrvCharacterMapWidget(QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

protected slots:
    void updateView() override;

private slots:
    void onCharacterRangeComboBoxIndexChanged();
    void onFontSizeComboBoxIndexChanged();

private:
    void setupUi();

    KrvCharacterMapModel* m_model;
    QComboBox* m_range;
    QComboBox* m_size;
    CharacterMapWidget* m_map;
    int m_chosenRange = 0;
};
