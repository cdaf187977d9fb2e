#include "qtService/ui/dialogs/FileProgressDialog.h"

#include "qtService/ui/messages/OpenOutside.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Of the text that says why, which names a path.
constexpr int failureWidth = 420;

} // namespace

FileProgressDialog::FileProgressDialog(const QString& objectName, const QString& title, const QString& operationText,
                                       QWidget* parent)
    : QDialog(parent)
{
    setObjectName(objectName);
    resize(318, 87);
    m_label = new QLabel(operationText, this);
    m_label->setObjectName(QStringLiteral("lblOperationName"));
    m_label->setTextFormat(Qt::PlainText);
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("progressBar"));
    m_bar->setMinimumSize(300, 0);
    m_bar->setAlignment(Qt::AlignCenter);
    m_bar->setAccessibleName(operationText);
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, Qt::Horizontal, this);
    m_buttons->setObjectName(QStringLiteral("buttonBox"));
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addWidget(m_label);
    layout->addWidget(m_bar);
    layout->addWidget(m_buttons);
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    adjustSize();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setWindowFlag(Qt::MSWindowsFixedSizeDialogHint);
}

void FileProgressDialog::setOperationText(const QString& text)
{
    m_label->setText(
        m_label->fontMetrics().elidedText(text, Qt::ElideMiddle, qMax(m_bar->width(), m_bar->minimumWidth())));
}

void FileProgressDialog::disableCancel()
{
    m_buttons->button(QDialogButtonBox::Cancel)->setEnabled(false);
}

void FileProgressDialog::showProgress(int progressTotal, int progressCurrent)
{
    m_bar->setMaximum(progressTotal);
    m_bar->setValue(progressCurrent);
}

void FileProgressDialog::replaceCancelByClose()
{
    QPushButton* const close = m_buttons->addButton(QDialogButtonBox::Close);
    close->setDefault(true);
    close->setFocus();
    // The box lets it go; later, because it may be what was just pressed.
    QPushButton* const cancel = m_buttons->button(QDialogButtonBox::Cancel);
    m_buttons->removeButton(cancel);
    cancel->deleteLater();
}

void FileProgressDialog::offerFile(const QString& filePath)
{
    setOperationText(tr("Saved as %1").arg(QDir::toNativeSeparators(filePath)));
    m_bar->setMaximum(qMax(1, m_bar->maximum()));
    m_bar->setValue(m_bar->maximum());
    // No role that ends the dialog: the user may want to come back to it.
    QPushButton* show = m_buttons->addButton(tr("Show in Windows Explorer"), QDialogButtonBox::ActionRole);
    show->setObjectName(QStringLiteral("btnShowFile"));
    connect(show, &QPushButton::clicked, this, [filePath] { ui::showFile(filePath); });
    replaceCancelByClose();
}

void FileProgressDialog::showFailure(const QString& text)
{
    m_label->setText(text);
    m_label->setWordWrap(true);
    m_label->setMinimumWidth(failureWidth);
    m_bar->hide();
    replaceCancelByClose();
    // The dialog has a size of its own by now, and a long path takes several lines.
    adjustSize();
}
