#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class BlankDiscHandler;
class CDWriterPro;
class CopierJob;
class Recorder;

// The copier: the device list by address, disc copy, writing a cue sheet, reading a data disc
// into a file, the tray calls. It works on the drive objects of the CDWriterPro it is given (the
// machine is scanned once) and runs one job at a time, on a drive no other job holds. Lives on
// the UI thread; its jobs run on a worker of their own and every event is emitted on the UI
// thread.
//
// Addresses: the three low bytes are host, target and unit. A drive of the machine has its
// SCSI address (/sys/block/srN/device); a libburn file drive host 254, target its number among
// the file drives; the Image Recorder 255:0:0 and a second one 255:1:0.
//
// Every job ends with exactly one JobComplete or JobFailed (an abort is a failure whose reason
// says so). A call refused before anything starts returns a negative number and leaves its
// reason in ResultText, with no event.
class CD2CD : public QObject {
    Q_OBJECT
public:
    // DiscState answers.
    enum DiscStateCode : qint32 {
        StateNoDisc = 0,
        StateAppendable = 1,
        StateBlank = 2,
        StateFull = 3
    };
    static constexpr qint32 MaxSpeed = 255;

    explicit CD2CD(CDWriterPro *writer, QObject *parent = nullptr);
    ~CD2CD() override;

    // Devices.
    qint32 DeviceCount() const;
    qint32 DeviceAddress(qint32 index) const;
    qint32 QueryVendor(qint32 address);
    qint32 QueryProduct(qint32 address);
    qint32 QueryRevision(qint32 address);
    QString ResultText() const { return m_result; }
    void SelectDevice(qint32 address);
    qint32 MaxSpeedCode() const;
    qint32 SpeedCode() const { return m_speedCode; }
    void setSpeedCode(qint32 value) { m_speedCode = value; }

    // Jobs.
    qint32 CopyDisc(qint32 source, qint32 destination, qint32 speed, qint32 test, qintptr window);
    qint32 SubmitAudioJob(qint32 address, const QString &cueFile, qint32 speed, qint32 test,
                          qintptr window);
    // Flag 0: an ISO file of the last session's track; 1: a BIN with its cue sheet beside it.
    qint32 ReadDiscToFile(qint32 address, const QString &path, qint32 flag);
    void AbortJob();
    bool JobRunning() const { return bool(m_job); }
    // 1 while a job runs (the three are then filled in), 0 otherwise.
    qint32 ReadProgress(qint32 &Track, qint32 &Sector, qint32 &Sectors) const;
    qint32 TotalSectors() const;
    qint32 CurrentSector() const;

    // The drive and its disc.
    qint32 DiscState(qint32 address);
    void EjectTray(qint32 address);
    void CloseTray(qint32 address);
    void LockTray(qint32 address);
    void UnlockTray(qint32 address);
    bool TrayLocked(qint32 address) const;

    // Who puts a blank disc in when a copy reads and writes on the same drive; without one,
    // such a copy is refused.
    void setBlankDiscHandler(BlankDiscHandler *handler) { m_handler = handler; }

    // Called by the running job on the UI thread.
    void reportPercent(double percent);
    void askForBlankDisc(qint32 address, const QString &driveName);

    // The device list line of a drive: "H:T:U  ", the vendor padded to 8, the product padded
    // to 24, the revision.
    QString listLine(qint32 address);

signals:
    // How far the job has come, in per cent. 100 is sent a single time: once nothing can stop
    // the job any more, or when it is done.
    void PercentDone(double nPercent);
    void JobComplete();
    void JobFailed(const QString &sReason);

private:
    Recorder *recorderAt(qint32 address) const;
    qint32 refuse(qint32 code, const QString &why);
    // Claims the drives and starts the job; negative when a drive is held by another job.
    qint32 startJob(std::unique_ptr<CopierJob> job, Recorder *a, Recorder *b);
    qint32 queryText(qint32 address, const QString &text);

    QPointer<CDWriterPro> m_writer;
    QString m_result;
    qint32 m_selected = -1;
    qint32 m_speedCode = MaxSpeed;
    BlankDiscHandler *m_handler = nullptr;
    std::unique_ptr<CopierJob> m_job;
    Recorder *m_claimedA = nullptr, *m_claimedB = nullptr;
};
