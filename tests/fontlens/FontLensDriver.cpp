#include "tests/fontlens/FontLensDriver.h"

#include "fontlens/FontLensBusyIndicator.h"
#include "fontlens/FontLensGraphicsView.h"
#include "fontlens/SelectedLetterWidget.h"
#include "fontlens/SelectedLettersList.h"
#include "qtService/app/core/SettingsFolders.h"

#include <QAction>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QtTest>

FontLensDriver::FontLensDriver(ServiceKind kind)
{
    {
        QSettings settings(krv::userSettingsFolder() + QStringLiteral("settings.ini"), QSettings::IniFormat);
        settings.setValue(QStringLiteral("FontLens/Host"), kind == ForeignService ? m_service.host() : QString());
    }
    QImage picture(FakeRecognition::pictureSize(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    picture.save(pictureFile());
    m_dialog = std::make_unique<FontLensDialog>(nullptr,
                                                kind == OwnService ? m_service.host() : QStringLiteral("127.0.0.1:9"));
    m_dialog->show();
    if (!QTest::qWaitForWindowActive(m_dialog.get()))
        qFatal("the window does not show");
}

FontLensDriver::~FontLensDriver() = default;

QAction* FontLensDriver::action(const char* name) const
{
    return m_dialog->findChild<QAction*>(QLatin1String(name));
}

QWidget* FontLensDriver::viewport() const
{
    return find<FontLensGraphicsView>("graphicsView")->viewport();
}

bool FontLensDriver::isBusy() const
{
    return find<FontLensBusyIndicator>("busyIndicator")->isBusy();
}

int FontLensDriver::page() const
{
    return find<QStackedWidget>("stackedWidget")->currentIndex();
}

void FontLensDriver::choosePicture()
{
    ModalAnswers answers({[this](QDialog* dialog) {
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(pictureFile());
        QMetaObject::invokeMethod(dialog, "accept");
    }});
    action("actionOpenImage")->trigger();
    // Shortcuts need an active window, and nothing but the user's window manager gives it back after a dialog.
    m_dialog->activateWindow();
}

bool FontLensDriver::openPicture()
{
    choosePicture();
    return QTest::qWaitFor([this] { return !isBusy(); }) && action("actionSelectLetter")->isEnabled();
}

void FontLensDriver::click(QPoint pixel, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(viewport(), button, modifiers,
                      find<FontLensGraphicsView>("graphicsView")->mapFromScene(QPointF(pixel)));
}

void FontLensDriver::move(QPoint pixel)
{
    QTest::mouseMove(viewport(), find<FontLensGraphicsView>("graphicsView")->mapFromScene(QPointF(pixel)));
}

bool FontLensDriver::selectLetters(int count, bool type)
{
    for (int i = 0; i < count; ++i) {
        const int before = letterCount();
        click(QPoint(20 + 30 * i, 50));
        if (!QTest::qWaitFor([this, before] { return !isBusy() && letterCount() == before + 1; }))
            return false;
    }
    const auto tiles = m_dialog->findChildren<SelectedLetterWidget*>();
    for (int i = 0; type && i < tiles.size(); ++i)
        tiles.at(i)->findChild<QLineEdit*>()->setText(QString(QChar('a' + i)));
    return true;
}

int FontLensDriver::letterCount() const
{
    return m_dialog->findChildren<SelectedLetterWidget*>().size();
}

bool FontLensDriver::identify()
{
    QTest::mouseClick(find<QPushButton>("btnIdentify"), Qt::LeftButton);
    return QTest::qWaitFor([this] { return page() == 1 && !isBusy(); });
}

ModalAnswers::Answer FontLensDriver::read(Message* message)
{
    return [message](QDialog* dialog) {
        if (const auto* box = qobject_cast<QMessageBox*>(dialog))
            *message = {box->windowTitle(), box->text()};
        dialog->accept();
    };
}
