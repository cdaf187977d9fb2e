#pragma once

#include "qtService/database/KrvFontRepository.h"

#include <QSharedPointer>
#include <QWidget>

class FMSPlainTextMessage;
class FontAdder;
class QLabel;
class QProgressBar;
class QPushButton;

// The small window that shows what the font scanner does and controls it, reached from the notification area.
// Main thread.
class FMSControlCenter : public QWidget
{
    Q_OBJECT

public:
    FMSControlCenter(const QSharedPointer<FontAdder>& adder, const KrvFontRepositoryPtr& repository);
    ~FMSControlCenter() override;

public slots:
    void showAndRaise();

signals:
    void rescanRequested();
    void scanLogRequested();

private slots:
    void toggleAdderState();
    void abortAdder();
    void showErrors();
    void onFontFileSearchStarted();
    void onFontFileSearchFinished();
    void updateProgressBar();
    void updateStatusText();
    void updateButtons();

private:
    void setupUi();

    QSharedPointer<FontAdder> m_adder;
    KrvFontRepositoryPtr m_repository;
    std::unique_ptr<FMSPlainTextMessage> m_warningsWindow;
    QLabel* m_status;
    QLabel* m_fontCount;
    QProgressBar* m_bar;
    QPushButton* m_scan;
    QPushButton* m_resume;
    QPushButton* m_log;
    QPushButton* m_errors;
    QPushButton* m_abort;
    QPushButton* m_stopScanning;
};
