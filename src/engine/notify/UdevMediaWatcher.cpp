#include "UdevMediaWatcher.h"

#include <QFileInfo>
#include <QSocketNotifier>

#include <libudev.h>

void UdevMediaWatcher::UdevUnref::operator()(udev *u) const {
    udev_unref(u);
}

void UdevMediaWatcher::MonitorUnref::operator()(udev_monitor *m) const {
    udev_monitor_unref(m);
}

UdevMediaWatcher::UdevMediaWatcher(QObject *parent)
    : QObject(parent)
    , m_udev(udev_new()) {
    if (!m_udev)
        return;
    // Without a udev daemon nothing comes on its channel; the kernel's own events still do.
    const char *source = QFileInfo::exists(QStringLiteral("/run/udev/control")) ? "udev" : "kernel";
    std::unique_ptr<udev_monitor, MonitorUnref> monitor(
        udev_monitor_new_from_netlink(m_udev.get(), source));
    if (!monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor.get(), "block", "disk") < 0 ||
        udev_monitor_enable_receiving(monitor.get()) < 0)
        return;
    const int fd = udev_monitor_get_fd(monitor.get());
    if (fd < 0)
        return;
    m_monitor = std::move(monitor);
    m_notifier = new QSocketNotifier(fd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &UdevMediaWatcher::readEvents);
}

UdevMediaWatcher::~UdevMediaWatcher() {
    delete m_notifier; // before the monitor's socket closes
    m_notifier = nullptr;
}

bool UdevMediaWatcher::isMediaChange(const Properties &p) {
    if (p.value("SUBSYSTEM") != "block" || p.value("DEVTYPE") != "disk" ||
        p.value("ACTION") != "change")
        return false;
    // Optical drives: udev's own mark, or the kernel's name for a SCSI CD drive.
    const QByteArray name = p.value("DEVNAME");
    const bool optical =
        p.value("ID_CDROM") == "1" || name.startsWith("sr") || name.startsWith("/dev/sr");
    return optical && (p.value("DISK_MEDIA_CHANGE") == "1" || p.contains("ID_CDROM_MEDIA") ||
                       p.value("DISK_EJECT_REQUEST") == "1");
}

void UdevMediaWatcher::readEvents() {
    // Every event waiting is taken, so that the socket does not signal again for old ones.
    while (udev_device *dev = udev_monitor_receive_device(m_monitor.get())) {
        Properties properties;
        for (udev_list_entry *e = udev_device_get_properties_list_entry(dev); e;
             e = udev_list_entry_get_next(e))
            properties.insert(udev_list_entry_get_name(e), udev_list_entry_get_value(e));
        const char *node = udev_device_get_devnode(dev);
        const QString deviceNode = QString::fromLocal8Bit(node ? node : "");
        udev_device_unref(dev);
        if (isMediaChange(properties))
            emit mediaChanged(deviceNode);
    }
}
