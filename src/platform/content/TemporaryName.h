// The names that image files have while they are made, where they need one. They tell whose they
// are, and a lock tells that somebody is at work. Any thread.
#pragma once

#include <QByteArray>

namespace TemporaryName {

// A path in that folder that nothing has yet, as far as chance goes.
[[nodiscard]] QByteArray make(const QByteArray &folder);

// Locks a new file of such a name for as long as it is open. False where somebody took it for a
// leftover before, and removed it.
[[nodiscard]] bool lock(int descriptor);

// Removes what programs on this machine that were killed have left in the folder.
void removeLeftovers(const QByteArray &folder);

}
