#include "ViewController.h"

#include "AboutBox.h"
#include "Alerts.h"
#include "DRKeys.h"
#include "DRNotificationCenter.h"
#include "DeviceViewController.h"
#include "Localized.h"
#include "LoginViewController.h"
#include "LogoutViewController.h"
#include "MainQueue.h"
#include "ModuleListLook.h"
#include "NoticeOfPreloginViewController.h"
#include "NotificationPopUps.h"
#include "PortalViewController.h"
#include "Preferences.h"
#include "RunningJobs.h"
#include "Session.h"
#include "ui_ViewController.h"

#include <QCloseEvent>
#include <QMenu>

#include <utility>

namespace {

constexpr int listWidth = 222;
constexpr QSize defaultSize(900, 620);
const QString geometryKey = QStringLiteral("WindowGeometry");

}

ViewController::ViewController()
    : m_ui(std::make_unique<Ui::ViewController>())
{
    m_ui->setupUi(this);
    m_ui->splitView->setStretchFactor(0, 0);
    m_ui->splitView->setStretchFactor(1, 1);
    ModuleListLook::paleHighlight(m_ui->outlineView);
    restorePlace();
    makeMenus();
    m_ui->outlineView->viewport()->installEventFilter(this);
    connect(m_ui->outlineView, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *item) {
        if (!m_shownByPress)
            outlineViewClicked(item);
    });
    connect(m_ui->outlineView, &QTreeWidget::itemSelectionChanged, this,
            &ViewController::selectionChanged);
    connect(&RunningJobs::instance(), &RunningJobs::emptied, this, [this] {
        MainQueue::deliver(this, [this] {
            if (m_closing)
                close();
        });
    });
}

ViewController::~ViewController()
{
    for (const QList<ModuleItem> &modules : std::as_const(m_modulesDict))
        for (const ModuleItem &module : modules)
            delete module.controller;
}

void ViewController::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    // Queued, so that the window is painted before it asks the service for anything.
    if (!event->spontaneous())
        MainQueue::async(this, [this] { viewDidAppear(); });
}

void ViewController::viewDidAppear()
{
    const std::optional<UserxJson> user = Session::getLoggedUserxJson();
    if (!user) {
        presentSignIn();
        return;
    }
    if (user->Userx.isEmpty())
        Session::clear();
    reloadData();
}

// The notice first; the sheet to sign in waits until it has been closed.
void ViewController::presentSignIn()
{
    if (m_loginViewController)
        return;
    m_loginViewController = LoginViewController::getViewController(this);
    m_loginViewController->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_loginViewController, &LoginViewController::loggedIn, this,
            &ViewController::reloadData);
    connect(m_loginViewController, &LoginViewController::exited, this, &QWidget::close);
    auto *notice = NoticeOfPreloginViewController::getViewController(this);
    notice->setAttribute(Qt::WA_DeleteOnClose);
    connect(notice, &QDialog::finished, m_loginViewController, &QDialog::open);
    notice->open();
}

void ViewController::reloadData()
{
    initModules();
    postInits();
    if (!m_initialSelected)
        initialSelect();
    else if (!m_currentViewController)
        outlineViewClicked(itemAt(m_lastIndex)); // its page was made anew
    NotificationPopUps::showNotification();
}

void ViewController::initModules()
{
    QList<ModuleItem> modules = Modules::make();
    const QList<ModuleItem> old =
        m_modulesDict.value(localized("ViewController", Modules::groupKey));
    for (qsizetype i = 0; i < old.size(); ++i) {
        const bool keep = old.at(i).controller->hasRunningJob();
        delete (keep ? modules.at(i).controller : old.at(i).controller);
        if (keep)
            modules[i].controller = old.at(i).controller;
    }
    for (const ModuleItem &module : std::as_const(modules))
        if (auto *logout = qobject_cast<LogoutViewController *>(module.controller))
            logout->setMainWindow(this);
    m_modulesDict = {{localized("ViewController", Modules::groupKey), modules}};
}

void ViewController::postInits()
{
    m_ui->splitView->setSizes({listWidth, std::max(1, width() - listWidth)});
    reloadList();
    m_devices = DRDevice::devices();
    DRNotificationCenter &center = DRNotificationCenter::currentRunLoop();
    center.addObserver(
        this, [this](const DRNotification &notification) { deviceAppeared(notification); },
        DRDeviceAppearedNotification);
    center.addObserver(
        this, [this](const DRNotification &notification) { deviceDisappeared(notification); },
        DRDeviceDisappearedNotification);
}

