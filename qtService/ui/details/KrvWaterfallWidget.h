#pragma once

#include "qtService/ui/details/KrvAbstractFontDetailsWidget.h"

#include <QImage>

class QComboBox;
class QTableWidget;

// One text in seventeen sizes. The font draws once, at the largest size; the other rows are that picture scaled down.
class KrvWaterfallWidget : public KrvAbstractFontDetailsWidget
{
    Q_OBJECT

public:
    explicit KrvWaterfallWidget(QWidget* parent = nullptr);

    void setPreviewText(const QString& text);
    // Brings the row of the nearest size in sight.
    void showSize(int points);

protected:
    void changeEvent(QEvent* event) override;

protected slots:
    void updateView() override;

private slots:
    void onPreviewTextIndexChanged();

private:
    void setupUi();
    void fillTexts();
    void renderMaster();
    void fillRows();
    double pixelRatio() const;

    QComboBox* m_text;
    QTableWidget* m_rows;
    QImage m_master;
    double m_scale = 1.0; // logical height of the master for each point of its size
    int m_baseSize;
    int m_masterFontId = 0;
    QString m_masterText;
};
