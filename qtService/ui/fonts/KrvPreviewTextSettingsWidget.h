#pragma once

#include <QTimer>
#include <QWidget>

class QComboBox;
class QPlainTextEdit;

// Where the user chooses the sample text of the previews and their size.
class KrvPreviewTextSettingsWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString previewText READ previewText WRITE setPreviewText NOTIFY previewTextChanged)
    Q_PROPERTY(int previewSize READ previewSize WRITE setPreviewSize NOTIFY previewSizeChanged)

public:
    explicit KrvPreviewTextSettingsWidget(QWidget* parent = nullptr);

    QString previewText() const;
    // In pixels; 0 when the size set last is none that is offered.
    int previewSize() const;

public slots:
    void setPreviewText(QString text);
    void setPreviewSize(int size);

signals:
    void previewTextChanged(QString previewText);
    void previewSizeChanged(int previewSize);

private slots:
    void onPreviewTextSelectionChanged();
    void onCustomPreviewTextChanged();
    void onPreviewSizeChanged();

private:
    void setupUi();
    bool isOwnTextChosen() const;

    QComboBox* m_sampleText;
    QComboBox* m_size;
    QPlainTextEdit* m_ownText;
    QTimer m_typing;
};
