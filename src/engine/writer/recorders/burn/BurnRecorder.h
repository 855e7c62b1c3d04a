#pragma once

#include "BurnMedium.h"
#include "engine/writer/recorders/Recorder.h"

#include <QMutex>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class BurnDrive;

// A recorder reached through libburn: a drive of the machine ("/dev/sr0"), or a file standing
// for one ("stdio:/path", for tests). The drive is grabbed for each piece of work and released
// after it, so that other programs can use it meanwhile; reads for an import keep it until the
// next other use. Inquiry and medium members run on the UI thread, write(), erase(), finish()
// on the engine's worker thread; the mutex keeps them apart, and while a job holds the drive
// the medium members answer from what was last learnt.
class BurnRecorder : public Recorder {
public:
    struct Inquiry {
        QString address; // libburn's address of the drive
        QString vendor, product;
        bool writes = false;
        QString revision = {}; // last, with its default, so older initialisers stay whole
    };
    explicit BurnRecorder(Inquiry inquiry);
    ~BurnRecorder() override;

    // Finds the drives of the machine through one libburn scan. Drives that exist but can't be
    // opened are left out, with the reason in *notes.
    static std::vector<Inquiry> scanMachine(QStringList *notes);
    // "sr0" for "/dev/sr0"; a file standing for a drive is "FILE".
    static QString letterOf(const QString &address);

    QString address() const { return m_inquiry.address; }
    QString letter() const override { return letterOf(m_inquiry.address); }
    QString vendor() const override { return m_inquiry.vendor; }
    QString product() const override { return m_inquiry.product; }
    QString revision() const override { return m_inquiry.revision; }
    bool lockTray(bool lock) override;
    bool trayLocked() const override { return m_locked; }
    bool isRecorder() const override { return m_inquiry.writes; }
    bool capability(qint32 code) const override;
    QList<qint32> writeSpeeds() const override;

    MediumState medium() const override;
    void moveTray(bool close) override;
    QString mediumIdentity() const override;

    bool readBlocks(qint32 lba, qint32 count, char *buffer) override;
    JobOutcome precheck(const WritePlan &plan) const override;
    JobOutcome write(const WritePlan &plan, JobMonitor &monitor) override;
    JobOutcome erase(bool quick, JobMonitor &monitor) override;
    JobOutcome finish(bool closeDisc, JobMonitor &monitor) override;

private:
    // The drive for one piece of work: the one kept for reads, or a new grab.
    std::unique_ptr<BurnDrive> take(bool load, QString *why) const;
    std::optional<BurnMedium::Assessment> assessed() const;
    JobOutcome unreachable(const QString &why) const;
    // Runs one job: marks the recorder busy, grabs the drive, learns the medium, and releases
    // the drive when the job returns, whatever it returns.
    using Job =
        std::function<JobOutcome(std::unique_ptr<BurnDrive> &, const BurnMedium::Assessment &)>;
    JobOutcome runJob(const Job &job);
    static JobOutcome busyOutcome();
    JobOutcome eraseWith(BurnDrive &drive, const BurnMedium::Assessment &a, bool quick,
                         JobMonitor &monitor);
    JobOutcome finishWith(BurnDrive &drive, const BurnMedium::Assessment &a, bool closeDisc,
                          JobMonitor &monitor);
    JobOutcome eraseOverwriteable(BurnDrive &drive, const BurnMedium::Assessment &a, bool quick,
                                  JobMonitor &monitor);
    JobOutcome waitForDrive(BurnDrive &drive, JobMonitor &monitor, const QString &what);

    Inquiry m_inquiry;
    mutable QMutex m_mutex;
    mutable std::unique_ptr<BurnDrive> m_kept; // grabbed for a run of reads
    mutable std::optional<BurnMedium::Assessment> m_assessment;
    mutable QString m_assessedIdentity;
    mutable std::optional<quint64> m_capabilities;
    mutable bool m_busy = false;
    mutable QAtomicInt m_generation = 0; // media changes the kernel reported
    std::atomic<bool> m_locked{false};
};
