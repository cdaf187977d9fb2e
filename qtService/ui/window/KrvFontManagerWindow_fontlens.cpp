#include "fontlens/FontLensDialog.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "qtService/ui/window/ScreenGeometry.h"

#include <QMessageBox>

// The window that identifies fonts in pictures, and the way back from it to the list.

void KrvFontManagerWindow::fontLens()
{
    if (!m_fontLens) {
        m_fontLens = new FontLensDialog(this, m_localRecognitionService);
        m_fontLens->setWindowTitle(titled(tr("FontLens")));
        QRect place(QPoint(), m_fontLens->size());
        place.moveCenter(geometry().center());
        m_fontLens->setGeometry(ui::onScreen(place));
        connect(m_fontLens.data(), &FontLensDialog::closed, this, &KrvFontManagerWindow::fontLensClosed);
        connect(m_fontLens.data(), &FontLensDialog::showFontRequested, this, &KrvFontManagerWindow::showFontInLibrary);
        connect(m_fontLens.data(), &FontLensDialog::addressTyped, this, &KrvFontManagerWindow::pictureAddressTyped);
    }
    if (m_fontLens->isMinimized())
        m_fontLens->showNormal();
    m_fontLens->show();
    m_fontLens->raise();
    m_fontLens->activateWindow();
}

void KrvFontManagerWindow::fontLensClosed()
{
    if (!m_fontLens)
        return;
    m_fontLens->deleteLater();
    m_fontLens.clear();
}

void KrvFontManagerWindow::showFontInLibrary(int fontId)
{
    const StaticFontPtr font = isStarted() ? m_service->repository()->font(fontId) : StaticFontPtr();
    if (!font) {
        QMessageBox::information(m_fontLens ? static_cast<QWidget*>(m_fontLens.data()) : this, titled(tr("FontLens")),
                                 tr("This font is no longer in the library."));
        return;
    }
    show();
    m_view->setFocus();
    if (!m_model->indexOfFont(fontId).isValid()) {
        if (!m_filters.isCleared())
            m_filters.clear();
        const int group = font->isHidden() ? SystemFontGroupList::HiddenFonts : SystemFontGroupList::AllFonts;
        m_sideBar->selectGroup(group);
        // A list of similar fonts shows while a group stays selected.
        if (m_model->fontGroup() != m_sideBar->selectedGroup())
            onGroupSelected(group);
        if (m_model->isFiltering() || !m_model->indexOfFont(fontId).isValid()) {
            m_fontToShow = fontId;
            return;
        }
    }
    m_view->selectFont(fontId);
}
