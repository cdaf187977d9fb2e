#pragma once

#include "fontlens/recognition/FontData.h"
#include "fontlens/recognition/FontRecognizerLetterSelection.h"

#include <QDialog>
#include <QImage>
#include <QSharedPointer>
#include <QUrl>

#include <memory>

class FontLensForm;
class FontLensGraphicsScene;
class FontLensSimilarFontsModel;
class LetterSplitter;
class QAction;
struct PictureSource;

namespace FontRecognizer {
class FontRecognizerClient;
class FontRecognizerSession;
} // namespace FontRecognizer

// The window that tells which font a picture shows: the user opens a picture, clicks letters in it, types what they
// are, and reads the fonts that match. Modeless; main thread. One request is awaited at a time: meanwhile the controls
// that would start another are off, the window can be closed, and the user may stop waiting. A failure is told in a
// message and leaves everything as it was before the request. Escape first drops the cut line that is being drawn, then
// stops waiting, then closes.
//
// A picture that is opened is shown whole, at the largest of the listed zoom levels that fits and is not above 100 %.
// Pictures are also taken when dropped on the window or pasted.
class FontLensDialog : public QDialog
{
    Q_OBJECT

public:
    // The recognition service is the one that the settings name ("host" or "host:port"), else localService, this
    // program's own. Without either every request fails as one without a connection does.
    explicit FontLensDialog(QWidget* parent = nullptr, const QString& localService = QString());
    ~FontLensDialog() override;

    void done(int result) override;

signals:
    void closed();
    // A result of the program's own service is a font of the user's catalogue; the user wants to see it there.
    void showFontRequested(int fontId);
    // The user has typed the address of a picture, which is about to be asked of the service. The program's own service
    // goes into the user's network for such an address only; one that was dropped or pasted may come from a stranger.
    void addressTyped(const QUrl& url);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private slots:
    void onOpenImageFromFile();
    void onOpenImageFromURL();
    void onSessionStarted(bool success);
    void onToolTriggered(QAction* action);
    void onViewResized(QSize size);
    void onMouseMoved(QPointF scenePos, QPointF lastScenePos, Qt::MouseButtons pressedButtons,
                      Qt::MouseButton eventTriggerButton, Qt::KeyboardModifiers keyboardModifiers);
    void onMouseReleased(QPointF scenePos, Qt::MouseButtons pressedButtons, Qt::MouseButton eventTriggerButton,
                         Qt::KeyboardModifiers keyboardModifiers);
    void onLetterSelected(bool success, FontRecognizer::FontRecognizerLetterSelectionPtr selectedLetter);
    void onLetterSelectionExtended(bool success);
    void onLetterAdded();
    void onIdentify();
    void onSimilarFontsFound(bool success, QList<FontRecognizer::FontDataPtr> fontDataListPtr);
    void onCustomPreviewRendered(bool success, int fontId, QImage previewImage);
    void onBtnBackClicked();
    void onShowGridStateChanged();
    void onHelpTriggered();
    void onZoomRequested(bool zoomIn, QPoint viewPos);
    void onZoomLevelChanged();
    void onRotationChanged();
    void onSelectionChanged();
    void onFontStoreUrlRetrieved(bool success, int fontId, QUrl url);
    void onPreviewTextChanged();
    void onClearSplitters();

private:
    using Session = FontRecognizer::FontRecognizerSession;
    using SessionPtr = QSharedPointer<Session>;

    void connectForm();
    void addShortcuts();

    void openSource(const PictureSource& source);
    void openFile(const QString& file);
    void openImage(const QImage& image, const QString& name);
    void openUrl(const QUrl& url);
    void paste();
    SessionPtr createSession();
    void adoptSession(const SessionPtr& session);
    void fitPicture();

    // Empty text: nothing is awaited any more.
    void setAwaiting(const QString& text);
    bool isAwaiting() const;
    void cancelRequest();
    void placeBusyIndicator();
    void tellFailure(int lastResult, const QString& otherwise);

    void selectLetterAt(QPointF scenePos, bool extend);
    void continueSplitter(QPointF scenePos, Qt::MouseButton button);
    void endSplitter();
    void handOverSplitters();
    void stepZoom(int steps);

    void showPage(int page);
    void showLetters();
    FontRecognizer::FontDataPtr currentFont() const;
    void requestCustomPreview();
    void showCurrentFontInLibrary();
    void showResultsMenu(QPoint pos);

    std::unique_ptr<FontLensForm> m_form;
    bool m_isLocalService;
    QSharedPointer<FontRecognizer::FontRecognizerClient> m_client;
    SessionPtr m_session; // null until a picture is open
    SessionPtr m_opening; // of the picture that is on its way
    FontLensGraphicsScene* m_scene;
    FontLensSimilarFontsModel* m_results;
    LetterSplitter* m_splitter = nullptr; // being drawn; the scene's
    bool m_previewMissing = false;        // of the selected font
};
