// The data page as a person uses it. Main thread.
#pragma once

#include "BurnDataViewController.h"
#include "BurnPage.h"

class DataPage : public BurnPage<BurnDataViewController>
{
public:
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
        QTRY_COMPARE(shown("sourceField"), path);
        QTRY_VERIFY(isEnabled("burnButton"));
    }
    void chooseImage(const QString &path) const
    {
        chooseType(1);
        choose(path);
    }

    // A burn that lasts.
    void chooseSlowest() const
    {
        drive.keepToSpeed();
        control<QComboBox>("speedPopUp")->setCurrentIndex(1); // behind AUTO
    }
};
