#pragma once

#include "fontlens/recognition/FontRecognizerLetterSelection.h"

#include <QList>
#include <QSharedPointer>
#include <QWidget>

class QHBoxLayout;
class SelectedLetterWidget;

namespace FontRecognizer {
class FontRecognizerSession;
}

// The strip of the selected letters: one tile for each letter of the session, in its order. Typing a character moves on
// to the next tile. A new tile passes the keyboard to the first one that still waits for its character, so that the
// user may type after each click or after the last.
class SelectedLettersList : public QWidget
{
    Q_OBJECT

public:
    explicit SelectedLettersList(QWidget* parent = nullptr);

    // Clears the strip. Null: none.
    void setSession(const QSharedPointer<FontRecognizer::FontRecognizerSession>& session);
    // What Tab leaves for the first tile; it outlives the strip.
    void setPredecessor(QWidget* predecessor) { m_predecessor = predecessor; }

signals:
    void letterAdded();
    // The tile that the keys go to now.
    void tileFocused(QWidget* tile);

protected:
    void paintEvent(QPaintEvent* event) override;

private slots:
    void onLetterSelected(bool success, FontRecognizer::FontRecognizerLetterSelectionPtr selectedLetter);
    void onLastSelectedLetterExtended(bool success);
    void onLetterDiscarded(FontRecognizer::FontRecognizerLetterSelectionPtr selectedLetter);
    void onCloseButtonPressed();
    void onLetterChanged();

private:
    struct Entry
    {
        SelectedLetterWidget* tile;
        FontRecognizer::FontRecognizerLetterSelectionPtr letter;
    };
    int indexOf(const QObject* tile) const;
    void removeTile(int index);
    void numberTiles();

    QSharedPointer<FontRecognizer::FontRecognizerSession> m_session;
    QHBoxLayout* m_layout;
    QWidget* m_predecessor = nullptr;
    QList<Entry> m_entries;
};
