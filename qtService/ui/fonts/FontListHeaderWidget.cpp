#include "qtService/ui/fonts/FontListHeaderWidget.h"

#include "qtService/ui/widgets/FlatButton.h"
#include "qtService/ui/window/Palette.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace {

QPushButton* makeButton(const QString& objectName, const QString& side, const QString& description, QWidget* parent)
{
    QIcon icon;
    const QString file = QStringLiteral(":/new_icons/header_%1_%2active52x52.png");
    icon.addFile(file.arg(side, QString()), QSize(), QIcon::Normal);
    icon.addFile(file.arg(side, QStringLiteral("in")), QSize(), QIcon::Disabled);
    auto* button = new FlatButton(icon, QString(), parent);
    button->setObjectName(objectName);
    button->setIconSize(QSize(26, 26));
    button->setFixedSize(30, 28);
    button->setToolTip(description);
    button->setAccessibleName(description);
    button->setEnabled(false);
    return button;
}

// Shortens what it shows, never what it says: a font's name may be longer than any window.
class TitleLabel : public QLabel
{
public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
        style()->drawItemText(&painter, rect(), int(Qt::AlignLeft | Qt::AlignVCenter), palette(), isEnabled(), shown,
                              foregroundRole());
    }
};

} // namespace

FontListHeaderWidget::FontListHeaderWidget(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("FontListHeaderWidget"));
    setWindowTitle(tr("Form"));
    auto* container = new QWidget(this);
    container->setObjectName(QStringLiteral("widget"));
    m_back = makeButton(QStringLiteral("btnBack"), QStringLiteral("left"), tr("Back"), container);
    m_forward = makeButton(QStringLiteral("btnForward"), QStringLiteral("right"), tr("Forward"), container);
    m_title = new TitleLabel(container);
    m_title->setObjectName(QStringLiteral("lblTitle"));
    m_title->setTextFormat(Qt::PlainText);
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);
    m_count = new QLabel(container);
    m_count->setObjectName(QStringLiteral("lblCount"));
    ui::mute(m_count);

    auto* row = new QHBoxLayout(container);
    row->setObjectName(QStringLiteral("horizontalLayout_2"));
    row->setContentsMargins(8, 3, 8, 3);
    row->setSpacing(2);
    row->addWidget(m_back);
    row->addWidget(m_forward);
    row->addSpacing(6);
    row->addWidget(m_title, 1);
    row->addSpacing(12);
    row->addWidget(m_count);
    auto* layout = new QHBoxLayout(this);
    layout->setObjectName(QStringLiteral("horizontalLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(container);
    connect(m_back, &QPushButton::clicked, this, &FontListHeaderWidget::backButtonClicked);
    connect(m_forward, &QPushButton::clicked, this, &FontListHeaderWidget::forwardButtonClicked);
}

void FontListHeaderWidget::setTitle(const QString& title)
{
    m_title->setText(title);
}

void FontListHeaderWidget::setCount(int shown, int all, int selected)
{
    QString count;
    if (shown != all)
        count = tr("%1 of %2 fonts").arg(shown).arg(all);
    else
        count = all == 1 ? tr("1 font") : tr("%n fonts", "Not for one font", all);
    // Of one the eye needs no telling.
    m_count->setText(selected > 1 ? tr("%1, %2 selected", "How many fonts there are, and how many of them are selected")
                                        .arg(count)
                                        .arg(selected)
                                  : count);
}

void FontListHeaderWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        ui::mute(m_count);
}

void FontListHeaderWidget::setNavigation(bool hasBack, bool hasForward)
{
    // A button that can no longer be pressed hands the keyboard to its neighbour. It would go on to the list, which
    // takes its first font for the current one then.
    if (!hasBack && hasForward && m_back->hasFocus()) {
        m_forward->setEnabled(true);
        m_forward->setFocus();
    } else if (!hasForward && hasBack && m_forward->hasFocus()) {
        m_back->setEnabled(true);
        m_back->setFocus();
    }
    m_back->setEnabled(hasBack);
    m_forward->setEnabled(hasForward);
}
