#pragma once

#include <QWidget>

class QPlainTextEdit;
class QPushButton;

// A small window with a text to read.
class FMSPlainTextMessage : public QWidget
{
    Q_OBJECT

public:
    explicit FMSPlainTextMessage(QWidget* parent = nullptr);

    void setRefreshButtonVisible(bool visible);
    void clear();
    // As a new paragraph.
    void append(const QString& text);
    void scrollToTop();

signals:
    void refreshRequested();

private:
    QPlainTextEdit* m_text;
    QPushButton* m_refresh;
};
