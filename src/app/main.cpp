// maplorn-disc: builds the objects and starts the window.
#include "AppDelegate.h"
#include "Launch.h"
#include "RecordingService.h"
#include "ViewController.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const ApplicationSetup setup(application);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Burns data discs from folders and images into the files of a virtual "
                       "recorder; maplorn-recorder --help tells about that."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(application);

    AppDelegate::applicationDidFinishLaunching();
    QApplication::setQuitOnLastWindowClosed(
        AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
    RecordingService service;
    const auto virtualRecorder = attachVirtualRecorder(service);
    ViewController window;
    window.show();
    return QApplication::exec();
}
