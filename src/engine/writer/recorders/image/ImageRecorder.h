#pragma once

#include "ImageMedium.h"
#include "engine/writer/recorders/Recorder.h"

#include <QMutex>

#include <atomic>

// The Image Recorder: a virtual recorder whose tray is a folder under the application folder
// and whose discs are files (format in README.md beside this file). Inquiry and tray members
// run on the UI thread, write(), erase(), finish() and readBlocks() on the engine's worker
// thread; the descriptor is only read and written under the mutex, which a write does not hold
// while its blocks go out, so the UI can ask about the medium meanwhile.
class ImageRecorder : public Recorder {
public:
    // Unit 0 is the recorder every machine has; unit 1 the second one that the first one's
    // setting SecondDrive=1 adds, in the folder "Image Recorder 2".
    explicit ImageRecorder(qint32 unit = 0);
    static bool secondDriveEnabled();

    // The first recorder's folders and settings.
    static QString folder();        // the recorder's folder in the application folder
    static QString trayFolder();    // a disc here is the disc in the drive
    static QString ejectedFolder(); // where eject puts the disc
    static QString settingsFile();
    // This recorder's own.
    QString ownFolder() const { return m_folder; }
    QString ownTray() const { return m_tray; }
    QString ownEjected() const { return m_ejected; }
    QString ownSettings() const { return m_settings; }
    // The descriptor of the disc ejected last, or empty when none waits in Ejected/.
    static QString lastEjected();
    // Lays an ejected disc (its descriptor, data and cue sheet) back into an empty tray, as a
    // user puts a disc back into a drive; false when the tray holds a disc or a file can't move.
    static bool putBack(const QString &descriptor);

    QString letter() const override;
    QString vendor() const override { return QStringLiteral("Tessaly"); }
    QString product() const override;
    QString revision() const override { return QStringLiteral("1.00"); }
    bool isRecorder() const override { return true; }
    bool isVirtual() const override { return true; }
    bool capability(qint32 code) const override;
    QList<qint32> writeSpeeds() const override;

    MediumState medium() const override;
    void moveTray(bool close) override;
    bool lockTray(bool lock) override;
    bool trayLocked() const override { return m_locked.load(); }
    QString mediumIdentity() const override { return mediumFile(); }
    // The descriptor (or plain image) that stands for the disc in the tray; empty if none.
    QString mediumFile() const;

    bool readBlocks(qint32 lba, qint32 count, char *buffer) override;
    JobOutcome precheck(const WritePlan &plan) const override;
    JobOutcome write(const WritePlan &plan, JobMonitor &monitor) override;
    JobOutcome erase(bool quick, JobMonitor &monitor) override;
    JobOutcome finish(bool closeDisc, JobMonitor &monitor) override;

private:
    struct Loaded {
        ImageMedium medium;
        QString descriptorPath; // empty for a plain image put in by hand
        QString dataPath;
    };
    std::optional<Loaded> load() const;
    // Writes the descriptor, and the cue sheet beside the data of an audio disc.
    bool save(const Loaded &loaded) const;
    // Moves the disc out of the tray into the ejected folder.
    void ejectLoaded(const Loaded &loaded) const;
    std::optional<Loaded> lockedLoad() const;
    // Takes as long as a drive needs for `blocks` of the medium at its highest speed, when
    // speed emulation is on.
    void takeTime(const MediumKind &kind, qint64 blocks, JobMonitor &monitor) const;
    JobOutcome check(const WritePlan &plan, const std::optional<Loaded> &loaded) const;
    JobOutcome writeTracks(const WritePlan &plan, Loaded &loaded, JobMonitor &monitor);

    qint32 m_unit;
    QString m_folder, m_tray, m_ejected, m_settings;
    std::atomic<bool> m_locked{false};
    mutable QMutex m_mutex;
};
