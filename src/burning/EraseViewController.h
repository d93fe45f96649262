// The page that blanks a rewritable disc. Main thread; the erase runs off it.
#pragma once

#include "DRErase.h"
#include "DRStatus.h"
#include "DevicePopUp.h"
#include "Page.h"

#include <memory>

namespace Ui {
class Erase;
}

class EraseViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static EraseViewController *getViewController();
    ~EraseViewController() override;

    [[nodiscard]] bool hasRunningJob() const override { return m_isRunning; }

protected:
    void viewDidLoad() override;

private:
    EraseViewController();

    [[nodiscard]] bool verify() const;
    void eraseAction();
    void runErase(const DRDevice &device);
    void eraseNotification(const DRNotification &notification);
    void showState(const QString &state);
    void eraseDone(const DRDevice &device);
    void setAllStatus(bool enabled);

    [[nodiscard]] DRDevice getSelectedDevice() const { return m_devices.selectedDevice(); }

    std::unique_ptr<Ui::Erase> m_ui;
    DevicePopUp m_devices;
    DRStatus m_drStatus;
    DRErase m_erase;
    bool m_isRunning = false;
};
