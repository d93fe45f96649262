#include "TourSteps.h"

#include "DRKeys.h"
#include "DRNotificationCenter.h"
#include "Session.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QScreen>
#include <QTextStream>
#include <QTreeWidget>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

QStringList seenAlerts;
std::function<void()> alertAction;
constexpr int aPage = 3 * 1000; // ms that a web page may take to be drawn

}

void say(const QString &line)
{
    QTextStream(stdout) << line << Qt::endl;
}

void fail(const QString &reason)
{
    throw std::runtime_error(reason.toStdString());
}

void require(bool condition, const QString &otherwise)
{
    if (!condition)
        fail(otherwise);
}

QMessageBox *alert()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    return box && box->windowModality() == Qt::ApplicationModal ? box : nullptr;
}

// An alert stands in the way of the tour as it would in a person's.
void closeAlert()
{
    QMessageBox *box = alert();
    if (!box)
        return;
    if (const auto action = std::exchange(alertAction, nullptr))
        action();
    say(QStringLiteral("Alert: %1 %2").arg(box->text(), box->informativeText()));
    seenAlerts.append(box->text());
    box->accept();
}

void atNextAlert(const std::function<void()> &action)
{
    alertAction = action;
}

const QStringList &alertsSoFar()
{
    return seenAlerts;
}

TourSteps::TourSteps(ViewController &window, const QString &shots)
    : m_window(window)
    , m_shots(shots)
{
}

bool TourSteps::isShown(const char *name) const
{
    const auto controls = m_window.findChildren<QWidget *>(QLatin1StringView(name));
    return std::ranges::any_of(controls, &QWidget::isVisible);
}

void TourSteps::waitFor(const std::function<bool()> &condition, const QString &otherwise, int time)
{
    require(QTest::qWaitFor(condition, time), otherwise);
}

void TourSteps::waitForAlert(const QString &message, const std::function<void()> &action)
{
    const qsizetype before = alertsSoFar().size();
    action();
    waitFor([&] { return alertsSoFar().size() > before && !alert(); },
            QStringLiteral("nothing says “%1”").arg(message), burned);
    require(alertsSoFar().last() == message,
            QStringLiteral("the alert says “%1”").arg(alertsSoFar().last()));
}

void TourSteps::clickForAlert(const char *button, const QString &message) const
{
    waitForAlert(message, [this, button] { click(find<QWidget>(button)); });
}

void TourSteps::shoot(const QString &name) const
{
    QTest::qWait(50);
    const QString path = QStringLiteral("%1/%2.png").arg(m_shots, name);
    require(picture().save(path), QStringLiteral("%1 cannot be written").arg(path));
    say(QStringLiteral("  screenshot %1").arg(path));
}

void TourSteps::shootNarrow(const QString &name) const
{
    const QSize size = m_window.size();
    m_window.resize(m_window.minimumSize());
    shoot(name);
    m_window.resize(size);
}

void TourSteps::shootSheet(const QString &name) const
{
    shoot(name);
    QWidget *sheet = QApplication::activeModalWidget();
    const QSize size = sheet->size();
    sheet->resize(sheet->minimumSizeHint());
    QTest::qWait(50);
    const QString path = QStringLiteral("%1/%2-narrow.png").arg(m_shots, name);
    require(sheet->grab().save(path), QStringLiteral("%1 cannot be written").arg(path));
    sheet->resize(size);
}

void TourSteps::closeNotice() const
{
    say(QStringLiteral("Reading the notice"));
    waitFor([this] { return isShown("closeButton"); }, QStringLiteral("no notice"));
    QTest::qWait(aPage);
    shoot(QStringLiteral("notice"));
    click(find<QPushButton>("closeButton"));
    waitFor([this] { return isShown("loginButton"); }, QStringLiteral("no sheet to sign in"));
}

void TourSteps::pressSignIn(const QString &user, const QString &password) const
{
    say(QStringLiteral("Signing in as %1").arg(user));
    find<QLineEdit>("userField")->setText(user);
    find<QLineEdit>("passwordField")->setText(password);
    shoot(QStringLiteral("sign-in"));
    click(find<QPushButton>("loginButton"));
}

void TourSteps::signOut() const
{
    say(QStringLiteral("Signing out"));
    openModule(QStringLiteral("Logout"));
    shoot(QStringLiteral("logout"));
    answer(QMessageBox::Ok);
    waitFor([this] { return !m_window.isVisible(); }, QStringLiteral("the window stays"));
    require(!Session::getLoggedUserxJson(), QStringLiteral("somebody is still signed in"));
}

