// maplorn-disc: builds the objects and starts the window.
#include "AppDelegate.h"
#include "Launch.h"
#include "PropertyList.h"
#include "RecorderMonitor.h"
#include "RecordingService.h"
#include "ServiceAddress.h"
#include "TerminationSignals.h"
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
        QStringLiteral("Burns data discs and audio CDs, on real drives and into the files of a "
                       "virtual recorder, erases them, and makes disc images of folders; "
                       "maplorn-recorder looks after that one."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption configOption(
        QStringLiteral("config"),
        QStringLiteral("Reads the configuration from this property list."), QStringLiteral("file"));
    parser.addOption(configOption);
    parser.process(application);
    if (parser.isSet(configOption)) {
        const QString file = parser.value(configOption);
        const Result<QVariant> content = PropertyList::read(file);
        if (!content || content.value().typeId() != QMetaType::QVariantMap) {
            qCritical().noquote() << (content ? file + QStringLiteral(": no dictionary")
                                              : content.error());
            return 2;
        }
        ServiceConfig::setFile(QFileInfo(file).absoluteFilePath());
    }

    AppDelegate::applicationDidFinishLaunching();
    QApplication::setQuitOnLastWindowClosed(
        AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
    RecordingService service;
    const auto virtualRecorder = attachVirtualRecorder(service);
    const auto ownService = OwnService::startIfNeeded();
    const RecorderMonitor realRecorders(service);
    ViewController window;
    if (!ownService)
        tellLater(&window, ownService.error());
    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::received, &window,
                     &ViewController::endJobsAndClose);
    window.show();
    return QApplication::exec();
}
