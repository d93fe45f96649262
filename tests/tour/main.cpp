// The unattended tour: drives the real window as a person would, by its controls. Signs in, shows
// every module, burns a folder with verification, signs out, prints what it does, and leaves
// screenshots.
//   maplorn-tour FOLDER SHOTS
#include "AppDelegate.h"
#include "DRKeys.h"
#include "FileTools.h"
#include "Launch.h"
#include "MediaTools.h"
#include "MediaTypes.h"
#include "RecordingService.h"
#include "Session.h"
#include "ViewController.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QTreeWidget>

#include <stdexcept>

namespace {

constexpr int soon = 10 * 1000;          // ms that the window may take for what is done at once
constexpr int measured = 10 * 60 * 1000; // ms that measuring the folder may take
constexpr int aPage = 3 * 1000;          // ms that a web page may take to be drawn
constexpr int burned = 24 * 60 * 60 * 1000;

void say(const QString &line)
{
    QTextStream(stdout) << line << Qt::endl;
}

// Ends the tour: what a person would report.
[[noreturn]] void fail(const QString &reason)
{
    throw std::runtime_error(reason.toStdString());
}

void require(bool condition, const QString &otherwise)
{
    if (!condition)
        fail(otherwise);
}

// The messages of the alerts so far.
QStringList alerts;

// The alert that stands in the way; null without one.
QMessageBox *alert()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    return box && box->windowModality() == Qt::ApplicationModal ? box : nullptr;
}

class Tour
{
public:
    Tour(ViewController &window, QString folder, const QString &shots)
        : m_window(window)
        , m_folder(std::move(folder))
        , m_shots(shots)
    {
    }

    void run()
    {
        QDir().mkpath(m_shots);
        m_window.show();
        require(QTest::qWaitForWindowExposed(&m_window), QStringLiteral("no window"));
        signIn();
        passModules();
        openModule(QStringLiteral("Data"));
        provideMedium();
        chooseFolder();
        shoot(QStringLiteral("data-chosen"));
        const QSize size = m_window.size();
        m_window.resize(m_window.minimumSize());
        shoot(QStringLiteral("data-narrow"));
        m_window.resize(size);
        burn();
        shoot(QStringLiteral("data-done"));
        signOut();
    }

private:
    template <typename Control>
    Control *find(const char *name)
    {
        const QList<Control *> found = m_window.findChildren<Control *>(QLatin1StringView(name));
        for (Control *control : found)
            if (control->isVisible())
                return control;
        fail(QStringLiteral("no %1 to be seen").arg(QLatin1StringView(name)));
    }

    bool isShown(const char *name)
    {
        const auto *control = m_window.findChild<QWidget *>(QLatin1StringView(name));
        return control && control->isVisible();
    }

    static void click(QWidget *control) { QTest::mouseClick(control, Qt::LeftButton); }

    void shoot(const QString &name)
    {
        QTest::qWait(50);
        const QString path = QStringLiteral("%1/%2.png").arg(m_shots, name);
        require(picture().save(path), QStringLiteral("%1 cannot be written").arg(path));
        say(QStringLiteral("  screenshot %1").arg(path));
    }

    // What a person sees at the window's place, sheets included, where the platform tells; else the
    // window alone.
    QPixmap picture()
    {
        if (QGuiApplication::platformName() != QLatin1StringView("xcb"))
            return m_window.grab();
        const QRect place = m_window.frameGeometry();
        return m_window.screen()->grabWindow(0, place.x(), place.y(), place.width(),
                                             place.height());
    }

