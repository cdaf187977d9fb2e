#include "fontlens/SelectedLettersList.h"

#include "fontlens/SelectedLetterWidget.h"
#include "fontlens/recognition/FontRecognizerSession.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

using FontRecognizer::FontRecognizerLetterSelectionPtr;
using FontRecognizer::FontRecognizerSession;

SelectedLettersList::SelectedLettersList(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QHBoxLayout(this))
{
    setObjectName(QStringLiteral("SelectedLettersList"));
    setWindowTitle(tr("Form"));
    setAccessibleName(tr("Selected letters"));
    m_layout->setObjectName(QStringLiteral("horizontalLayout"));
    m_layout->addStretch();
    const QMargins margins = m_layout->contentsMargins();
    setMinimumHeight(SelectedLetterWidget().sizeHint().height() + margins.top() + margins.bottom());
}

void SelectedLettersList::setSession(const QSharedPointer<FontRecognizerSession>& session)
{
    if (m_session)
        m_session->disconnect(this);
    while (!m_entries.isEmpty())
        removeTile(m_entries.size() - 1);
    m_session = session;
    update();
    if (!m_session)
        return;
    connect(m_session.data(), &FontRecognizerSession::selectLetterFinished, this,
            &SelectedLettersList::onLetterSelected);
    connect(m_session.data(), &FontRecognizerSession::extendLastSelectedLetterFinished, this,
            &SelectedLettersList::onLastSelectedLetterExtended);
    connect(m_session.data(), &FontRecognizerSession::letterDiscarded, this, &SelectedLettersList::onLetterDiscarded);
}

int SelectedLettersList::indexOf(const QObject* tile) const
{
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [tile](const Entry& entry) { return entry.tile == tile; });
    return found == m_entries.end() ? -1 : int(found - m_entries.begin());
}

void SelectedLettersList::removeTile(int index)
{
    SelectedLetterWidget* tile = m_entries.takeAt(index).tile;
    m_layout->removeWidget(tile);
    tile->disconnect(this);
    tile->hide();
    tile->deleteLater();
    numberTiles();
    update();
}

void SelectedLettersList::numberTiles()
{
    for (int i = 0; i < m_entries.size(); ++i)
        m_entries.at(i).tile->setPosition(i + 1);
}

void SelectedLettersList::onLetterSelected(bool success, FontRecognizerLetterSelectionPtr selectedLetter)
{
    if (!success || !selectedLetter)
        return;
    auto* tile = new SelectedLetterWidget(this);
    tile->setImage(selectedLetter->image());
    connect(tile, &SelectedLetterWidget::closeButtonPressed, this, &SelectedLettersList::onCloseButtonPressed);
    connect(tile, &SelectedLetterWidget::letterChanged, this, &SelectedLettersList::onLetterChanged);
    connect(tile, &SelectedLetterWidget::focused, this, [this, tile] { emit tileFocused(tile); });
    // Tab goes through the tiles in their order, not in that of the window's making.
    setTabOrder(m_entries.isEmpty() ? m_predecessor : m_entries.last().tile->input(), tile->input());
    m_layout->insertWidget(m_layout->count() - 1, tile);
    m_entries.append({tile, selectedLetter});
    tile->show(); // now, for the focus
    update();
    numberTiles();

    const auto waiting = std::find_if(m_entries.begin(), m_entries.end(),
                                      [](const Entry& entry) { return entry.tile->character().isNull(); });
    waiting->tile->setFocus();
    emit letterAdded();
}

void SelectedLettersList::onLastSelectedLetterExtended(bool success)
{
    if (!success || m_entries.isEmpty())
        return;
    if (const auto letter = m_session->letter(m_session->letterCount() - 1))
        m_entries.last().tile->setImage(letter->image());
}

// A letter discarded by anyone but its own tile takes the tile with it.
void SelectedLettersList::onLetterDiscarded(FontRecognizerLetterSelectionPtr selectedLetter)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&selectedLetter](const Entry& entry) { return entry.letter == selectedLetter; });
    if (found != m_entries.end())
        removeTile(int(found - m_entries.begin()));
}

void SelectedLettersList::onCloseButtonPressed()
{
    const int index = indexOf(sender());
    if (index < 0)
        return;
    removeTile(index);
    m_session->discardLetter(index);
}

void SelectedLettersList::onLetterChanged()
{
    const int index = indexOf(sender());
    if (index < 0)
        return;
    const QChar character = m_entries.at(index).tile->character();
    if (const auto letter = m_session->letter(index))
        letter->setCharacter(character);
    if (!character.isNull() && index + 1 < m_entries.size())
        m_entries.at(index + 1).tile->setFocus();
}

void SelectedLettersList::paintEvent(QPaintEvent*)
{
    if (!m_entries.isEmpty() || !m_session)
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(contentsRect(), Qt::AlignCenter | Qt::TextWordWrap,
                     tr("Click a letter in the picture to add it here"));
}
