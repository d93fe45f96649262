// The main window: the fixed list of modules on the left, the page of the chosen one on the right.
// Main thread.
#pragma once

#include "DRDevice.h"
#include "Modules.h"
#include "RecordersMenu.h"

#include <QMainWindow>
#include <QMap>
#include <QPointer>

#include <memory>

class LoginViewController;
class QTreeWidgetItem;
struct DRNotification;

namespace Ui {
class ViewController;
}

class ViewController : public QMainWindow
{
    Q_OBJECT

public:
    ViewController();
    ~ViewController() override;

    // Makes the modules anew, shows the first at the first time, then the unread notifications.
    // A page with a running job is kept.
    void reloadData();

    // Closes the window, which quits, after it has asked about jobs that still run, and ends the
    // session.
    void signOut();

    // Closes the window without asking, when all jobs have been aborted and have ended.
    void endJobsAndClose();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void viewDidAppear();
    void presentSignIn();
    void initModules();
    void postInits();
    void reloadList();
    void initialSelect();
    void showViewController(Page *controller);
    void outlineViewClicked(QTreeWidgetItem *item);
    void selectionChanged();
    [[nodiscard]] static int rowOf(QTreeWidgetItem *item); // -1 for null
    [[nodiscard]] QTreeWidgetItem *itemAt(int row) const;

    void makeMenus();
    [[nodiscard]] RecorderCommands recorderCommands();
    void showExtraPage(std::unique_ptr<Page> page);
    void showInformation(const DRDevice &device);
    void ejectAction(const DRDevice &device);
    void ejected(const DRNotification &notification);
    void showMediumChanged();

    void deviceAppeared(const DRNotification &notification);
    void deviceDisappeared(const DRNotification &notification);

    void restorePlace();
    void savePlace() const;
    [[nodiscard]] const ModuleItem *moduleOf(QTreeWidgetItem *item) const;

    std::unique_ptr<Ui::ViewController> m_ui;
    QMap<QString, QList<ModuleItem>> m_modulesDict;
    QPointer<LoginViewController> m_loginViewController; // while nobody is signed in
    QPointer<Page> m_currentViewController;
    std::unique_ptr<Page> m_extraPage; // that stands in no list: information, portal
    int m_lastIndex = -1;              // row of the list that was clicked last
    bool m_initialSelected = false;
    bool m_shownByPress = false; // the press that a click began with has shown the row's page
    bool m_closing = false;
    bool m_signingOut = false;
    QList<DRDevice> m_devices;
};
