#include "Launch.h"

#include "Alerts.h"
#include "Localized.h"
#include "MainQueue.h"
#include "RecordingService.h"

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QThreadPool>
#include <QWidget>

#include <algorithm>

Q_LOGGING_CATEGORY(serviceLog, "maplorn.service")

void prepareForWebPages()
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    qputenv("QSG_RHI_BACKEND", "opengl");
}

ApplicationSetup::ApplicationSetup(QCoreApplication &application)
{
    QCoreApplication::setApplicationName(QStringLiteral("maplorn-disc"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MAPLORN_VERSION));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Maplorn Disc"));
    QGuiApplication::setDesktopFileName(QStringLiteral("maplorn-disc"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/maplorn-disc.svg")));
    Alerts::fixButtonOrder();
    // A copy that takes long must not keep a measurement waiting, on a machine with one processor.
    constexpr int backgroundThreads = 4;
    QThreadPool::globalInstance()->setMaxThreadCount(
        std::max(backgroundThreads, QThread::idealThreadCount()));

    // English first: it holds the texts whose keys are no English, for languages that lack them.
    for (const QLocale &locale : {QLocale(QLocale::English), QLocale::system()}) {
        auto translator = std::make_unique<QTranslator>();
        if (!translator->load(locale, QStringLiteral("maplorn-disc"), QStringLiteral("_"),
                              QStringLiteral(":/i18n")))
            continue;
        QCoreApplication::installTranslator(translator.get());
        m_translators.push_back(std::move(translator));
    }
    Q_UNUSED(application)
}

std::unique_ptr<VirtualRecorderWatch> attachVirtualRecorder(RecordingService &service)
{
    const auto recorder = VirtualRecorder::create(VirtualRecorder::defaultFolder());
    if (recorder)
        return std::make_unique<VirtualRecorderWatch>(service, recorder.value());
    qCWarning(recordingLog) << "no virtual recorder:" << recorder.error();
    return nullptr;
}

void tellLater(QWidget *window, const QString &reason)
{
    qCWarning(serviceLog) << "no service:" << reason;
    MainQueue::async(window, [reason] {
        MiscTool::showAlert(localized("OwnService", "Nobody can sign in now."), reason);
    });
}
