#pragma once

#include <QObject>
#include <QString>

class CDWriterPro;

// Reports the arrival and the removal of a medium in any recorder, on the UI thread, with the
// drive's letter (its device name, "IMG" for the Image Recorder). Lives on the UI thread.
class CDNotify : public QObject
{
    Q_OBJECT
public:
    explicit CDNotify(CDWriterPro *engine, QObject *parent = nullptr);
    ~CDNotify() override;

signals:
    void Arrival(const QString &Drive);
    void RemoveComplete(const QString &Drive);
};
