#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

class CDWriterPro;
class UdevMediaWatcher;

// Reports the arrival and the removal of a medium in any recorder, on the UI thread, with the
// drive's letter (its device name, "IMG" for the Image Recorder). The Image Recorder's tray is
// looked at twice a second; physical drives are looked at when the kernel tells of a media
// change through libudev, and every few seconds besides, as not every drive tells. Lives on the
// UI thread.
class CDNotify : public QObject {
    Q_OBJECT
public:
    explicit CDNotify(CDWriterPro *engine, QObject *parent = nullptr);
    ~CDNotify() override;

    // Compares every drive's medium with the last look and reports the changes. Any watcher
    // calls it: the poll timers, the engine's own tray moves, kernel media events.
    void checkDrives();
    // Whether kernel media events reach this object (false in most containers).
    bool kernelEventsActive() const;

signals:
    void Arrival(const QString &Drive);
    void RemoveComplete(const QString &Drive);

private:
    enum class Which { All, Virtual, Physical };
    void check(Which which);

    QPointer<CDWriterPro> m_engine;
    QTimer m_trayPoll;
    QTimer m_drivePoll;
    UdevMediaWatcher *m_udev = nullptr;
    QStringList m_seen; // the last medium identity of each drive
};
