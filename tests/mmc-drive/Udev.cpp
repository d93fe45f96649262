// What libudev tells of the emulated drive: that it is there, and each change of the files through
// which it is controlled. There is nothing else in this library's world.
#include "Controls.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <sys/inotify.h>
#include <unistd.h>

using mmc::Controls;

namespace {

// Stands for every object of libudev; a monitor's file is that of inotify.
struct Object
{
    int file = -1;
    const char *action = nullptr;
};

bool isThere()
{
    return Controls::instance() && !Controls::instance()->isGone();
}

std::string_view kindName(const mmc::Medium &medium)
{
    switch (medium.profile()) {
    case mmc::CdR:
        return "CD_R";
    case mmc::CdRw:
        return "CD_RW";
    case mmc::DvdPlusRw:
        return "DVD_PLUS_RW";
    case mmc::BdRe:
        return "BD_RE";
    default:
        return "CD";
    }
}

constexpr const char *place = "/sys/devices/emulated/block/sr0";

}

// As libudev.h declares them.
struct udev : Object
{
};
struct udev_enumerate : Object
{
};
struct udev_list_entry : Object
{
};
struct udev_device : Object
{
};
struct udev_monitor : Object
{
    bool wasThere = isThere();
};

extern "C" {

udev *udev_new()
{
    return new udev;
}

udev *udev_unref(udev *context)
{
    delete context;
    return nullptr;
}

udev_enumerate *udev_enumerate_new(udev *)
{
    return new udev_enumerate;
}

udev_enumerate *udev_enumerate_unref(udev_enumerate *enumerate)
{
    delete enumerate;
    return nullptr;
}

int udev_enumerate_add_match_subsystem(udev_enumerate *, const char *)
{
    return 0;
}

int udev_enumerate_add_match_property(udev_enumerate *, const char *, const char *)
{
    return 0;
}

int udev_enumerate_scan_devices(udev_enumerate *)
{
    return 0;
}

udev_list_entry *udev_enumerate_get_list_entry(udev_enumerate *)
{
    static udev_list_entry drive;
    return isThere() ? &drive : nullptr;
}

udev_list_entry *udev_list_entry_get_next(udev_list_entry *)
{
    return nullptr;
}

const char *udev_list_entry_get_name(udev_list_entry *)
{
    return place;
}

udev_device *udev_device_new_from_syspath(udev *, const char *)
{
    return new udev_device;
}

udev_device *udev_device_unref(udev_device *device)
{
    delete device;
    return nullptr;
}

const char *udev_device_get_devnode(udev_device *)
{
    return "/dev/sr0";
}

const char *udev_device_get_syspath(udev_device *)
{
    return place;
}

const char *udev_device_get_action(udev_device *device)
{
    return device->action;
}

// As cdrom_id of systemd makes them of what it asks the drive.
const char *udev_device_get_property_value(udev_device *, const char *key)
{
    constexpr std::string_view prefix = "ID_CDROM_MEDIA_";
    constexpr std::array written{"ID_CDROM",       "ID_CDROM_CD",   "ID_CDROM_CD_R",
                                 "ID_CDROM_CD_RW", "ID_CDROM_DVD",  "ID_CDROM_DVD_PLUS_RW",
                                 "ID_CDROM_BD",    "ID_CDROM_BD_RE"};
    const std::string_view name(key);
    if (std::ranges::find(written, name) != written.end())
        return "1";
    if (name == "ID_SERIAL_SHORT")
        return "MMC0001";
    Controls::instance()->takeInsertions();
    const mmc::Registers &registers = Controls::instance()->registers();
    const mmc::Medium &medium = registers.medium;
    if (!medium.isPresent() || registers.trayOpen
        || !name.starts_with(prefix.substr(0, prefix.size() - 1)))
        return nullptr;
    if (name == "ID_CDROM_MEDIA_STATE")
        return medium.isBlank() && !medium.kind().overwritable  ? "blank"
               : medium.finalized || medium.kind().overwritable ? "complete"
                                                                : "appendable";
    const bool kind = name.starts_with(prefix) && name.substr(prefix.size()) == kindName(medium);
    return kind || name == "ID_CDROM_MEDIA" ? "1" : nullptr;
}

udev_device *udev_device_get_parent_with_subsystem_devtype(udev_device *device, const char *,
                                                           const char *)
{
    return device;
}

const char *udev_device_get_sysattr_value(udev_device *, const char *name)
{
    return std::strcmp(name, "vendor") == 0  ? "EMULATED"
           : std::strcmp(name, "model") == 0 ? "DVD-RW TESTDRIVE"
           : std::strcmp(name, "rev") == 0   ? "1.00"
                                             : nullptr;
}

udev_monitor *udev_monitor_new_from_netlink(udev *, const char *)
{
    auto *monitor = new udev_monitor;
    monitor->file = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    return monitor;
}

udev_monitor *udev_monitor_unref(udev_monitor *monitor)
{
    close(monitor->file);
    delete monitor;
    return nullptr;
}

int udev_monitor_filter_add_match_subsystem_devtype(udev_monitor *, const char *, const char *)
{
    return 0;
}

int udev_monitor_enable_receiving(udev_monitor *monitor)
{
    if (Controls *controls = Controls::instance())
        inotify_add_watch(monitor->file, controls->folder().c_str(),
                          IN_CLOSE_WRITE | IN_MOVED_TO | IN_DELETE);
    return 0;
}

int udev_monitor_get_fd(udev_monitor *monitor)
{
    return monitor->file;
}

// One event for all that has happened since the last call; none where it does not concern the
// drive.
udev_device *udev_monitor_receive_device(udev_monitor *monitor)
{
    alignas(inotify_event) char buffer[4096];
    bool mediumChanged = false;
    for (ssize_t got; (got = read(monitor->file, buffer, sizeof buffer)) > 0;) {
        for (char *at = buffer; at < buffer + got;) {
            const auto *event = reinterpret_cast<const inotify_event *>(at);
            mediumChanged |= !(event->mask & IN_DELETE)
                             && (std::strcmp(event->name, "insert") == 0
                                 || std::strcmp(event->name, "event") == 0);
            at += sizeof *event + event->len;
        }
    }
    const bool there = isThere();
    const char *action = there && !monitor->wasThere   ? "add"
                         : !there && monitor->wasThere ? "remove"
                         : mediumChanged               ? "change"
                                                       : nullptr;
    monitor->wasThere = there;
    if (!action)
        return nullptr;
    auto *device = new udev_device;
    device->action = action;
    return device;
}
}
