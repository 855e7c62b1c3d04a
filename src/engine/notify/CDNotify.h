#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

class CDWriterPro;

// Reports the arrival and the removal of a medium in any recorder, on the UI thread, with the
// drive's letter (its device name, "IMG" for the Image Recorder). Lives on the UI thread.
class CDNotify : public QObject {
    Q_OBJECT
public:
    explicit CDNotify(CDWriterPro *engine, QObject *parent = nullptr);
    ~CDNotify() override;

    // Compares every drive's medium with the last look and reports the changes. Any watcher
    // calls it: the poll timer, the engine's own tray moves (and kernel media events of
    // physical drives, which can call it the same way).
    void checkDrives();

signals:
    void Arrival(const QString &Drive);
    void RemoveComplete(const QString &Drive);

private:
    QPointer<CDWriterPro> m_engine;
    QTimer m_poll;
    QStringList m_seen; // the last medium identity of each drive
};