    void openModule(const QString &name)
    {
        auto *list = find<QTreeWidget>("outlineView");
        const QList<QTreeWidgetItem *> items =
            list->findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
        require(items.size() == 1, QStringLiteral("no module %1").arg(name));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(items.first()).center());
        require(items.first()->isSelected(), QStringLiteral("%1 was not chosen").arg(name));
    }

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
        say(QStringLiteral("Reading the notice"));
        require(QTest::qWaitFor([this] { return isShown("closeButton"); }, soon),
                QStringLiteral("no notice"));
        QTest::qWait(aPage);
        shoot(QStringLiteral("notice"));
        click(find<QPushButton>("closeButton"));
        require(QTest::qWaitFor([this] { return isShown("loginButton"); }, soon),
                QStringLiteral("no sheet to sign in"));
        click(find<QPushButton>("serverButton"));
        shoot(QStringLiteral("server-settings"));
        click(find<QPushButton>("cancelButton"));
        for (int attempt = 1; attempt <= 2; ++attempt) {
            say(QStringLiteral("Signing in as root"));
            find<QLineEdit>("userField")->setText(QStringLiteral("root"));
            find<QLineEdit>("passwordField")->setText(QStringLiteral("kvex"));
            shoot(QStringLiteral("sign-in"));
            auto *button = find<QPushButton>("loginButton");
            click(button);
            require(QTest::qWaitFor(
                        [this, button] {
                            return !isShown("loginButton")
                                   || (button->isEnabled() && !QApplication::activePopupWidget()
                                       && !alert());
                        },
                        soon),
                    QStringLiteral("the sign-in does not end"));
            require(Session::getLoggedUserxJson().has_value() == (attempt == 2),
                    QStringLiteral("attempt %1 ends otherwise").arg(attempt));
        }
        require(alerts == QStringList{QStringLiteral("Your user does not exist.")},
                QStringLiteral("the alerts were: ") + alerts.join(u' '));
        require(QTest::qWaitFor([this] { return !isShown("loginButton"); }, soon),
                QStringLiteral("the sheet stays"));
    }

    void signOut()
    {
        say(QStringLiteral("Signing out"));
        openModule(QStringLiteral("Logout"));
        shoot(QStringLiteral("logout"));
        answer(QMessageBox::Ok);
        require(QTest::qWaitFor([this] { return !m_window.isVisible(); }, soon),
                QStringLiteral("the window stays"));
        require(!Session::getLoggedUserxJson(), QStringLiteral("root is still signed in"));
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

    void answer(QMessageBox::StandardButton button)
    {
        require(QTest::qWaitFor([this] { return question() != nullptr; }, soon),
                QStringLiteral("no question"));
        click(question()->button(button));
        require(QTest::qWaitFor([this] { return question() == nullptr; }, soon),
                QStringLiteral("the question stays"));
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

    void insert(const QString &type)
    {
        say(QStringLiteral("Inserting a blank %1").arg(type));
        auto *menu = m_window.findChild<QMenu *>(QStringLiteral("recordersMenu"));
        menu->popup(m_window.mapToGlobal(QPoint(0, 0)));
        for (QAction *action : menu->findChildren<QAction *>())
            if (action->text() == type)
                action->trigger();
        menu->close();
        require(DRDevice::devices().value(0).mediaIsBlank(), QStringLiteral("no blank medium"));
    }

    void chooseFolder()
    {
        say(QStringLiteral("Choosing %1").arg(m_folder));
        click(find<QPushButton>("sourceButton"));
        require(QTest::qWaitFor([this] { return chooser() != nullptr; }, soon),
                QStringLiteral("no file chooser"));
        shoot(QStringLiteral("data-chooser"));
        // At once: left alone, the chooser completes what is typed to something else.
        chooser()->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(m_folder);
        click(chooser()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open));
        auto *field = find<QLineEdit>("sourceField");
        require(QTest::qWaitFor([&] { return field->text() == m_folder; }, soon),
                QStringLiteral("%1 was not taken").arg(m_folder));
        auto *button = find<QPushButton>("burnButton");
        require(QTest::qWaitFor([&] { return button->isEnabled(); }, measured),
                QStringLiteral("the folder was not measured"));
        say(QStringLiteral("  %1 on a disc of %2")
                .arg(find<QLabel>("fileSizeLabel")->text(), find<QLabel>("discSizeLabel")->text()));
    }

    QFileDialog *chooser() { return m_window.findChild<QFileDialog *>(); }

    void burn()
    {
        auto *verify = find<QAbstractButton>("verifyCheckBox");
        if (!verify->isChecked())
            verify->click();
        say(QStringLiteral("Burning with verification"));
        click(find<QPushButton>("burnButton"));
        require(QTest::qWaitFor([this] { return question() != nullptr; }, soon),
                QStringLiteral("no question before the burn"));
        shoot(QStringLiteral("data-question"));
        click(question()->button(QMessageBox::Ok));
        watch();
        const QString failure = find<QGroupBox>("progressBox")->toolTip();
        require(m_last == DRStatusStateDone, QStringLiteral("the burn failed: %1").arg(failure));
        const DRDevice device = DRDevice::devices().value(0);
        require(!device.mediaIsBlank(), QStringLiteral("the medium is still blank"));
        say(QStringLiteral("The disc's files lie in %1/medium").arg(device.ioRegistryEntryPath()));
    }

    QMessageBox *question() { return m_window.findChild<QMessageBox *>(); }

    void watch()
    {
        auto *box = find<QGroupBox>("progressBox");
        auto *bar = find<QProgressBar>("progressIndicator");
        DRNotificationCenter::currentRunLoop().addObserver(
            &m_window,
            [this](const DRNotification &notification) {
                m_last = notification.userInfo.value(DRStatusStateKey).toString();
            },
            DRBurnStatusChangedNotification);
        QString title;
        bool shot = false;
        const auto ended = [&] {
            if (box->title() != title)
                say(QStringLiteral("  %1").arg(title = box->title()));
            if (!shot && bar->value() > 0) {
                shot = true;
                shoot(QStringLiteral("data-burning"));
            }
            return m_last == DRStatusStateDone || m_last == DRStatusStateFailed;
        };
        require(QTest::qWaitFor(ended, burned), QStringLiteral("the burn does not end"));
    }

    ViewController &m_window;
    QString m_folder;
    QString m_shots;
    QString m_last; // state of the burn
};

// An alert stands in the way of the tour as it would in a person's.
void closeAlerts()
{
    if (QMessageBox *box = alert()) {
        say(QStringLiteral("Alert: %1 %2").arg(box->text(), box->informativeText()));
        alerts.append(box->text());
        box->accept();
    }
}

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
    QTimer watchdog;
    QObject::connect(&watchdog, &QTimer::timeout, &closeAlerts);
    watchdog.start(500);
    RecordingService service;
    const auto virtualRecorder = attachVirtualRecorder(service);
    const auto ownService = OwnService::startIfNeeded();
    ViewController window;
    try {
        require(bool(ownService), QStringLiteral("no service"));
        Tour(window, folder, shots).run();
    } catch (const std::exception &failure) {
        say(QStringLiteral("The tour failed: %1").arg(QString::fromUtf8(failure.what())));
        return 1;
    }
    window.close();
    say(QStringLiteral("The tour is done."));
    return 0;
}
