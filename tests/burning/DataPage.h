// The data page in a window, with a drive of either kind, driven by its controls. Main thread.
#pragma once

#include "AlertRecorder.h"
#include "BurnDataViewController.h"
#include "RealDrive.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

class DataPage
{
public:
    DataPage()
    {
        page.reset(BurnDataViewController::getViewController());
        page->show();
        QVERIFY(QTest::qWaitForWindowExposed(page.get()));
    }

    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        auto *found = page->findChild<Control *>(QLatin1StringView(name));
        Q_ASSERT(found);
        return found;
    }

    void click(const char *name) const
    {
        QTest::mouseClick(control<QWidget>(name), Qt::LeftButton);
    }

    // Chooses a kind (0 folder, 1 image) as a person does.
    void chooseType(int index) const
    {
        auto *popUp = control<QComboBox>("sourceTypePopUp");
        popUp->setCurrentIndex(index);
        Q_EMIT popUp->activated(index);
    }

    // Chooses a source in the file chooser and waits until it is measured.
    void choose(const QString &path) const
    {
        click("sourceButton");
        auto *chooser = page->findChild<QFileDialog *>();
        QVERIFY(chooser);
        chooser->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
        chooser->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->click();
        QTRY_COMPARE(control<QLineEdit>("sourceField")->text(), path);
        QTRY_VERIFY(control<QWidget>("burnButton")->isEnabled());
    }

    // A burn that lasts.
    void chooseSlowest() const
    {
        drive.keepToSpeed();
        control<QComboBox>("speedPopUp")->setCurrentIndex(1); // behind AUTO
    }

    // Starts the burn of what was chosen.
    void startBurn(AlertRecorder &alerts) const
    {
        alerts.expect(QStringLiteral("Are you sure to burn?"),
                      QStringLiteral("Burn the data on the disc"));
        click("burnButton");
        QTRY_VERIFY(alerts.isDone());
    }

    // A burn ends when its data are on the disk, which takes long where that is busy.
    void waitForEnd() const { QTRY_VERIFY_WITH_TIMEOUT(!page->hasRunningJob(), 60000); }

private:
    std::unique_ptr<TestDrive> m_drive = makeTestDrive();

public:
    TestDrive &drive = *m_drive;
    std::unique_ptr<BurnDataViewController> page;
};
