#include "fontlens/SelectedLetterWidget.h"

#include <QClipboard>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int tileWidth = 100;
constexpr int imageEdge = 94;
constexpr int gap = 3;
constexpr int letterWidth = 26;
constexpr int closeWidth = 17;

// The tile stays white on dark palettes, so everything in it needs ink that shows on white.
QPalette lightPalette(QPalette palette)
{
    const QColor ink(0x20, 0x24, 0x2a);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, ink);
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(0x8a, 0x8f, 0x96));
    return palette;
}

} // namespace

SelectedLetterWidget::SelectedLetterWidget(QWidget* parent)
    : QWidget(parent)
{
    setupUi();
    m_letter->installEventFilter(this);
    connect(m_letter, &QLineEdit::textChanged, this, &SelectedLetterWidget::onLetterChanged);
    connect(m_close, &QToolButton::clicked, this, &SelectedLetterWidget::closeButtonPressed);
    markMissing();
}

void SelectedLetterWidget::setupUi()
{
    setObjectName(QStringLiteral("SelectedLetterWidget"));
    setWindowTitle(tr("Form"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("#SelectedLetterWidget {\n\tbackground-color: white;\n\tborder: 1px solid black;\n}"));
    setFixedWidth(tileWidth);

    auto* frame = new QWidget(this);
    frame->setObjectName(QStringLiteral("widget"));
    frame->setStyleSheet(QStringLiteral("QWidget#widget {\n\tbackground-color: white;\n\tborder: 1px solid black;\n}"));
    m_image = new QLabel(frame);
    m_image->setObjectName(QStringLiteral("lblImage"));
    m_image->setFixedSize(imageEdge, imageEdge);
    m_image->setAlignment(Qt::AlignCenter);
    m_caption = new QLabel(tr("letter:"), frame);
    m_caption->setObjectName(QStringLiteral("lblLetter"));
    m_letter = new QLineEdit(frame);
    m_letter->setObjectName(QStringLiteral("leLetter"));
    m_letter->setMaxLength(1);
    m_letter->setPlaceholderText(QStringLiteral("?"));
    m_letter->setAlignment(Qt::AlignCenter);
    m_letter->setFixedWidth(letterWidth);
    m_caption->setBuddy(m_letter);
    m_close = new QToolButton(frame);
    m_close->setObjectName(QStringLiteral("btnClose"));
    m_close->setIcon(QIcon(QStringLiteral(":/icons/clear_search.png")));
    m_close->setIconSize(QSize(14, 14));
    m_close->setAutoRaise(true);
    m_close->setFixedSize(closeWidth, closeWidth);
    m_close->setFocusPolicy(Qt::NoFocus);
    m_close->setToolTip(tr("Remove this letter (Ctrl+Del)"));
    m_close->setAccessibleName(tr("Remove this letter"));

    // The tile's width is fixed and the language is not.
    const int room = imageEdge - letterWidth - closeWidth - 2 * gap;
    QFont captionFont = m_caption->font();
    const int captionWidth = QFontMetrics(captionFont).horizontalAdvance(m_caption->text());
    if (captionWidth > room)
        captionFont.setPointSizeF(captionFont.pointSizeF() * room / captionWidth);
    m_caption->setFont(captionFont);

    auto* row = new QHBoxLayout;
    row->setObjectName(QStringLiteral("horizontalLayout"));
    row->setSpacing(gap);
    row->addWidget(m_caption, 1);
    row->addWidget(m_letter);
    row->addWidget(m_close);
    auto* column = new QVBoxLayout(frame);
    column->setObjectName(QStringLiteral("verticalLayout_2"));
    column->setSpacing(gap);
    column->setContentsMargins(gap, gap, gap, gap);
    column->addWidget(m_image, 0, Qt::AlignHCenter);
    column->addLayout(row);
    // Each by itself: a desktop may give some kinds of widgets a palette of their own.
    for (QWidget* widget : std::initializer_list<QWidget*>{m_caption, m_letter, m_close})
        widget->setPalette(lightPalette(widget->palette()));
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
}

void SelectedLetterWidget::setImage(const QImage& image)
{
    if (image.isNull()) {
        m_image->clear();
        return;
    }
    const qreal ratio = devicePixelRatioF();
    QImage scaled = image.scaled(m_image->size() * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    m_image->setPixmap(QPixmap::fromImage(scaled));
}

QChar SelectedLetterWidget::character() const
{
    const QString text = m_letter->text();
    return text.isEmpty() ? QChar() : text.at(0);
}

void SelectedLetterWidget::setPosition(int position)
{
    m_letter->setAccessibleName(tr("Character of letter %1").arg(position));
}

QWidget* SelectedLetterWidget::input() const
{
    return m_letter;
}

void SelectedLetterWidget::focusInEvent(QFocusEvent* event)
{
    m_letter->setFocus(event->reason());
    m_letter->selectAll();
}

bool SelectedLetterWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Paste) && QGuiApplication::clipboard()->text().size() != 1) {
            event->ignore();
            return true;
        }
    } else if (event->type() == QEvent::FocusIn) {
        emit focused();
    } else if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Delete && key->modifiers() == Qt::ControlModifier) {
            m_close->click();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void SelectedLetterWidget::onLetterChanged()
{
    emit letterChanged();
    markMissing();
}

// Red alone would say nothing to those who do not see it: the caption is underlined as well while the character is
// missing, and the line edit asks for it.
void SelectedLetterWidget::markMissing()
{
    const bool missing = m_letter->text().isEmpty();
    QFont font = m_caption->font();
    font.setUnderline(missing);
    m_caption->setFont(font);
    m_caption->setStyleSheet(missing ? QStringLiteral("color: red") : QString());
    m_letter->setToolTip(missing ? tr("Type the character that this letter shows") : QString());
    m_letter->setAccessibleDescription(m_letter->toolTip());
}
