// The page that shows all that is known of one recorder, in three tabs. A snapshot of the moment
// when it is first shown. Main thread.
#pragma once

#include "DeviceGeneral.h"
#include "DeviceInfo.h"
#include "DeviceStatus.h"
#include "Page.h"

#include <memory>

class QTableWidget;

namespace Ui {
class Device;
}

class DeviceViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static DeviceViewController *getViewController();
    ~DeviceViewController() override;

    // The recorder to show; before the page is shown.
    void setDevice(const DRDevice &device) { m_device = device; }

protected:
    void viewDidLoad() override;

private:
    DeviceViewController();

    void initData();
    void showStatusItem();

    std::unique_ptr<Ui::Device> m_ui;
    DRDevice m_device;
    DeviceGeneral m_deviceGeneral;
    DeviceInfo m_deviceInfo;
    DeviceStatus m_deviceStatus;
};
