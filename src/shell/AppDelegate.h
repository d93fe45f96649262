// What the application does at its launch and its end, beside showing its window. Main thread.
#pragma once

namespace AppDelegate {

// Before the window is made: forgets that a job ran when the program was cut off by force.
void applicationDidFinishLaunching();

// Closing the main window quits.
[[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed();

}
