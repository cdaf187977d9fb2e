#pragma once

#include "tests/fontlens/FakeRecognition.h"
#include "tests/qtService/ui/modaldialogs.h"

#include <QTemporaryDir>

#include <memory>

class FontLensDialog;
class QAction;

// The FontLens window before a fake service, and the hands of its user.
class FontLensDriver
{
public:
    // Whose service it is decides whether results are fonts of the user's own.
    enum ServiceKind
    {
        OwnService,
        ForeignService
    };

    explicit FontLensDriver(ServiceKind kind = OwnService);
    ~FontLensDriver();

    FakeRecognition& service() { return m_service; }
    FontLensDialog* dialog() const { return m_dialog.get(); }
    QAction* action(const char* name) const;
    template <typename Widget>
    Widget* find(const char* name) const;
    QWidget* viewport() const;
    bool isBusy() const;
    int page() const;

    // Chooses the file in the dialog of the action.
    void choosePicture();
    // The same, and waits; false when nothing was opened.
    bool openPicture();
    QString pictureFile() const { return m_folder.filePath(QStringLiteral("picture.png")); }
    // A click at a pixel of the picture.
    void click(QPoint pixel, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {});
    void move(QPoint pixel);
    // Clicks as many letters and types "a", "b"... into their tiles.
    bool selectLetters(int count, bool type = true);
    int letterCount() const;
    bool identify();

    struct Message
    {
        QString title;
        QString text;
    };
    // Reads a message and closes it.
    static ModalAnswers::Answer read(Message* message);

private:
    FakeRecognition m_service;
    QTemporaryDir m_folder;
    std::unique_ptr<FontLensDialog> m_dialog;
};

#include "fontlens/FontLensDialog.h"

template <typename Widget>
Widget* FontLensDriver::find(const char* name) const
{
    return m_dialog->findChild<Widget*>(QLatin1String(name));
}
