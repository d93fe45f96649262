// Fills a menu with what can be done with each recorder: show information, eject, and insert a
// blank medium where that needs no hand. Used by the menu bar and by the list's context menu.
// Main thread.
#pragma once

#include "DRDevice.h"

#include <functional>

class QMenu;

struct RecorderCommands
{
    std::function<void(const DRDevice &)> information;
    std::function<void(const DRDevice &)> eject;
    std::function<void()> mediumInserted; // called after it
};

// Empties the menu first. Commands that cannot be run now are disabled.
void fillRecordersMenu(QMenu *menu, const QList<DRDevice> &devices,
                       const RecorderCommands &commands);
