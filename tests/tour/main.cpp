// The unattended tour: drives the real window as a person would, by its controls. Signs in, shows
// every module, burns a folder with verification and an audio CD with titles in two languages,
// erases that, makes disc images of the folder, signs out; then a company registers, changes its
// password and its profile; root looks through the directory and switches another one off; the
// company asks, root answers and publishes, the company sees it and recovers its password. Prints
// what it does, and leaves screenshots.
//   maplorn-tour FOLDER SHOTS
#include "AccountTour.h"
#include "AppDelegate.h"
#include "AudioTour.h"
#include "CompanyTour.h"
#include "DRKeys.h"
#include "DiscTour.h"
#include "FileTools.h"
#include "Launch.h"
#include "MediaTools.h"
#include "MediaTypes.h"
#include "MessagesTour.h"
#include "RecordingService.h"
#include "Session.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QTreeWidget>

#include <algorithm>

namespace {

constexpr int aPage = 3 * 1000; // ms that a web page may take to be drawn

class Tour : public TourSteps
{
public:
    Tour(ViewController &window, QString folder, const QString &shots)
        : TourSteps(window, shots)
        , m_folder(std::move(folder))
    {
    }

    void run()
    {
        QDir().mkpath(m_shots);
        m_window.show();
        require(QTest::qWaitForWindowExposed(&m_window), QStringLiteral("no window"));
        signIn();
        passModules();
        showPortal();
        openModule(QStringLiteral("Data"));
        provideMedium();
        chooseFolder();
        shoot(QStringLiteral("data-chosen"));
        shootNarrow(QStringLiteral("data-narrow"));
        burn(QStringLiteral("data"));
        AudioTour(m_window, m_shots).run();
        DiscTour(m_window, m_shots, m_folder).run();
        signOut();
    }

private:
    void passModules()
    {
        auto *list = find<QTreeWidget>("outlineView");
        const QTreeWidgetItem *group = list->topLevelItem(0);
        for (int i = 0; i < group->childCount(); ++i) {
            const QString name = group->child(i)->text(0);
            say(QStringLiteral("Opening %1").arg(name));
            openModule(name);
            if (name == QLatin1StringView("Home"))
                waitForHome();
            shoot(QStringLiteral("page-%1").arg(name.toLower()));
        }
        answer(QMessageBox::Cancel); // to the last, which asks whether to sign out
    }

    // A service that nobody has used has no users: the first attempt as root makes them, and fails.
    void signIn()
    {
        closeNotice();
        click(find<QPushButton>("serverButton"));
        shoot(QStringLiteral("server-settings"));
        click(find<QPushButton>("cancelButton"));
        for (int attempt = 1; attempt <= 2; ++attempt) {
            auto *button = find<QPushButton>("loginButton");
            pressSignIn(QStringLiteral("root"), QStringLiteral("kvex"));
            waitFor(
                [this, button] {
                    return !isShown("loginButton")
                           || (button->isEnabled() && !QApplication::activePopupWidget()
                               && !alert());
                },
                QStringLiteral("the sign-in does not end"));
            require(Session::getLoggedUserxJson().has_value() == (attempt == 2),
                    QStringLiteral("attempt %1 ends otherwise").arg(attempt));
        }
        require(alertsSoFar() == QStringList{QStringLiteral("Your user does not exist.")},
                QStringLiteral("the alerts were: ") + alertsSoFar().join(u' '));
        waitFor([this] { return !isShown("loginButton"); }, QStringLiteral("the sheet stays"));
    }

    void showPortal()
    {
        say(QStringLiteral("Opening the portal"));
        m_window.findChild<QAction *>(QStringLiteral("portalAction"))->trigger();
        QTest::qWait(aPage); // it grows
        shoot(QStringLiteral("portal"));
        shootNarrow(QStringLiteral("portal-narrow"));
    }

    // The page is drawn by a process of its own, which takes its time to start.
    void waitForHome()
    {
        const auto isLoaded = [this] {
            const auto views = m_window.findChildren<QWidget *>(QStringLiteral("webView"));
            return std::ranges::any_of(views, [](const QWidget *view) {
                return view->isVisible()
                       && view->property("title") == QLatin1StringView("Maplorn Disc");
            });
        };
        require(QTest::qWaitFor(isLoaded, soon), QStringLiteral("the home page does not come"));
        QTest::qWait(aPage);
    }

