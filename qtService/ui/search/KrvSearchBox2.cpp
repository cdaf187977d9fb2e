#include "qtService/ui/search/KrvSearchBox2.h"

#include "qtService/ui/search/KrvToolButton.h"

#include <QKeyEvent>
#include <QMenu>

namespace {

constexpr int boxWidth = 125;
constexpr int boxHeight = 22;
constexpr int buttonEdge = 22;

const QString boxStyle = QStringLiteral(
    "QLineEdit {height: 22px;border-radius: 11px;border: 1px solid palette(dark);font-size: 12px;}QLineEdit:focus "
    "{border: 2px solid rgb(124, 164, 204);}");

QString buttonStyle(const QString& image, const QString& position)
{
    return QStringLiteral("background-image: url(:/icons/%1);background-color: transparent;background-position: %2;"
                          "background-repeat: no-repeat;border: none;height: 22px;width: 22px;")
        .arg(image, position);
}

KrvToolButton* makeButton(const QString& style, const QString& name, QWidget* parent)
{
    auto* button = new KrvToolButton(parent);
    button->setStyleSheet(style);
    button->setFixedSize(buttonEdge, buttonEdge);
    button->setCursor(Qt::ArrowCursor);
    button->setToolTip(name);
    button->setAccessibleName(name);
    return button;
}

} // namespace

KrvSearchBox2::KrvSearchBox2(int delayMs, QWidget* parent)
    : SearchBoxInterface(parent)
{
    setFixedSize(boxWidth, boxHeight);
    setPlaceholderText(tr("Search"));
    setAccessibleName(tr("Search"));
    setStyleSheet(boxStyle);
    m_clearButton = makeButton(buttonStyle(QStringLiteral("clear_search.png"), QStringLiteral("center")),
                               tr("Clear the search"), this);
    m_optionsButton = makeButton(buttonStyle(QStringLiteral("magnifier.png"), QStringLiteral("center center")),
                                 tr("What to search in"), this);
    m_clearButton->setFocusPolicy(Qt::NoFocus);
    m_clearButton->hide();
    m_timer.setSingleShot(true);
    m_timer.setInterval(delayMs);

    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_clearButton->setVisible(!text.isEmpty());
        m_timer.start();
    });
    connect(&m_timer, &QTimer::timeout, this, &KrvSearchBox2::onSearchTermsChanged);
    // Enter does not wait for the pause.
    connect(this, &QLineEdit::returnPressed, this, [this] {
        m_timer.stop();
        onSearchTermsChanged();
    });
    connect(m_clearButton, &QToolButton::clicked, this, &KrvSearchBox2::clear);
    connect(m_optionsButton, &QToolButton::clicked, this, &KrvSearchBox2::onSearchOptionsButtonClicked);
    for (const KrvToolButton* button : {m_clearButton, m_optionsButton}) {
        connect(button, &KrvToolButton::mouseEntered, this, &KrvSearchBox2::onButtonEntered);
        connect(button, &KrvToolButton::mouseLeft, this, &KrvSearchBox2::onButtonLeft);
    }
}

QString KrvSearchBox2::searchTerm() const
{
    return text();
}

void KrvSearchBox2::setSearchOptionsMenu(QMenu* menu)
{
    m_menu = menu;
}

void KrvSearchBox2::setSearchTerm(QString searchTerm)
{
    setText(searchTerm);
    m_clearButton->setVisible(!searchTerm.isEmpty()); // also when the box's signals are blocked
}

void KrvSearchBox2::clear()
{
    QLineEdit::clear();
    m_clearButton->hide();
    m_timer.stop();
    onSearchTermsChanged();
}

void KrvSearchBox2::onSearchTermsChanged()
{
    emit searchTermChanged(text());
}

void KrvSearchBox2::onSearchOptionsButtonClicked()
{
    if (m_menu)
        m_menu->popup(mapToGlobal(rect().bottomLeft()));
}

void KrvSearchBox2::onButtonEntered()
{
    setCursor(Qt::ArrowCursor);
}

void KrvSearchBox2::onButtonLeft()
{
    setCursor(Qt::IBeamCursor);
}

void KrvSearchBox2::placeButtons()
{
    const int top = (height() - buttonEdge) / 2;
    m_optionsButton->move(0, top);
    m_clearButton->move(width() - buttonEdge, top);
    setTextMargins(buttonEdge - 2, 0, buttonEdge - 2, 0);
}

void KrvSearchBox2::showEvent(QShowEvent* event)
{
    SearchBoxInterface::showEvent(event);
    placeButtons();
}

void KrvSearchBox2::resizeEvent(QResizeEvent* event)
{
    SearchBoxInterface::resizeEvent(event);
    placeButtons();
}

void KrvSearchBox2::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
        clear();
        event->accept();
        return;
    }
    SearchBoxInterface::keyPressEvent(event);
}
