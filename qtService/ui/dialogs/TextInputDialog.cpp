#include "qtService/ui/dialogs/TextInputDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QValidator>

TextInputDialog::TextInputDialog(const QString& title, const QString& description, const QString& inputDescription,
                                 const QString& initialText, QValidator* validator, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("AddGroupDialog"));
    auto* descriptionLabel = new QLabel(description, this);
    descriptionLabel->setObjectName(QStringLiteral("lblDescription"));
    if (description.isEmpty()) {
        descriptionLabel->hide();
        descriptionLabel->setFixedHeight(0);
    }
    auto* inputLabel = new QLabel(inputDescription, this);
    inputLabel->setObjectName(QStringLiteral("lblInputDescription"));
    m_input = new QLineEdit(this);
    m_input->setObjectName(QStringLiteral("leInput"));
    m_input->setMinimumWidth(300);
    m_input->setAccessibleName(inputDescription);
    if (validator)
        m_input->setValidator(validator);
    inputLabel->setBuddy(m_input);
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_buttons->setObjectName(QStringLiteral("buttonBox"));

    auto* row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("horizontalLayout"));
    row->addWidget(inputLabel);
    row->addWidget(m_input, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addWidget(descriptionLabel);
    layout->addLayout(row);
    layout->addWidget(m_buttons);

    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_input, &QLineEdit::textChanged, this, &TextInputDialog::validateInput);
    m_input->setText(initialText);
    m_input->selectAll();
    m_input->setFocus();
    validateInput();
    adjustSize();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setWindowFlag(Qt::MSWindowsFixedSizeDialogHint);
}

QString TextInputDialog::text() const
{
    return m_input->text();
}

void TextInputDialog::validateInput()
{
    QString text = m_input->text();
    int position = 0;
    const QValidator* validator = m_input->validator();
    m_buttons->button(QDialogButtonBox::Ok)
        ->setEnabled(!validator || validator->validate(text, position) == QValidator::Acceptable);
}

QString TextInputDialog::getText(const QString& title, const QString& description, const QString& inputDescription,
                                 const QString& initialText, QValidator* validator, QWidget* parent)
{
    TextInputDialog dialog(title, description, inputDescription, initialText, validator, parent);
    return dialog.exec() == QDialog::Accepted ? dialog.text() : QString();
}
