#include "fontlens/FontLensDialog.h"
#include "fontlens/FontLensFontPreviewWidget.h"
#include "fontlens/FontLensForm.h"
#include "fontlens/FontLensSimilarFontsModel.h"
#include "fontlens/recognition/FontRecognizerSession.h"

#include <QFontMetrics>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeView>

#include <memory>

// Asking for the fonts of the selected letters, and the page that shows them.

using FontRecognizer::FontDataPtr;

namespace {

constexpr int largePreviewSize = 48;
constexpr int failureTextPixels = 40;
const QColor failureColor(0xb3, 0x26, 0x1e); // a red that reads on the preview's white ground

// The letters in a row, standing on one line as in the order of their selection.
QImage sideBySide(const QList<FontRecognizer::FontRecognizerLetterSelectionPtr>& letters)
{
    constexpr int gap = 12;
    QSize size(gap, 0);
    for (const auto& letter : letters)
        size = QSize(size.width() + letter->image().width() + gap, qMax(size.height(), letter->image().height()));
    QImage row(size.width(), size.height() + 2 * gap, QImage::Format_RGB32);
    row.fill(Qt::white);
    QPainter painter(&row);
    int x = gap;
    for (const auto& letter : letters) {
        painter.drawImage(x, gap + size.height() - letter->image().height(), letter->image());
        x += letter->image().width() + gap;
    }
    return row;
}

QImage textImage(const QString& text)
{
    QFont font;
    font.setPixelSize(failureTextPixels);
    const QFontMetrics metrics(font);
    QImage image(metrics.horizontalAdvance(text), metrics.height(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(failureColor);
    painter.drawText(0, metrics.ascent(), text);
    return image;
}

} // namespace

void FontLensDialog::onIdentify()
{
    QString missing;
    if (!m_session || m_session->sourceImage().isNull())
        missing = tr("Please open an image first!");
    else if (m_session->letterCount() == 0)
        missing = tr("Please select some letters on the image first by clicking on them!");
    else if (m_session->previewText().length() != m_session->letterCount())
        missing = tr("Please enter a character for all the selected letters on the image or remove the ones you don't "
                     "want to use for font identification!");
    if (!missing.isEmpty()) {
        QMessageBox::warning(this, tr("Warning"), missing);
        return;
    }
    setAwaiting(tr("Looking for fonts like these letters..."));
    m_session->findSimilarFonts();
}

void FontLensDialog::onSimilarFontsFound(bool success, QList<FontDataPtr> fontDataListPtr)
{
    setAwaiting(QString());
    if (!success) {
        tellFailure(m_session->lastResult(), tr("Failed to identify the font based on the selected letters."));
        return;
    }
    m_results->setAppearance(m_form->treeView->palette().color(QPalette::Text), devicePixelRatioF());
    m_results->setFonts(fontDataListPtr);
    m_form->lblNoResults->setVisible(fontDataListPtr.isEmpty());
    showLetters();
    m_form->treeView->scrollToTop();
    showPage(FontLensForm::ResultsPage);
    // The best match is what the user looks for first.
    if (fontDataListPtr.isEmpty())
        onSelectionChanged();
    else
        m_form->treeView->setCurrentIndex(m_results->index(0, 0));
    m_form->treeView->setFocus();
}

void FontLensDialog::showLetters()
{
    const qreal ratio = devicePixelRatioF();
    const QSize room(m_form->pages->width() - 24, m_form->lblLetters->height());
    QImage row =
        sideBySide(m_session->letters()).scaledToHeight(qRound(room.height() * ratio), Qt::SmoothTransformation);
    if (row.width() > room.width() * ratio)
        row = row.scaledToWidth(qRound(room.width() * ratio), Qt::SmoothTransformation);
    row.setDevicePixelRatio(ratio);
    m_form->lblLetters->setPixmap(QPixmap::fromImage(row));
    m_form->lblLetters->setAccessibleDescription(m_session->previewText());
}

void FontLensDialog::showPage(int page)
{
    m_form->pages->setCurrentIndex(page);
    placeBusyIndicator();
}

void FontLensDialog::onBtnBackClicked()
{
    setAwaiting(QString());
    showPage(FontLensForm::PicturePage);
}

FontDataPtr FontLensDialog::currentFont() const
{
    const QModelIndexList rows = m_form->treeView->selectionModel()->selectedRows();
    return rows.isEmpty() ? FontDataPtr() : m_results->font(rows.first());
}

void FontLensDialog::onSelectionChanged()
{
    const FontDataPtr font = currentFont();
    m_form->previewWidget->setFont(font);
    m_form->previewWidget->setImage(QImage());
    m_form->btnShowInLibrary->setEnabled(!font.isNull());
    if (!font)
        return;
    m_session->getFontStoreUrl(font->id);
    requestCustomPreview();
}

void FontLensDialog::onPreviewTextChanged()
{
    if (currentFont())
        requestCustomPreview();
}

void FontLensDialog::requestCustomPreview()
{
    m_previewMissing = true;
    m_session->renderCustomPreview(currentFont()->id, qRound(largePreviewSize * devicePixelRatioF()),
                                   m_form->previewWidget->currentText());
}

// A failure does not say whose preview failed; it is told unless the selected font's has already come.
void FontLensDialog::onCustomPreviewRendered(bool success, int fontId, QImage previewImage)
{
    const FontDataPtr font = currentFont();
    if (!font)
        return;
    if (success && font->id == fontId) {
        m_previewMissing = false;
        m_form->previewWidget->setImage(previewImage);
    } else if (!success && m_previewMissing) {
        m_form->previewWidget->setImage(
            textImage(tr("Failed to tetrieve preview! Please make sure you have a working Internet connection!")));
    }
}

void FontLensDialog::onFontStoreUrlRetrieved(bool success, int fontId, QUrl url)
{
    const FontDataPtr font = currentFont();
    if (success && font && font->id == fontId)
        m_form->previewWidget->setUrl(url);
}

void FontLensDialog::showCurrentFontInLibrary()
{
    const FontDataPtr font = currentFont();
    if (font && m_isLocalService)
        emit showFontRequested(font->id);
}

void FontLensDialog::showResultsMenu(QPoint pos)
{
    if (!m_isLocalService || !currentFont())
        return;
    QMenu menu(this);
    menu.addAction(m_form->btnShowInLibrary->text(), this, &FontLensDialog::showCurrentFontInLibrary);
    menu.exec(m_form->treeView->viewport()->mapToGlobal(pos));
}
