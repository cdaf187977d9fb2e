#pragma once

#include <QDialog>

class QDialogButtonBox;
class QProgressBar;

// What the dialogs share that follow the making of a file: a bar with Cancel, and, once the file is made, the way to
// it. The dialog stays open until the user closes it.
class FileProgressDialog : public QDialog
{
    Q_OBJECT

protected:
    FileProgressDialog(const QString& objectName, const QString& title, const QString& operationText, QWidget* parent);

    // One line; what is too long is cut in the middle.
    void setOperationText(const QString& text);
    void showProgress(int progressTotal, int progressCurrent);
    // Offers to show the file, and Close instead of Cancel.
    void offerFile(const QString& filePath);
    void disableCancel();
    // The file could not be made: says so and leaves only Close.
    void showFailure(const QString& text);

private:
    void replaceCancelByClose();

    class QLabel* m_label;
    QProgressBar* m_bar;
    QDialogButtonBox* m_buttons;
};
