// What the program and its tour do alike before they show the window. Main thread.
#pragma once

#include "OwnService.h"
#include "VirtualRecorderWatch.h"

#include <QTranslator>

#include <memory>
#include <vector>

class QCoreApplication;
class QWidget;
class RecordingService;

// What must be set before the application object is made, so that a web view can be loaded later.
void prepareForWebPages();

// Names, style, icon and texts of the application; lives as long as it.
class ApplicationSetup
{
public:
    explicit ApplicationSetup(QCoreApplication &application);

private:
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

// Attaches the virtual recorder of this user; null, with the reason in the log, where its folder
// cannot be made.
[[nodiscard]] std::unique_ptr<VirtualRecorderWatch>
attachVirtualRecorder(RecordingService &service);

// Shows an alert, and logs it, as soon as the window works: the service of this machine did not
// start, for that reason.
void tellLater(QWidget *window, const QString &reason);
