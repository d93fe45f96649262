// The main window: its list, its pages, recorders coming and going, its end.
#include "ViewController.h"
#include "AlertRecorder.h"
#include "BurnDataViewController.h"
#include "DRBurn.h"
#include "DRKeys.h"
#include "DescribedRecorder.h"
#include "MainQueue.h"
#include "RunningJobs.h"
#include "Session.h"
#include "TerminationSignals.h"
#include "VirtualDrive.h"
#include "WindowTestMain.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>

#include <csignal>

namespace {

// A burn that takes minutes.
DRBurn longBurn(const DRDevice &device, const QString &image)
{
    QFile file(image);
    if (!file.open(QIODevice::WriteOnly) || !file.resize(100 << 20))
        qFatal("no image file");
    DRBurn burn = DRBurn::initWithDevice(device);
    burn.setRequestedBurnSpeed(706);
    burn.writeLayout(DRBurn::layoutForImageFile(image));
    return burn;
}

}

class ViewControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void listsTheModulesInOrder();
    void groupIsNoModule();
    void pagesKeepTheirState();
    void pageWithAJobOutlivesAReload();
    void everyClickShowsItsPage();
    void informationStaysWhereItIs();
    void keyboardChangesPages();
    void recordersMenuFollowsTheRecorders();
    void insertAndEjectFromTheMenu();
    void closingAsksWhileAJobRuns();
    void terminatedWhileAJobRuns();
    void placeIsRemembered();

private:
    void show();

    [[nodiscard]] QTreeWidget *list() const
    {
        return m_window->findChild<QTreeWidget *>(QStringLiteral("outlineView"));
    }
    [[nodiscard]] QTreeWidgetItem *module(int index) const
    {
        return list()->topLevelItem(0)->child(index);
    }
    void clickOn(QTreeWidgetItem *item) const
    {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                          list()->visualItemRect(item).center());
    }
    // The page shown; null where none is.
    [[nodiscard]] Page *page() const
    {
        const QList<Page *> pages = m_window->findChildren<Page *>();
        for (Page *page : pages)
            if (page->isVisible())
                return page;
        return nullptr;
    }
    // The action of that text in the Recorders menu as it opens now; null without it.
    [[nodiscard]] QAction *recorderAction(const QString &text) const
    {
        auto *menu = m_window->findChild<QMenu *>(QStringLiteral("recordersMenu"));
        Q_EMIT menu->aboutToShow();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the former entries
        const QList<QAction *> actions = menu->findChildren<QAction *>();
        for (QAction *action : actions)
            if (action->text().remove(QLatin1Char('&')) == text)
                return action;
        return nullptr;
    }

    std::unique_ptr<VirtualDrive> m_drive;
    std::unique_ptr<ViewController> m_window;
    QTemporaryDir m_folder;
};

void ViewControllerTest::init()
{
    m_drive = std::make_unique<VirtualDrive>();
    Session::setLoggedUserDict({{QStringLiteral("ID"), QStringLiteral("1")},
                                {QStringLiteral("Userx"), QStringLiteral("root")}});
    show();
    QTRY_COMPARE(list()->topLevelItemCount(), 1);
}

void ViewControllerTest::show()
{
    m_window = std::make_unique<ViewController>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void ViewControllerTest::cleanup()
{
    m_window.reset();
    m_drive.reset();
    QTRY_VERIFY(RunningJobs::instance().isEmpty());
}

void ViewControllerTest::listsTheModulesInOrder()
{
    QCOMPARE(list()->topLevelItemCount(), 1);
    QCOMPARE(list()->topLevelItem(0)->text(0), QStringLiteral("Modules"));
    QStringList names;
    for (int i = 0; i < list()->topLevelItem(0)->childCount(); ++i) {
        names.append(module(i)->text(0));
        QVERIFY2(!module(i)->icon(0).pixmap(32).isNull(), qPrintable(names.last()));
    }
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("Home Data Music Erase DMG ISO Password Profile Notification Support "
                            "Rate Logout"));
    QVERIFY(module(0)->isSelected());
    QVERIFY(page());
}

void ViewControllerTest::groupIsNoModule()
{
    clickOn(list()->topLevelItem(0));
    QVERIFY(!list()->topLevelItem(0)->isSelected());
    QVERIFY2(!page(), "a click on the title takes the page away");
    clickOn(module(1));
    QVERIFY(qobject_cast<BurnDataViewController *>(page()));
}

void ViewControllerTest::pagesKeepTheirState()
{
    clickOn(module(1));
    const Page *first = page();
    clickOn(module(0));
    clickOn(module(1));
    QCOMPARE(page(), first);

    const QPointer<Page> old = page();
    m_window->reloadData();
    QVERIFY2(!old, "made anew by a reload");
    QVERIFY2(module(1)->isSelected(), "the choice stays as it was");
    QVERIFY(qobject_cast<BurnDataViewController *>(page()));
}

void ViewControllerTest::pageWithAJobOutlivesAReload()
{
    clickOn(module(1));
    const QPointer<Page> data = page();
    page()->findChild<QComboBox *>(QStringLiteral("sourceTypePopUp"))->setCurrentIndex(1);
    QFile file(m_folder.filePath(QStringLiteral("source.iso")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(10 << 20));
    page()->findChild<QLineEdit *>(QStringLiteral("sourceField"))->setText(file.fileName());
    page()
        ->findChild<QComboBox *>(QStringLiteral("speedPopUp"))
        ->setCurrentText(QStringLiteral("705.6"));
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Are you sure to burn?"),
                  QStringLiteral("Burn the data on the disc"));
    QTest::mouseClick(page()->findChild<QWidget *>(QStringLiteral("burnButton")), Qt::LeftButton);
    QTRY_VERIFY(data->hasRunningJob());
    m_window->reloadData();
    QVERIFY(data);
    QCOMPARE(page(), data.data());
    RunningJobs::instance().abortAll();
    QTRY_VERIFY(!data->hasRunningJob());
}

