#include "qtService/app/service/FontManagementService.h"
#include "qtService/ui/dialogs/FontExportProgressDialog.h"
#include "qtService/ui/dialogs/PrintProgressDialog.h"
#include "qtService/ui/dialogs/TextInputDialog.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"

#include <QFileDialog>
#include <QFileInfo>

// The documents and archives that the user makes of fonts.

namespace {

const QString pdfSuffix = QStringLiteral("pdf");
const QString zipSuffix = QStringLiteral("zip");

QString withSuffix(const QString& path, const QString& suffix)
{
    if (QFileInfo(path).suffix().compare(suffix, Qt::CaseInsensitive) == 0)
        return path;
    return path + QLatin1Char('.') + suffix;
}

} // namespace

QString KrvFontManagerWindow::askSaveFileName(KrvUiSettings::SettingId setting, const QString& defaultName,
                                              const QString& suffix, const QString& filter)
{
    KrvUiSettings* settings = KrvUiSettings::instance();
    const QString last = settings->value(setting).toString();
    const QString folder = last.isEmpty() ? QDir::homePath() : QFileInfo(last).absolutePath();
    // The dialog itself must not ask about replacing: the name it asks about may still lack its suffix.
    QString path = QFileDialog::getSaveFileName(this, tr("Save File As"), folder + defaultName, filter);
    if (path.isEmpty())
        return path;
    const QString chosen = withSuffix(path, suffix);
    if (chosen != path && QFileInfo::exists(chosen) &&
        !confirm(tr("Save File As"), tr("The file \"%1\" exists already. Do you want to replace it?").arg(chosen)))
        return QString();
    settings->setValue(setting, chosen);
    return chosen;
}

void KrvFontManagerWindow::printListing(const QString& operation, bool allFonts)
{
    if (!isStarted())
        return;
    const QList<int> fontIds = selectedFontIds();
    TextInputDialog dialog(titled(operation), QString(), tr("Sample text:"),
                           tr("The quick brown fox jumps over lazy dog"), nullptr, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString file =
        askSaveFileName(KrvUiSettings::SidLastFontListingFileName, QStringLiteral("/Kerval_list_preview.pdf"),
                        pdfSuffix, tr("PDF files (*.pdf)"));
    if (file.isEmpty())
        return;
    const FontSampleJobPtr job = allFonts ? m_service->createFontSampleForAllFonts(file, dialog.text())
                                          : m_service->createFontSampleForFonts(fontIds, file, dialog.text());
    showPrintProgress(job, titled(tr("Font Listing")), tr("Creating Font Listing..."));
}

void KrvFontManagerWindow::showPrintProgress(const FontSampleJobPtr& job, const QString& title, const QString& text)
{
    if (!job)
        return;
    PrintProgressDialog dialog(job, title, text, this);
    dialog.exec();
}

void KrvFontManagerWindow::printAllFonts()
{
    printListing(tr("Create Font Listing of All Fonts"), true);
}

void KrvFontManagerWindow::printChosenFonts()
{
    printListing(tr("Create Font Listing"), false);
}

void KrvFontManagerWindow::printSampleOfChosenFonts()
{
    if (!isStarted())
        return;
    const QList<int> fontIds = selectedFontIds();
    const QString file = askSaveFileName(KrvUiSettings::SidLastSampleSheetFileName,
                                         QStringLiteral("/Kerval_sample.pdf"), pdfSuffix, tr("PDF files (*.pdf)"));
    if (file.isEmpty())
        return;
    showPrintProgress(m_service->createFontSampleSheetFotFonts(fontIds, file, QString()),
                      titled(tr("Create Sample Sheet")), tr("Creating Sample Sheet..."));
}

QString KrvFontManagerWindow::askArchiveName()
{
    return askSaveFileName(KrvUiSettings::SidLastExportFileName, QStringLiteral("/Kerval_fonts.zip"), zipSuffix,
                           tr("ZIP files (*.zip)"));
}

void KrvFontManagerWindow::zipAllFonts()
{
    if (!isStarted())
        return;
    const QString file = askArchiveName();
    if (file.isEmpty())
        return;
    FontExportProgressDialog dialog(m_service->exportAllFonts(file), titled(tr("Export All Fonts")),
                                    tr("Exporting All Fonts..."), this);
    dialog.exec();
}

void KrvFontManagerWindow::zipChosenFonts()
{
    if (!isStarted())
        return;
    const QList<int> fontIds = selectedFontIds();
    const QString file = askArchiveName();
    if (file.isEmpty())
        return;
    FontExportProgressDialog dialog(m_service->exportFonts(file, fontIds), titled(tr("Export")),
                                    tr("Exporting Fonts..."), this);
    dialog.exec();
}