// Rows keep their places, so the selected one is selected again.
void ViewController::reloadList()
{
    QTreeWidget *list = m_ui->outlineView;
    const QSignalBlocker quiet(list);
    const bool selected = !list->selectedItems().isEmpty();
    list->clear();
    for (auto group = m_modulesDict.cbegin(); group != m_modulesDict.cend(); ++group) {
        auto *title = new QTreeWidgetItem(list, {group.key()});
        title->setFlags(Qt::ItemIsEnabled);
        QFont font = title->font(0);
        font.setBold(true);
        title->setFont(0, font);
        title->setForeground(0, palette().brush(QPalette::PlaceholderText));
        for (const ModuleItem &module : group.value()) {
            auto *item = new QTreeWidgetItem(title, {module.name});
            item->setIcon(0, ModuleListLook::icon(module.imageName));
        }
    }
    list->expandAll();
    if (QTreeWidgetItem *item = itemAt(m_lastIndex))
        list->setCurrentItem(item, 0,
                             selected ? QItemSelectionModel::ClearAndSelect
                                      : QItemSelectionModel::NoUpdate);
}

void ViewController::initialSelect()
{
    m_lastIndex = 1;
    const QSignalBlocker quiet(m_ui->outlineView);
    m_ui->outlineView->setCurrentItem(itemAt(m_lastIndex));
    showViewController(m_modulesDict.first().first().controller);
    m_initialSelected = true;
}

const ModuleItem *ViewController::moduleOf(QTreeWidgetItem *item) const
{
    if (!item || !item->parent())
        return nullptr;
    const auto group = m_modulesDict.constFind(item->parent()->text(0));
    return group == m_modulesDict.cend() ? nullptr : &group->at(item->parent()->indexOfChild(item));
}

void ViewController::showViewController(Page *controller)
{
    if (m_currentViewController) {
        m_currentViewController->hide();
        m_ui->mainViewLayout->removeWidget(m_currentViewController);
    }
    m_currentViewController = controller;
    m_ui->mainViewLayout->addWidget(controller);
    controller->show();
}

// A click on the group's title takes the page away and shows none.
void ViewController::outlineViewClicked(QTreeWidgetItem *item)
{
    if (m_currentViewController) {
        m_currentViewController->hide();
        m_ui->mainViewLayout->removeWidget(m_currentViewController);
        m_currentViewController.clear();
    }
    m_extraPage.reset();
    m_lastIndex = rowOf(item);
    if (const ModuleItem *module = moduleOf(item))
        showViewController(module->controller);
}

// However a row came to be chosen: by a press, by sliding, by the keyboard.
void ViewController::selectionChanged()
{
    const QList<QTreeWidgetItem *> selected = m_ui->outlineView->selectedItems();
    const ModuleItem *module = selected.isEmpty() ? nullptr : moduleOf(selected.first());
    if (!module || module->controller == m_currentViewController)
        return;
    m_shownByPress = true;
    outlineViewClicked(selected.first());
}

// A click on the row that is chosen already shows its page anew; one that has just chosen it does
// not show it twice. The button for the context menu chooses nothing.
bool ViewController::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        m_shownByPress = false;
        return static_cast<QMouseEvent *>(event)->button() == Qt::RightButton;
    }
    if (event->type() == QEvent::MouseButtonDblClick)
        m_shownByPress = true;
    return QMainWindow::eventFilter(object, event);
}

// Rows as they stand in the list: 0 is the group's title, 1 its first module.
int ViewController::rowOf(QTreeWidgetItem *item)
{
    if (!item)
        return -1;
    return item->parent() ? item->parent()->indexOfChild(item) + 1 : 0;
}

QTreeWidgetItem *ViewController::itemAt(int row) const
{
    QTreeWidgetItem *group = m_ui->outlineView->topLevelItem(0);
    if (!group || row == 0)
        return group;
    return group->child(row - 1);
}

