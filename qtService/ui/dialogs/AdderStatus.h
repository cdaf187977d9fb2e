#pragma once

#include <QString>

class FontAdder;
class FMSPlainTextMessage;
class QProgressBar;

// What every window that follows the font scanner shows of it.
namespace ui {

// How far the scanner is; empty while it is idle.
QString adderStatusText(const FontAdder& adder);
// "Last scan: ..." from the event log; empty when there was none.
QString lastScanText();
// Busy while pausing or finishing, the share that is done while adding, empty otherwise.
void showAdderProgress(QProgressBar* bar, const FontAdder& adder);
// "1 warning", "2 warnings"
QString warningsText(int count);
// Lists the files that were not processed, with the reasons, and shows the window.
void showAdderWarnings(FMSPlainTextMessage* window, const FontAdder& adder);

} // namespace ui
