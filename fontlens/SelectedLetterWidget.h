#pragma once

#include <QChar>
#include <QWidget>

class QImage;
class QLabel;
class QLineEdit;
class QToolButton;

// The tile of one selected letter: its picture and the character it shows. White on every palette, as the cut-out
// letters are. The close button takes no focus; from the keyboard Ctrl+Delete in the tile does the same. Pasting
// anything but a single character is left to the window, where it opens a picture.
class SelectedLetterWidget : public QWidget
{
    Q_OBJECT

public:
    explicit SelectedLetterWidget(QWidget* parent = nullptr);

    void setImage(const QImage& image);
    // Null while the line edit is empty.
    QChar character() const;
    // The place in the strip from 1, for those who hear the window instead of seeing it.
    void setPosition(int position);
    // What takes the keys.
    QWidget* input() const;

signals:
    void closeButtonPressed();
    void letterChanged();
    // The keys go to this tile now.
    void focused();

protected:
    void focusInEvent(QFocusEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void onLetterChanged();

private:
    void setupUi();
    void markMissing();

    QLabel* m_image;
    QLabel* m_caption;
    QLineEdit* m_letter;
    QToolButton* m_close;
};
