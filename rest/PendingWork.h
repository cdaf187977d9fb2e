#pragma once

#include <functional>

class AbstractAsynchronousCommand;

// Waits of the main thread that keep its events running. Code behind them may be re-entered by other requests.
namespace api::rest {

// Starts a command and waits for its end. True when it finished; false when it failed, was cancelled, or the program is
// about to quit.
bool runCommand(AbstractAsynchronousCommand& command);

// Runs work on a pool thread and waits for it. What the work throws is thrown here.
void runInBackground(const std::function<void()>& work);

// Work whose cost grows with a number of fonts: at once for a few, in the background for so many that the window would
// stutter.
void runForFonts(int fontCount, const std::function<void()>& work);

} // namespace api::rest
