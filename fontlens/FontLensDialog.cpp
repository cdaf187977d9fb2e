#include "fontlens/FontLensDialog.h"

#include "fontlens/FontLensBusyIndicator.h"
#include "fontlens/FontLensDropHint.h"
#include "fontlens/FontLensFontPreviewWidget.h"
#include "fontlens/FontLensForm.h"
#include "fontlens/FontLensGraphicsScene.h"
#include "fontlens/FontLensGraphicsView.h"
#include "fontlens/FontLensSimilarFontsModel.h"
#include "fontlens/PictureSource.h"
#include "fontlens/SelectedLettersList.h"
#include "fontlens/recognition/FontRecognizerClient.h"
#include "fontlens/recognition/FontRecognizerReplyBase.h"
#include "fontlens/recognition/FontRecognizerSession.h"
#include "qtService/app/core/FMSSettings.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTreeView>

// What the window is made of, how it opens a picture, and what it does while it awaits an answer.

using FontRecognizer::FontRecognizerClient;
using FontRecognizer::FontRecognizerReplyBase;

namespace {

QString configuredHost()
{
    return FMSSettings().fontLensHost();
}

} // namespace

FontLensDialog::FontLensDialog(QWidget* parent, const QString& localService)
    : QDialog(parent, Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                          Qt::WindowCloseButtonHint)
    , m_form(std::make_unique<FontLensForm>())
    , m_isLocalService(configuredHost().isEmpty() && !localService.isEmpty())
    , m_client(QSharedPointer<FontRecognizerClient>::create(
          FontRecognizer::RecognitionUrls(m_isLocalService ? localService : configuredHost())))
    , m_scene(new FontLensGraphicsScene(this))
    , m_results(new FontLensSimilarFontsModel(this))
{
    m_form->setupUi(this);
    m_form->view->setScene(m_scene);
    m_form->treeView->setModel(m_results);
    QHeaderView* header = m_form->treeView->header();
    header->resizeSection(FontLensSimilarFontsModel::PreviewColumn,
                          FontLensSimilarFontsModel::previewSize().width() + 12);
    header->resizeSection(FontLensSimilarFontsModel::NameColumn, 260);
    header->resizeSection(FontLensSimilarFontsModel::StyleColumn, 150);
    m_form->previewWidget->setHasShop(!m_isLocalService);
    m_form->btnShowInLibrary->setVisible(m_isLocalService);
    m_form->treeView->installEventFilter(this);
    setAcceptDrops(true);
    connectForm();
    addShortcuts();
}

FontLensDialog::~FontLensDialog() = default;

void FontLensDialog::connectForm()
{
    using Dialog = FontLensDialog;
    connect(m_form->openImage, &QAction::triggered, this, &Dialog::onOpenImageFromFile);
    connect(m_form->openUrl, &QAction::triggered, this, &Dialog::onOpenImageFromURL);
    connect(m_form->removeSplitters, &QAction::triggered, this, &Dialog::onClearSplitters);
    connect(m_form->help, &QAction::triggered, this, &Dialog::onHelpTriggered);
    connect(m_form->tools, &QActionGroup::triggered, this, &Dialog::onToolTriggered);

    connect(m_form->cmbZoom, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Dialog::onZoomLevelChanged);
    connect(m_form->spbRotation, QOverload<int>::of(&QSpinBox::valueChanged), this, &Dialog::onRotationChanged);
    connect(m_form->chkbDisplayGrid, &QCheckBox::stateChanged, this, &Dialog::onShowGridStateChanged);
    connect(m_form->view, &FontLensGraphicsView::zoomRequested, this, &Dialog::onZoomRequested);
    connect(m_form->view, &FontLensGraphicsView::resized, this, &Dialog::onViewResized);
    connect(m_scene, &FontLensGraphicsScene::mouseMoved, this, &Dialog::onMouseMoved);
    connect(m_scene, &FontLensGraphicsScene::mouseReleased, this, &Dialog::onMouseReleased);

    connect(m_form->selectedLettersList, &SelectedLettersList::letterAdded, this, &Dialog::onLetterAdded);
    connect(m_form->selectedLettersList, &SelectedLettersList::tileFocused, m_form->lettersArea,
            [area = m_form->lettersArea](QWidget* tile) { area->ensureWidgetVisible(tile); });
    connect(m_form->btnIdentify, &QPushButton::clicked, this, &Dialog::onIdentify);
    connect(m_form->btnBack, &QPushButton::clicked, this, &Dialog::onBtnBackClicked);
    connect(m_form->busyIndicator, &FontLensBusyIndicator::cancelled, this, &Dialog::cancelRequest);

    connect(m_form->treeView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Dialog::onSelectionChanged);
    connect(m_form->previewWidget, &FontLensFontPreviewWidget::previewTextChanged, this, &Dialog::onPreviewTextChanged);
    connect(m_form->btnShowInLibrary, &QPushButton::clicked, this, &Dialog::showCurrentFontInLibrary);
    connect(m_form->treeView, &QAbstractItemView::doubleClicked, this, &Dialog::showCurrentFontInLibrary);
    connect(m_form->treeView, &QWidget::customContextMenuRequested, this, &Dialog::showResultsMenu);
}