// The row that is marked and the page that is shown are the same, however the row was chosen.
void ViewControllerTest::everyClickShowsItsPage()
{
    const QPointer<Page> first = page();
    QTest::mouseClick(list()->viewport(), Qt::RightButton, {},
                      list()->visualItemRect(module(1)).center());
    QCOMPARE(page(), first.data());
    QTest::mousePress(list()->viewport(), Qt::LeftButton, {},
                      list()->visualItemRect(module(1)).center());
    QTest::mouseMove(list()->viewport(), list()->visualItemRect(module(0)).center());
    QTest::mouseRelease(list()->viewport(), Qt::LeftButton, {},
                        list()->visualItemRect(module(0)).center());
    QCOMPARE(qobject_cast<BurnDataViewController *>(page()) != nullptr, module(1)->isSelected());
}

void ViewControllerTest::informationStaysWhereItIs()
{
    recorderAction(QStringLiteral("Information…"))->trigger();
    const QPointer<Page> information = page();
    QVERIFY(list()->selectedItems().isEmpty());
    const auto other = std::make_shared<DescribedRecorder>(QVariantMap());
    m_drive->service().attach(other);
    QTRY_VERIFY(recorderAction(QStringLiteral("Described")));
    m_drive->service().detach(other);
    QTRY_VERIFY(!recorderAction(QStringLiteral("Described")));
    recorderAction(QStringLiteral("Eject"))->trigger();
    QCOMPARE(page(), information.data());
    clickOn(module(0));
    QVERIFY(page() && !information);
}

void ViewControllerTest::keyboardChangesPages()
{
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Down);
    QVERIFY(qobject_cast<BurnDataViewController *>(page()));
}

void ViewControllerTest::recordersMenuFollowsTheRecorders()
{
    QVERIFY(recorderAction(QStringLiteral("Virtual Recorder")));
    const auto other = std::make_shared<DescribedRecorder>(QVariantMap());
    m_drive->service().attach(other);
    QTRY_VERIFY(recorderAction(QStringLiteral("Described")));
    m_drive->service().detach(other);
    QTRY_VERIFY(!recorderAction(QStringLiteral("Described")));
    m_drive->detach();
    QTRY_VERIFY(recorderAction(QStringLiteral("No recorder is attached.")));
}

void ViewControllerTest::insertAndEjectFromTheMenu()
{
    clickOn(module(1));
    recorderAction(QStringLiteral("DVD-RAM"))->trigger();
    QCOMPARE(m_drive->device().mediaType(), QString(DRDeviceMediaTypeDVDRAM));
    QCOMPARE(page()->findChild<QLabel *>(QStringLiteral("discSizeLabel"))->text(),
             QStringLiteral("4.58 GB"));
    recorderAction(QStringLiteral("Eject"))->trigger();
    QVERIFY(!m_drive->device().mediaIsPresent());
    QCOMPARE(page()->findChild<QLabel *>(QStringLiteral("discSizeLabel"))->text(),
             QStringLiteral("0 Bytes"));
    QVERIFY(!recorderAction(QStringLiteral("Eject"))->isEnabled());
}

void ViewControllerTest::closingAsksWhileAJobRuns()
{
    DRBurn burn = longBurn(m_drive->device(), m_folder.filePath(QStringLiteral("long.iso")));
    QTRY_VERIFY(m_drive->device().mediaIsBusy());
    QVERIFY(!recorderAction(QStringLiteral("Eject"))->isEnabled());
    const QString question = QStringLiteral("Are you sure to quit?");
    const QString consequence = QStringLiteral(
        "A job is running. It will be aborted, and the window closes when it has ended.");
    AlertRecorder alerts;
    alerts.expect(question, consequence, QMessageBox::Cancel);
    QVERIFY(!m_window->close());
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(m_window->isVisible());
    QVERIFY(burn.errorText().isEmpty());

    alerts.expect(question, consequence);
    QVERIFY(!m_window->close());
    QTRY_VERIFY(!m_window->isVisible());
    QVERIFY(!burn.errorText().isEmpty());
    QVERIFY2(!m_drive->device().mediaIsBusy(), "the job has ended before the window is gone");
    QVERIFY(!m_drive->device().mediaIsBlank());
}

void ViewControllerTest::terminatedWhileAJobRuns()
{
    const TerminationSignals termination;
    connect(&termination, &TerminationSignals::received, m_window.get(),
            &ViewController::endJobsAndClose);
    DRBurn burn = longBurn(m_drive->device(), m_folder.filePath(QStringLiteral("long.iso")));
    QTRY_VERIFY(m_drive->device().mediaIsBusy());
    {
        const MainQueue::Hold serviceIsAsked;
        std::raise(SIGTERM);
        QTest::qWait(50);
        QVERIFY(m_window->isVisible() && m_drive->device().mediaIsBusy());
    }
    QTRY_VERIFY(!m_window->isVisible());
    QVERIFY2(!m_drive->device().mediaIsBusy(), "the job has ended before the window is gone");
}

void ViewControllerTest::placeIsRemembered()
{
    m_window->resize(801, 555);
    m_window->close();
    const ViewController again;
    QCOMPARE(again.size(), QSize(801, 555));
}

MAPLORN_WINDOW_TEST_MAIN(ViewControllerTest)
#include "ViewControllerTest.moc"