void TourSteps::pick(const char *popUp, const QString &title) const
{
    auto *box = find<QComboBox>(popUp);
    const int item = box->findText(title, Qt::MatchExactly);
    require(item >= 0, QStringLiteral("%1 offers no %2").arg(QLatin1StringView(popUp), title));
    box->setCurrentIndex(item);
    Q_EMIT box->activated(item);
}

// What a person sees at the place of the window and its sheet, where the platform tells; else the
// window alone.
QPixmap TourSteps::picture() const
{
    if (QGuiApplication::platformName() != QLatin1StringView("xcb"))
        return m_window.grab();
    QRect place = m_window.frameGeometry();
    if (const QWidget *sheet = QApplication::activeModalWidget())
        place |= sheet->frameGeometry();
    QScreen *screen = m_window.screen();
    place &= screen->geometry();
    return screen->grabWindow(0, place.x(), place.y(), place.width(), place.height());
}

void TourSteps::openModule(const QString &name) const
{
    auto *list = find<QTreeWidget>("outlineView");
    const QList<QTreeWidgetItem *> items =
        list->findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
    require(items.size() == 1, QStringLiteral("no module %1").arg(name));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(items.first()).center());
    require(items.first()->isSelected(), QStringLiteral("%1 was not chosen").arg(name));
}

QMessageBox *TourSteps::question() const
{
    return m_window.findChild<QMessageBox *>();
}

void TourSteps::answer(QMessageBox::StandardButton button) const
{
    waitFor([this] { return question() != nullptr; }, QStringLiteral("no question"));
    click(question()->button(button));
    waitFor([this] { return question() == nullptr; }, QStringLiteral("the question stays"));
}

// At once: left alone, the chooser completes what is typed to something else.
void TourSteps::choose(const QString &typed, const QString &shot) const
{
    const auto chooser = [this] { return m_window.findChild<QFileDialog *>(); };
    waitFor([&] { return chooser() != nullptr; }, QStringLiteral("no file chooser"));
    shoot(shot);
    const bool isSaved = chooser()->acceptMode() == QFileDialog::AcceptSave;
    chooser()->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(typed);
    click(chooser()->findChild<QDialogButtonBox *>()->button(isSaved ? QDialogButtonBox::Save
                                                                     : QDialogButtonBox::Open));
    waitFor([&] { return chooser() == nullptr; }, QStringLiteral("%1 was not taken").arg(typed));
}

void TourSteps::insert(const QString &type) const
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

void TourSteps::burn(const QString &shot)
{
    auto *verify = find<QAbstractButton>("verifyCheckBox");
    if (!verify->isChecked())
        verify->click();
    say(QStringLiteral("Burning with verification"));
    click(find<QPushButton>("burnButton"));
    waitFor([this] { return question() != nullptr; },
            QStringLiteral("no question before the burn"));
    shoot(shot + QStringLiteral("-question"));
    click(question()->button(QMessageBox::Ok));
    watch(shot);
    const QString failure = find<QGroupBox>("progressBox")->toolTip();
    require(m_last == DRStatusStateDone, QStringLiteral("the burn failed: %1").arg(failure));
    const DRDevice device = DRDevice::devices().value(0);
    require(!device.mediaIsBlank(), QStringLiteral("the medium is still blank"));
    say(QStringLiteral("The disc's files lie in %1/medium").arg(device.ioRegistryEntryPath()));
    shoot(shot + QStringLiteral("-done"));
}

void TourSteps::watch(const QString &shot)
{
    auto *box = find<QGroupBox>("progressBox");
    auto *bar = find<QProgressBar>("progressIndicator");
    DRNotificationCenter &center = DRNotificationCenter::currentRunLoop();
    QObject observer;
    m_last.clear();
    center.addObserver(
        &observer,
        [this](const DRNotification &notification) {
            m_last = notification.userInfo.value(DRStatusStateKey).toString();
        },
        DRBurnStatusChangedNotification);
    QString title;
    bool isTaken = false;
    const auto ended = [&] {
        if (box->title() != title)
            say(QStringLiteral("  %1").arg(title = box->title()));
        if (!isTaken && bar->value() > 0) {
            isTaken = true;
            shoot(shot + QStringLiteral("-burning"));
        }
        return m_last == DRStatusStateDone || m_last == DRStatusStateFailed;
    };
    waitFor(ended, QStringLiteral("the burn does not end"), burned);
}