    // Inserts the smallest rewritable medium that takes the folder, by the Recorders menu.
    void provideMedium()
    {
        const DRDevice device = DRDevice::devices().value(0);
        require(device.isValid(), QStringLiteral("no recorder"));
        const qint64 needed = MiscTool::getFolderSize(m_folder);
        for (const QLatin1StringView type :
             {DRDeviceMediaTypeCDRW, DRDeviceMediaTypeDVDPlusRW, DRDeviceMediaTypeBDRE}) {
            const MediaType *medium = MediaTypes::find(type);
            // A tenth is left for the file system's own blocks.
            if (medium->capacity * 2048 / 10 * 9 >= needed) {
                if (MiscTool::getDiscSize(device) < medium->capacity * 2048)
                    insert(medium->name);
                return;
            }
        }
        fail(QStringLiteral("no medium is large enough for %1 bytes").arg(needed));
    }

    void chooseFolder()
    {
        say(QStringLiteral("Choosing %1").arg(m_folder));
        click(find<QPushButton>("sourceButton"));
        choose(m_folder, QStringLiteral("data-chooser"));
        require(find<QLineEdit>("sourceField")->text() == m_folder,
                QStringLiteral("%1 was not taken").arg(m_folder));
        auto *button = find<QPushButton>("burnButton");
        require(QTest::qWaitFor([&] { return button->isEnabled(); }, measured),
                QStringLiteral("the folder was not measured"));
        say(QStringLiteral("  %1 on a disc of %2")
                .arg(find<QLabel>("fileSizeLabel")->text(), find<QLabel>("discSizeLabel")->text()));
    }

    QString m_folder;
};

// A home without anything in it, so that nobody's session, settings and discs are touched. The one
// of an earlier tour is removed; anything else of that name is left alone.
bool moveIntoNewHome(const QString &shots)
{
    QDir home(shots + QStringLiteral("/tour-home"));
    const QString mark = home.filePath(QStringLiteral("made by maplorn-tour"));
    if (home.exists() && (!QFile::exists(mark) || !home.removeRecursively()))
        return false;
    QFile made(mark);
    if (!home.mkpath(QStringLiteral(".")) || !made.open(QIODevice::WriteOnly))
        return false;
    const QByteArray path = QFile::encodeName(home.absolutePath());
    for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, path);
    return true;
}

}

int main(int argc, char **argv)
{
    if (argc != 3 || !QFileInfo(QFile::decodeName(argv[1])).isDir()) {
        say(QStringLiteral("usage: maplorn-tour FOLDER SHOTS"));
        return 2;
    }
    const QString folder = QFileInfo(QFile::decodeName(argv[1])).absoluteFilePath();
    const QString shots = QFileInfo(QFile::decodeName(argv[2])).absoluteFilePath();
    if (!moveIntoNewHome(shots)) {
        say(QStringLiteral("%1/tour-home cannot be made.").arg(shots));
        return 1;
    }
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    prepareForWebPages();
    QApplication application(argc, argv);
    const ApplicationSetup setup(application);
    AppDelegate::applicationDidFinishLaunching();
    QApplication::setQuitOnLastWindowClosed(false); // each session has a window of its own
    QTimer watchdog;
    QObject::connect(&watchdog, &QTimer::timeout, &closeAlert);
    watchdog.start(500);
    RecordingService service;
    const auto virtualRecorder = attachVirtualRecorder(service);
    const auto ownService = OwnService::startIfNeeded();
    ViewController window;
    try {
        require(bool(ownService), QStringLiteral("no service"));
        Tour(window, folder, shots).run();
        AccountTour::registerCompany(shots);
        CompanyTour::runSessions(shots, AccountTour::user, AccountTour::password);
        MessagesTour::runSessions(shots, AccountTour::user, AccountTour::password);
        AccountTour::recoverPassword(shots);
    } catch (const std::exception &failure) {
        say(QStringLiteral("The tour failed: %1").arg(QString::fromUtf8(failure.what())));
        return 1;
    }
    window.close();
    say(QStringLiteral("The tour is done."));
    return 0;
}
