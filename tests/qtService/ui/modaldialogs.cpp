#include "tests/qtService/ui/modaldialogs.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QtTest>

ModalAnswers::ModalAnswers(std::initializer_list<Answer> answers)
    : m_answers(answers)
{
    qApp->installEventFilter(this);
}

ModalAnswers::~ModalAnswers()
{
    qApp->removeEventFilter(this);
}

bool ModalAnswers::eventFilter(QObject* watched, QEvent* event)
{
    auto* dialog = qobject_cast<QDialog*>(watched);
    if (dialog && event->type() == QEvent::Show && dialog->isModal() && m_given < m_answers.size() &&
        dialog->objectName() != QLatin1String("AsynchronousCommandWaitIndicatorDialog")) {
        const Answer answer = m_answers.at(m_given++);
        // After the dialog's own event loop has begun.
        QTimer::singleShot(0, dialog, [answer, shown = QPointer<QDialog>(dialog)] {
            answer(shown);
            // An answer that failed half-way leaves nobody waiting.
            if (QTest::currentTestFailed() && shown && shown->isVisible())
                shown->reject();
        });
    }
    return QObject::eventFilter(watched, event);
}

ModalAnswers::Answer ModalAnswers::press(const QString& buttonText)
{
    return [buttonText](QDialog* dialog) {
        const QList<QAbstractButton*> buttons = dialog->findChildren<QAbstractButton*>();
        for (QAbstractButton* button : buttons) {
            if (button->text().remove(QLatin1Char('&')) == buttonText) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        dialog->reject();
        QFAIL(qPrintable(QStringLiteral("no button \"%1\"").arg(buttonText)));
    };
}

ModalAnswers::Answer ModalAnswers::pressWhenShown(const QString& objectName)
{
    return [objectName](QDialog* dialog) {
        auto* button = dialog->findChild<QAbstractButton*>(objectName);
        QVERIFY2(button, qPrintable(objectName));
        QTRY_VERIFY(button->isVisible());
        QTest::mouseClick(button, Qt::LeftButton);
    };
}

ModalAnswers::Answer ModalAnswers::typeAndAccept(const QString& text)
{
    return [text](QDialog* dialog) {
        auto* input = dialog->findChild<QLineEdit*>();
        input->selectAll();
        QTest::keyClicks(input, text);
        QTest::keyClick(input, Qt::Key_Return);
    };
}
