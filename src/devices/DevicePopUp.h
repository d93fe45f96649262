// A pop-up list of the recorders attached, kept true as they come and go. Shared by the pages that
// burn and erase. Main thread.
#pragma once

#include "DRDevice.h"

#include <QObject>

class QComboBox;
struct DRNotification;

class DevicePopUp : public QObject
{
    Q_OBJECT

public:
    // Fills the combo box, which must outlive this, at each loadDevices().
    explicit DevicePopUp(QComboBox *devicesPopUp);

    // Shows the recorders attached now and selects the first; "NoDevice" alone without any.
    void loadDevices();

    // Has the list follow the recorders that come and go from now on.
    void observe();

    // No device where the list is empty.
    [[nodiscard]] DRDevice selectedDevice() const;

private:
    void deviceAppeared(const DRNotification &notification);
    void deviceDisappeared(const DRNotification &notification);

    QComboBox *m_devicesPopUp;
    QList<DRDevice> m_devices;
};