void FontLensDialog::addShortcuts()
{
    const auto add = [this](const QList<QKeySequence>& keys, QWidget* parent, Qt::ShortcutContext context,
                            const std::function<void()>& run) {
        for (const QKeySequence& key : keys) {
            auto* shortcut = new QShortcut(key, parent);
            shortcut->setContext(context);
            connect(shortcut, &QShortcut::activated, this, run);
        }
    };
    add({QKeySequence::Paste}, this, Qt::WindowShortcut, [this] { paste(); });
    // The plus of the main keys needs Shift on some keyboards and not on others.
    add({QKeySequence::ZoomIn, QKeySequence(Qt::CTRL | Qt::Key_Equal)}, this, Qt::WindowShortcut,
        [this] { stepZoom(+1); });
    add({QKeySequence::ZoomOut}, this, Qt::WindowShortcut, [this] { stepZoom(-1); });
    add({QKeySequence(Qt::CTRL | Qt::Key_0)}, this, Qt::WindowShortcut, [this] { fitPicture(); });
    add({QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)}, m_form->treeView, Qt::WidgetShortcut,
        [this] { showCurrentFontInLibrary(); });
}

void FontLensDialog::done(int result)
{
    QDialog::done(result);
    emit closed();
}

bool FontLensDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_form->treeView && event->type() == QEvent::PaletteChange)
        m_results->setAppearance(m_form->treeView->palette().color(QPalette::Text), devicePixelRatioF());
    return QDialog::eventFilter(watched, event);
}

void FontLensDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel) && m_splitter) {
        m_scene->deleteSplitter(m_splitter);
        m_splitter = nullptr;
    } else if (event->matches(QKeySequence::Cancel) && isAwaiting()) {
        cancelRequest();
    } else {
        QDialog::keyPressEvent(event);
    }
}

void FontLensDialog::onOpenImageFromFile()
{
    const QString file = QFileDialog::getOpenFileName(this, tr("FontLens - Open Image"), QDir::homePath(),
                                                      tr("Images (*.png *.jpg *.jpeg *.bmp)"));
    if (!file.isEmpty())
        openFile(file);
}

void FontLensDialog::onOpenImageFromURL()
{
    bool ok = false;
    const QString text = QInputDialog::getText(this, tr("FontLens - Open Image From URL"), tr("Image URL"),
                                               QLineEdit::Normal, QGuiApplication::clipboard()->text(), &ok);
    if (!ok)
        return;
    const PictureSource source = PictureSource::fromText(text);
    if (source.isEmpty())
        QMessageBox::critical(this, tr("FontLens - Open Image From URL"), tr("Please enter a valid image URL!"));
    if (!source.url.isEmpty())
        emit addressTyped(source.url);
    if (!source.isEmpty())
        openSource(source);
}

void FontLensDialog::openSource(const PictureSource& source)
{
    if (!source.image.isNull())
        openImage(PictureSource::reduced(source.image), QStringLiteral("picture.png"));
    else if (!source.file.isEmpty())
        openFile(source.file);
    else
        openUrl(source.url);
}

void FontLensDialog::openFile(const QString& file)
{
    const QImage image = PictureSource::load(file);
    if (image.isNull())
        QMessageBox::critical(this, tr("FontLens - Open Image From File"), tr("Please open a valid image file!"));
    else
        openImage(image, file);
}

void FontLensDialog::openImage(const QImage& image, const QString& name)
{
    m_opening = createSession();
    setAwaiting(tr("Opening the picture..."));
    m_opening->setSourceImage(image, name);
}

void FontLensDialog::openUrl(const QUrl& url)
{
    m_opening = createSession();
    setAwaiting(tr("Downloading the picture..."));
    m_opening->setSourceImage(url);
}

void FontLensDialog::paste()
{
    if (isAwaiting())
        return;
    const PictureSource source = PictureSource::fromMimeData(QGuiApplication::clipboard()->mimeData());
    if (!source.isEmpty())
        openSource(source);
}

FontLensDialog::SessionPtr FontLensDialog::createSession()
{
    // Sessions are dropped from inside their own signals.
    const SessionPtr session(new Session(m_client), &QObject::deleteLater);
    connect(session.data(), &Session::setSourceImageFinished, this, &FontLensDialog::onSessionStarted);
    return session;
}

