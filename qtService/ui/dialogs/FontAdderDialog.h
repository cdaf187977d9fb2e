#pragma once

#include "qtService/database/KrvFontRepository.h"

#include <QDialog>
#include <QPointer>
#include <QSharedPointer>

class FMSPlainTextMessage;
class FontAdder;
class QLabel;
class QProgressBar;
class QPushButton;

// Follows the font scanner and controls it. Closing it leaves the scanner at work. Main thread.
class FontAdderDialog : public QDialog
{
    Q_OBJECT

public:
    FontAdderDialog(const QSharedPointer<FontAdder>& adder, const KrvFontRepositoryPtr& repository, QWidget* parent);
    ~FontAdderDialog() override;

public slots:
    int exec() override;

signals:
    void scanLogRequested();

private slots:
    void onFontFileSearchStarted();
    void onFontFileSearchFinished();
    void toggleAdding();
    void showWarnings();
    void updateProgressBar();
    void updateButtons();
    void updateStatusText();

private:
    void setupUi();

    QSharedPointer<FontAdder> m_adder;
    KrvFontRepositoryPtr m_repository;
    QPointer<FMSPlainTextMessage> m_warningsWindow; // no child, which a modal dialog of its parent would block
    QLabel* m_count;
    QLabel* m_status;
    QProgressBar* m_bar;
    QPushButton* m_warnings;
    QPushButton* m_stopSearch;
    QPushButton* m_log;
    QPushButton* m_startPause;
    QPushButton* m_abort;
};
