#pragma once

#include "fontlens/recognition/FontData.h"

#include <QImage>
#include <QUrl>
#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QToolButton;

// The large preview of the chosen result over its sample text, its size and a way to the font's shop. The three sample
// texts are a beginning; the user may type another one, which Enter adds to the list. The ground stays white on every
// palette, as the pictures that the service renders expect.
class FontLensFontPreviewWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FontLensFontPreviewWidget(QWidget* parent = nullptr);

    // Names the font on the shop button, which waits for its address. Null: no font.
    void setFont(const FontRecognizer::FontDataPtr& font);
    void setUrl(const QUrl& url);
    void setImage(const QImage& image);
    // The button is left out where fonts are not for sale.
    void setHasShop(bool hasShop);

    QString currentText() const;
    // The height in pixels at which the image is shown, 4 to 48.
    int previewSize() const { return m_previewSize; }

signals:
    void previewTextChanged();

private slots:
    void onOpenStoreUrlClicked();
    void increasePreviewSize();
    void decreasePreviewSize();

private:
    void setupUi();
    QToolButton* makeSizeButton(const char* objectName, const QString& text, const QString& description);
    void setPreviewSize(int size);
    void showImage();

    int m_previewSize;
    QImage m_image;
    QUrl m_url;
    bool m_hasShop = true;
    QComboBox* m_text;
    QToolButton* m_enlarge;
    QToolButton* m_reduce;
    QLabel* m_sizeLabel;
    QPushButton* m_shop;
    QLabel* m_preview;
};
