#pragma once

#include <QDialog>

#include <functional>

// Answers the next modal dialogs that open, one after the other, as a user would: each answer gets the dialog once it
// is shown and must end it. A dialog that nobody answers fails the test by its time-out.
class ModalAnswers : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<void(QDialog*)>;

    explicit ModalAnswers(std::initializer_list<Answer> answers);
    ~ModalAnswers() override;

    // How many answers have been given.
    int given() const { return m_given; }

    static Answer press(const QString& buttonText);
    // Once the button with this object name is there to be pressed.
    static Answer pressWhenShown(const QString& objectName);
    static Answer typeAndAccept(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QList<Answer> m_answers;
    int m_given = 0;
};
