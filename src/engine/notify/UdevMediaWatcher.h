#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;
struct udev;
struct udev_monitor;

// Kernel media-change events of optical drives, through libudev: events processed by the udev
// daemon when one runs, the kernel's own otherwise. Lives on the UI thread; where no monitor can
// be opened (a container, no netlink) it stays inactive and its owner polls.
class UdevMediaWatcher : public QObject {
    Q_OBJECT
public:
    using Properties = QHash<QByteArray, QByteArray>;

    explicit UdevMediaWatcher(QObject *parent = nullptr);
    ~UdevMediaWatcher() override;

    bool isActive() const { return m_monitor != nullptr; }
    // Whether an event with these properties tells of a medium put into or taken out of an
    // optical drive.
    static bool isMediaChange(const Properties &properties);

signals:
    void mediaChanged(const QString &deviceNode);

private:
    void readEvents();

    struct UdevUnref {
        void operator()(udev *u) const;
    };
    struct MonitorUnref {
        void operator()(udev_monitor *m) const;
    };
    std::unique_ptr<udev, UdevUnref> m_udev;
    std::unique_ptr<udev_monitor, MonitorUnref> m_monitor;
    QSocketNotifier *m_notifier = nullptr;
};
