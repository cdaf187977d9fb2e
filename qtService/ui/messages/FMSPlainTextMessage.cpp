#include "qtService/ui/messages/FMSPlainTextMessage.h"

#include <QFont>
#include <QIcon>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

FMSPlainTextMessage::FMSPlainTextMessage(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("FMSPlainTextMessage"));
    setWindowTitle(tr("Form"));
    m_text = new QPlainTextEdit(this);
    m_text->setObjectName(QStringLiteral("ed_msg"));
    m_text->setReadOnly(true);
    m_text->setAccessibleName(tr("Messages"));
    m_text->setTabChangesFocus(true);
    m_refresh = new QPushButton(tr("Refresh"), this);
    m_refresh->setObjectName(QStringLiteral("btn_refresh"));
    m_refresh->hide();
    auto* close = new QPushButton(tr("Close"), this);
    close->setObjectName(QStringLiteral("btn_close"));
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    buttons->addWidget(m_refresh);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text, 1);
    layout->addLayout(buttons);
    resize(640, 420);
    connect(m_refresh, &QPushButton::clicked, this, &FMSPlainTextMessage::refreshRequested);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this, &QWidget::close);
    setStyleSheet(QStringLiteral("font-size: 9pt"));
    QFont font(QStringLiteral("Courier"));
    font.setStyleHint(QFont::Monospace);
    m_text->setFont(font);
    setWindowIcon(QIcon(QStringLiteral(":/icon1.png")));
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint |
                   Qt::CustomizeWindowHint);
}

void FMSPlainTextMessage::setRefreshButtonVisible(bool visible)
{
    m_refresh->setVisible(visible);
}

void FMSPlainTextMessage::clear()
{
    m_text->setPlainText(QString());
}

void FMSPlainTextMessage::append(const QString& text)
{
    m_text->appendPlainText(text);
}

void FMSPlainTextMessage::scrollToTop()
{
    m_text->moveCursor(QTextCursor::Start);
}
