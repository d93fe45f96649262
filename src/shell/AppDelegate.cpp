#include "AppDelegate.h"

#include "Session.h"

void AppDelegate::applicationDidFinishLaunching()
{
    Session::setWorking(false);
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    return true;
}
