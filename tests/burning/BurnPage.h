// A page that burns, in a window, with a drive of either kind, driven by its controls. DataPage and
// AudioPage are the two. Main thread.
#pragma once

#include "AlertRecorder.h"
#include "RealDrive.h"
#include "Recorder.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

template <typename Controller>
class BurnPage
{
public:
    static constexpr int patience = 30000; // ms; only what never ends takes so long

    BurnPage()
    {
        page.reset(Controller::getViewController());
        page->show();
        QVERIFY(QTest::qWaitForWindowExposed(page.get()));
    }

    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        auto *found = page->template findChild<Control *>(QLatin1StringView(name));
        Q_ASSERT(found);
        return found;
    }
    [[nodiscard]] bool isEnabled(const char *name) const
    {
        return control<QWidget>(name)->isEnabled();
    }
    [[nodiscard]] bool isVisible(const char *name) const
    {
        return control<QWidget>(name)->isVisible();
    }
    [[nodiscard]] QString label(const char *name) const { return control<QLabel>(name)->text(); }
    [[nodiscard]] QString shown(const char *field) const
    {
        return control<QLineEdit>(field)->text();
    }
    [[nodiscard]] QString chosen(const char *popUp) const
    {
        return control<QComboBox>(popUp)->currentText();
    }
    [[nodiscard]] QString progressTitle() const
    {
        return control<QGroupBox>("progressBox")->title();
    }

    void click(const char *name) const
    {
        QTest::mouseClick(control<QWidget>(name), Qt::LeftButton);
    }
    void check(const char *box, bool isOn = true) const
    {
        control<QAbstractButton>(box)->setChecked(isOn);
    }

    // Has a recorder of that kind in place of the drive's.
    template <typename Kind, typename... Arguments>
    std::shared_ptr<Kind> use(Arguments &&...arguments)
    {
        const auto recorder = std::make_shared<Kind>(std::forward<Arguments>(arguments)...);
        drive.detach();
        drive.service().attach(recorder);
        [&] { QTRY_COMPARE(chosen("devicesPopUp"), recorder->displayName()); }();
        return recorder;
    }

    // Starts the burn, stops it, clears the page; or does not, where the question is refused.
    void startBurn(AlertRecorder &alerts, QMessageBox::StandardButton press = QMessageBox::Ok) const
    {
        alerts.expect(QStringLiteral("Are you sure to burn?"),
                      QStringLiteral("Burn the data on the disc"), press);
        clickAndWait("burnButton", alerts);
    }
    void stopBurn(AlertRecorder &alerts) const
    {
        alerts.expect(QStringLiteral("Are you sure to abort the burning?"),
                      QStringLiteral("The abort will leave the data incomplete on the disc"));
        clickAndWait("stopButton", alerts);
    }
    void clear(AlertRecorder &alerts, QMessageBox::StandardButton press = QMessageBox::Ok) const
    {
        alerts.expect(QStringLiteral("Are you sure to clear?"),
                      QStringLiteral("Clear the burning information"), press);
        clickAndWait("clearButton", alerts);
    }

    // A burn ends when its data are on the disk, which takes long where that is busy.
    void waitForEnd() const { QTRY_VERIFY_WITH_TIMEOUT(!page->hasRunningJob(), 2 * patience); }

private:
    void clickAndWait(const char *button, const AlertRecorder &alerts) const
    {
        click(button);
        QTRY_VERIFY_WITH_TIMEOUT(alerts.isDone(), patience);
    }

    std::unique_ptr<TestDrive> m_drive = makeTestDrive();

public:
    TestDrive &drive = *m_drive;
    std::unique_ptr<Controller> page;
};
