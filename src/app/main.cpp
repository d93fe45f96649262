// maplorn-disc: builds the objects and starts the window.
#include "AppDelegate.h"
#include "Launch.h"
#include "PropertyList.h"
#include "RecordingService.h"
#include "ServiceAddress.h"
#include "ViewController.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

int main(int argc, char **argv)
{
    prepareForWebPages();
    QApplication application(argc, argv);
    const ApplicationSetup setup(application);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Burns data discs from folders and images into the files of a virtual "
                       "recorder; maplorn-recorder --help tells about that."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption configOption(
        QStringLiteral("config"), QStringLiteral("Reads the configuration from this property list."),
        QStringLiteral("file"));
    parser.addOption(configOption);
    parser.process(application);
    if (parser.isSet(configOption)) {
        const QString file = parser.value(configOption);
        if (const Result<QVariant> content = PropertyList::read(file); !content) {
            qCritical().noquote() << content.error();
            return 2;
        }
        ServiceConfig::setFile(QFileInfo(file).absoluteFilePath());
    }

    AppDelegate::applicationDidFinishLaunching();
    QApplication::setQuitOnLastWindowClosed(
        AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
    RecordingService service;
    const auto virtualRecorder = attachVirtualRecorder(service);
    const auto ownService = startOwnService();
    ViewController window;
    window.show();
    return QApplication::exec();
}