void ViewController::makeMenus()
{
    const auto fill = [this](QMenu *menu) {
        fillRecordersMenu(menu, m_devices, recorderCommands());
    };
    connect(m_ui->recordersMenu, &QMenu::aboutToShow, this,
            [this, fill] { fill(m_ui->recordersMenu); });
    connect(m_ui->outlineView, &QWidget::customContextMenuRequested, this,
            [this, fill](const QPoint &position) {
                auto *menu = new QMenu(this);
                menu->setObjectName(QStringLiteral("menu"));
                menu->setAttribute(Qt::WA_DeleteOnClose);
                fill(menu);
                menu->popup(m_ui->outlineView->viewport()->mapToGlobal(position));
            });
    connect(m_ui->quitAction, &QAction::triggered, this, &QWidget::close);
    connect(m_ui->portalAction, &QAction::triggered, this, [this] {
        showExtraPage(std::unique_ptr<Page>(PortalViewController::getViewController()));
    });
    connect(m_ui->aboutAction, &QAction::triggered, this, [this] { showAboutBox(this); });
}

RecorderCommands ViewController::recorderCommands()
{
    return {[this](const DRDevice &device) { showInformation(device); },
            [this](const DRDevice &device) { ejectAction(device); },
            [this] { showMediumChanged(); }};
}

// A page that stands in no module list, in place of the one shown.
void ViewController::showExtraPage(std::unique_ptr<Page> page)
{
    m_ui->outlineView->clearSelection();
    showViewController(page.get());
    m_extraPage = std::move(page);
}

void ViewController::showInformation(const DRDevice &device)
{
    std::unique_ptr<DeviceViewController> page(DeviceViewController::getViewController());
    page->setDevice(device);
    showExtraPage(std::move(page));
}

void ViewController::ejectAction(const DRDevice &device)
{
    if (!device.ejectMedia()) {
        MiscTool::showAlert(localized("ViewController", "The medium cannot be ejected."),
                            localized("ViewController", "Please wait until the recorder is free."));
        return;
    }
    showMediumChanged();
    // A tray of metal takes its time.
    DRNotificationCenter::currentRunLoop().addObserver(
        this, [this](const DRNotification &notification) { ejected(notification); },
        DRDeviceStatusChangedNotification, QVariant::fromValue(device));
}

void ViewController::ejected(const DRNotification &notification)
{
    DRNotificationCenter::currentRunLoop().removeObserver(this, DRDeviceStatusChangedNotification,
                                                          notification.object);
    showMediumChanged();
}

// The page shown looks at its medium afresh when it appears again.
void ViewController::showMediumChanged()
{
    if (!m_extraPage && m_initialSelected)
        outlineViewClicked(itemAt(m_lastIndex));
}

void ViewController::deviceAppeared(const DRNotification &notification)
{
    DRNotificationCenter::currentRunLoop().removeObserver(this, DRDeviceStatusChangedNotification,
                                                          notification.object);
    m_devices = DRDevice::devices(); // with the new one, in the order of the pop-ups
    reloadList();
}

void ViewController::deviceDisappeared(const DRNotification &notification)
{
    DRNotificationCenter::currentRunLoop().removeObserver(this, DRDeviceStatusChangedNotification,
                                                          notification.object);
    m_devices.removeAll(notification.object.value<DRDevice>());
    reloadList();
}

void ViewController::restorePlace()
{
    resize(defaultSize);
    restoreGeometry(QByteArray::fromBase64(Preferences::value(geometryKey).toByteArray()));
}

void ViewController::savePlace() const
{
    Preferences::setValue(geometryKey, QString::fromLatin1(saveGeometry().toBase64()));
}

void ViewController::closeEvent(QCloseEvent *event)
{
    if (RunningJobs::instance().isEmpty()) {
        if (m_signingOut)
            Session::clear();
        savePlace();
        event->accept();
        return;
    }
    event->ignore();
    if (m_closing)
        return;
    Alerts::confirmOnWindow(
        this, localized("ViewController", "Are you sure to quit?"),
        localized("ViewController",
                  "A job is running. It will be aborted, and the window closes when "
                  "it has ended."),
        [this, signingOut = std::exchange(m_signingOut, false)] {
            m_signingOut = signingOut;
            endJobsAndClose();
        });
}

// Nobody is signed out before it is settled that the window closes.
void ViewController::signOut()
{
    m_signingOut = true;
    close();
}

void ViewController::endJobsAndClose()
{
    if (std::exchange(m_closing, true))
        return;
    setEnabled(false);
    setWindowTitle(windowTitle() + localized("ViewController", " – ending…"));
    RunningJobs::instance().abortAll();
    if (RunningJobs::instance().isEmpty())
        close();
}
