#pragma once

#include <QDialog>

class QDialogButtonBox;
class QLineEdit;
class QValidator;

// Asks for one line of text; OK is enabled while the validator accepts it.
class TextInputDialog : public QDialog
{
    Q_OBJECT

public:
    // An empty description is not shown. The validator, not owned, may be null: then any text is accepted.
    TextInputDialog(const QString& title, const QString& description, const QString& inputDescription,
                    const QString& initialText, QValidator* validator, QWidget* parent = nullptr);

    QString text() const;

    // The text; empty when the user cancelled.
    static QString getText(const QString& title, const QString& description, const QString& inputDescription,
                           const QString& initialText, QValidator* validator, QWidget* parent);

private slots:
    void validateInput();

private:
    QLineEdit* m_input;
    QDialogButtonBox* m_buttons;
};
