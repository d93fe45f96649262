#include "DevicePopUp.h"

#include "DRKeys.h"
#include "DRNotificationCenter.h"
#include "Localized.h"

#include <QComboBox>

DevicePopUp::DevicePopUp(QComboBox *devicesPopUp)
    : m_devicesPopUp(devicesPopUp)
{
}

void DevicePopUp::loadDevices()
{
    m_devicesPopUp->clear();
    m_devices = DRDevice::devices();
    for (const DRDevice &device : std::as_const(m_devices))
        m_devicesPopUp->addItem(device.displayName(), m_devicesPopUp->count());
    if (m_devices.isEmpty())
        m_devicesPopUp->addItem(localized("Localizable", "NoDevice"));
    m_devicesPopUp->setCurrentIndex(0);
}

void DevicePopUp::observe()
{
    DRNotificationCenter &center = DRNotificationCenter::currentRunLoop();
    center.addObserver(
        this, [this](const DRNotification &notification) { deviceAppeared(notification); },
        DRDeviceAppearedNotification);
    center.addObserver(
        this, [this](const DRNotification &notification) { deviceDisappeared(notification); },
        DRDeviceDisappearedNotification);
}

DRDevice DevicePopUp::selectedDevice() const
{
    return m_devices.value(m_devicesPopUp->currentData().toInt());
}

void DevicePopUp::deviceAppeared(const DRNotification &notification)
{
    DRNotificationCenter::currentRunLoop().removeObserver(this, DRDeviceStatusChangedNotification,
                                                          notification.object);
    m_devices.append(notification.object.value<DRDevice>());
    loadDevices();
}

void DevicePopUp::deviceDisappeared(const DRNotification &notification)
{
    DRNotificationCenter::currentRunLoop().removeObserver(this, DRDeviceStatusChangedNotification,
                                                          notification.object);
    m_devices.removeAll(notification.object.value<DRDevice>());
    loadDevices();
}