void FontLensDialog::onSessionStarted(bool success)
{
    if (!m_opening)
        return;
    const SessionPtr session = m_opening;
    m_opening.reset();
    if (success)
        adoptSession(session);
    setAwaiting(QString());
    if (!success)
        tellFailure(session->lastResult(), tr("Failed to open the supplied image.\nPlease make sure that the image "
                                              "file or URL is valid!"));
}

void FontLensDialog::adoptSession(const SessionPtr& session)
{
    if (m_session)
        m_session->disconnect(this);
    m_session = session;
    onClearSplitters();
    m_scene->setPicture(QPixmap::fromImage(session->sourceImage()));
    showPage(FontLensForm::PicturePage);
    fitPicture();
    m_form->view->centerOn(m_scene->sceneRect().center());

    m_form->selectedLettersList->setSession(session);
    m_results->setSession(session);
    connect(session.data(), &Session::selectLetterFinished, this, &FontLensDialog::onLetterSelected);
    connect(session.data(), &Session::extendLastSelectedLetterFinished, this,
            &FontLensDialog::onLetterSelectionExtended);
    connect(session.data(), &Session::findSimilarFontsFinished, this, &FontLensDialog::onSimilarFontsFound);
    connect(session.data(), &Session::renderCustomPreviewFinished, this, &FontLensDialog::onCustomPreviewRendered);
    connect(session.data(), &Session::getFontStoreUrlFinished, this, &FontLensDialog::onFontStoreUrlRetrieved);
    m_form->tools->setEnabled(true);
    m_form->view->setFocus();
}

void FontLensDialog::setAwaiting(const QString& text)
{
    const bool idle = text.isEmpty();
    if (idle) {
        m_form->busyIndicator->stop();
    } else {
        placeBusyIndicator();
        m_form->busyIndicator->start(text);
    }
    m_form->dropHint->setVisible(idle && !m_session);
    const QList<QAction*> actions = m_form->actions();
    for (QAction* action : actions)
        action->setEnabled(idle);
    m_form->btnIdentify->setEnabled(idle);
    m_form->btnBack->setEnabled(idle);
    m_form->cmbSelectionSensitivity->setEnabled(idle);
}

bool FontLensDialog::isAwaiting() const
{
    return m_form->busyIndicator->isBusy();
}

void FontLensDialog::cancelRequest()
{
    if (m_opening) {
        m_opening->disconnect(this);
        m_opening.reset();
    } else if (m_session) {
        m_session->dropRequests();
    }
    setAwaiting(QString());
}

void FontLensDialog::onViewResized(QSize)
{
    placeBusyIndicator();
}

void FontLensDialog::placeBusyIndicator()
{
    const QWidget* page = m_form->pages->currentWidget();
    const QWidget* covered = page->isAncestorOf(m_form->view) ? m_form->view->viewport() : page;
    m_form->busyIndicator->centreIn(QRect(covered->mapTo(m_form->pages, QPoint()), covered->size()));
}

void FontLensDialog::tellFailure(int lastResult, const QString& otherwise)
{
    QMessageBox::critical(this, tr("FontLens"),
                          lastResult == FontRecognizerReplyBase::NetworkFailure
                              ? tr("Failed to connect to the Kerval server.\nPlease make sure you have a working "
                                   "Internet connection and/or try again later!")
                              : otherwise);
}

void FontLensDialog::dragEnterEvent(QDragEnterEvent* event)
{
    if (isAwaiting() || PictureSource::fromMimeData(event->mimeData()).isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    m_form->dropHint->setHighlighted(true);
    m_form->dropHint->show();
}

void FontLensDialog::dragLeaveEvent(QDragLeaveEvent*)
{
    m_form->dropHint->setHighlighted(false);
    m_form->dropHint->setVisible(!m_session);
}

void FontLensDialog::dropEvent(QDropEvent* event)
{
    dragLeaveEvent(nullptr);
    const PictureSource source = PictureSource::fromMimeData(event->mimeData());
    if (isAwaiting() || source.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    activateWindow();
    // Failures are told in a modal message, which must not hold up the program the picture is dragged from.
    QMetaObject::invokeMethod(
        this, [this, source] { openSource(source); }, Qt::QueuedConnection);
}

void FontLensDialog::onHelpTriggered()
{
    QMessageBox::information(this, tr("Help"),
                             tr("Kerval FontLens helps you identify fonts on images.\nUsage:\n1. Open an image\n2. "
                                "Click a letter to add it to the identification list\n3. Repeat for several individual "
                                "letters\n4. Fill in letter boxes\n5. Click on the Identify button\ntip: Shift+Click "
                                "to build a letter i j"));
}
