#include "qtService/ui/dialogs/AdderStatus.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/messages/FMSPlainTextMessage.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QProgressBar>

namespace ui {

QString adderStatusText(const FontAdder& adder)
{
    if (adder.isPausing())
        return QCoreApplication::translate("FMSControlCenter", "Pausing scan...", "Scanner is paused processing fonts");
    if (adder.isStopping())
        return QCoreApplication::translate("FMSControlCenter", "Finishing scan...",
                                           "Scanner is finishing processing fonts");
    const bool busy = adder.isAdding() || adder.isPaused() || adder.isSearching();
    if (!busy)
        return QString();
    QString status =
        QCoreApplication::translate("FMSControlCenter", "Processed fonts", "Example - Processed fonts: 10 of 20") +
        QCoreApplication::translate("FMSControlCenter", ": %1 of %2", "Example - Processed fonts: 10 of 20");
    status = status.arg(adder.numberOfAddedFonts()).arg(adder.numberOfFonts());
    QStringList suffix;
    if (adder.isPaused())
        suffix.append(
            QCoreApplication::translate("FMSControlCenter", "paused", "Appended to progress text when scan is paused"));
    if (adder.isSearching())
        suffix.append(QCoreApplication::translate(
            "FMSControlCenter", "scanning", "Appended to progress text when scanner is scanning system for new fonts"));
    if (!suffix.isEmpty())
        status += QStringLiteral(" (%1)").arg(suffix.join(QLatin1Char(' ')));
    return status;
}

QString lastScanText()
{
    const qint64 time = FMSLog::instance() ? FMSLog::instance()->lastScanTime() : 0;
    if (time <= 0)
        return QString();
    return QStringLiteral("Last scan: ") +
           QLocale::system().toString(QDateTime::fromSecsSinceEpoch(time), QLocale::ShortFormat);
}

void showAdderProgress(QProgressBar* bar, const FontAdder& adder)
{
    if (adder.isPausing() || adder.isStopping()) {
        bar->setRange(0, 0);
    } else if (adder.isAdding()) {
        bar->setRange(0, qMax(1, adder.numberOfFonts()));
        bar->setValue(adder.numberOfAddedFonts());
    } else {
        bar->setRange(0, 1);
        bar->setValue(0);
    }
}

QString warningsText(int count)
{
    if (count == 1)
        return QCoreApplication::translate("FMSControlCenter", "1 warning");
    return QCoreApplication::translate("FMSControlCenter", "%n warnings", "Not for one warning", count);
}

void showAdderWarnings(FMSPlainTextMessage* window, const FontAdder& adder)
{
    const QHash<QString, int> failed = adder.failedFontFiles();
    QStringList files = failed.keys();
    files.sort();
    window->clear();
    window->append(QCoreApplication::translate("FMSControlCenter", "Following files are not processed:"));
    for (const QString& file : qAsConst(files))
        window->append(QStringLiteral("  %1\n    %2: %3")
                           .arg(QDir::toNativeSeparators(file),
                                QCoreApplication::translate("FMSControlCenter", "Reason"),
                                FontAdder::failureText(failed.value(file))));
    window->scrollToTop();
    window->show();
    window->raise();
}

} // namespace ui
