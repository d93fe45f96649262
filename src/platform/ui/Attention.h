// Ways to call for the user's attention. Main thread.
#pragma once

namespace MiscTool {

// The desktop's alert sound.
void playSystemSound();

// Covers the screens in white for 100 ms.
void flashScreen();

}
