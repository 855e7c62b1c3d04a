#pragma once

#include "base/VbDate.h"
#include "engine/system/SystemCalls.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

class CDWriterProPrivate;
class Recorder;

// The disc-writing engine: the ISO image tree, the audio track list, the recorders and the
// write, erase and close jobs. Lives on the UI thread; long jobs run on a worker thread of its
// own whose events are posted back, so every signal below is emitted on the UI thread, in
// order, between messages. Methods report failure by their result or by an event, never by
// throwing.
//
// The engine's rule:
// - Every member is safe to call from inside any of its events, or refuses clearly. Items are
//   announced (ISOItemAdded, EnumISOItems) after the change that made them is complete, so a
//   handler may add, remove, rename or clear meanwhile; an item a handler took out is not
//   announced any more. While a ReplaceImportedISOFile handler runs, the members that change
//   the image refuse (false, or nothing done). While a job runs, the same members refuse. A
//   handler may destroy the engine, also inside CreateISOFile, which then returns false.
// - A write that can't produce a good disc fails before its first block: a 100th session, an
//   imported session written onto another medium than its own, a medium that is too small.
// - Success means the disc reads back right: an ISO file holds every file's bytes, imported
//   ones included; imported files whose data never reached their disc are left out at import.
class CDWriterPro : public QObject {
    Q_OBJECT
public:
    // MediaType codes.
    enum MediaTypeCode : qint32 {
        MediaDVDROM = 0,
        MediaDVDRAM = 1,
        MediaDVDR = 2,
        MediaDVDRW = 3,
        MediaDVDPlusRW = 9,
        MediaDVDPlusR = 10,
        MediaCDRW = 253,
        MediaNone = 254,
        MediaCDR = 255,
    };
    // DiscStatus codes.
    enum DiscStatusCode : qint32 { DiscEmpty = 0, DiscOpen = 1, DiscClosed = 2, DiscUnknown = 3 };
    // LastSessionStatus codes.
    enum SessionStatusCode : qint32 {
        SessionEmpty = 0,
        SessionIncomplete = 1,
        SessionUnknown = 2,
        SessionClosed = 3,
    };
    // DiscType codes.
    enum DiscTypeCode : qint32 {
        DiscCdDaOrRom = 0,
        DiscCdI = 16,
        DiscCdRomXa = 32,
        DiscTypeUnknown = 255
    };
    // Capability codes of DriveCapability and CurrentDriveCapability.
    enum CapabilityCode : qint32 {
        CapReadsCDR = 0,
        CapReadsCDRW = 1,
        CapReadsDVDROM = 3,
        CapReadsDVDR = 4,
        CapReadsDVDRAM = 5,
        CapWritesCDR = 6,
        CapWritesCDRW = 7,
        CapWritesDVDR = 9,
        CapWritesDVDRAM = 10,
        CapBurnProof = 36,
        CapWritesDVDRW = 37,
        CapWritesDVDPlusR = 38,
        CapWritesDVDPlusRW = 39,
        CapRawWriting = 40,
        CapDiscAtOnce = 41,
        CapTrackAtOnce = 42,
    };

    explicit CDWriterPro(QObject *parent = nullptr);
    ~CDWriterPro() override;

    // Image and write settings.
    QString VolumeIdentifier() const;
    void setVolumeIdentifier(const QString &value);
    QString SystemIdentifier() const;
    void setSystemIdentifier(const QString &value);
    QString VolumeSetIdentifier() const;
    void setVolumeSetIdentifier(const QString &value);
    QString PublisherIdentifier() const;
    void setPublisherIdentifier(const QString &value);
    QString DataPreparerIdentifier() const;
    void setDataPreparerIdentifier(const QString &value);
    QString ApplicationIdentifier() const;
    void setApplicationIdentifier(const QString &value);
    QString CopyrightFileIdentifier() const;
    void setCopyrightFileIdentifier(const QString &value);
    QString AbstractFileIdentifier() const;
    void setAbstractFileIdentifier(const QString &value);
    QString BiblioFileIdentifier() const;
    void setBiblioFileIdentifier(const QString &value);

    bool TestWrite() const;
    void setTestWrite(bool value);
    bool CacheImage() const;
    void setCacheImage(bool value);
    bool FinalizeDisc() const;
    void setFinalizeDisc(bool value);
    bool CloseSession() const;
    void setCloseSession(bool value);
    qint32 TrackMode() const; // audio is 0; data is 1 (Mode 1) or 2 (Mode 2 XA)
    void setTrackMode(qint32 value);
    bool UseFileModifiedDate() const;
    void setUseFileModifiedDate(bool value);
    qint32 ISOFileSystem() const; // 0 ISO 9660, 1 with Joliet
    void setISOFileSystem(qint32 value);
    qint32 ISOLevel() const;

    // Drives and media.
    qint32 DriveCount() const;
    QString DriveLetter(qint32 index) const;
    QString DriveVendor(qint32 index) const;
    QString DriveProduct(qint32 index) const;
    // The drive's firmware revision as its inquiry gives it; empty when unknown.
    QString DriveRevision(qint32 index) const;
    qint32 MediaType() const;
    qint32 DiscStatus() const;
    qint32 LastSessionStatus() const;
    qint32 DiscType() const;
    qint32 SessionCount() const;
    qint32 FreeBlocks() const;
    qint32 MaxWriteSpeed() const; // kB/s; below 1 unknown
    qint32 ISOImageBlocks() const;
    qint32 ISOFileCount() const;
    qint32 ISODirectoryCount() const;
    qint32 AudioTrackCount() const;
    // The audio disc's blocks: every track in whole 2352-byte frames (at least 4 seconds) with
    // the 2-second gap before it, the first track's included, as they take the disc's space.
    qint32 AudioImageBlocks() const;
    QString Version() const;

    // Methods.
    bool InitializeDrives(bool reserved);
    bool DriveIsRecorder(qint32 index) const;
    bool SelectDrive(qint32 index);
    bool DriveCapability(qint32 code, qint32 index) const;
    bool CurrentDriveCapability(qint32 code) const;
    void SetWriteSpeed(qint32 speed);
    void MoveTray(bool close);

    void ClearISOImage();
    void AddISOFile(const QString &destPath, const QString &source);
    void AddISODirectory(const QString &destPath, const QString &sourcePattern);
    bool RemoveISOItem(const QString &destPath);
    bool RenameISOFile(const QString &destPath, const QString &newName);
    bool RenameISODirectory(const QString &destPath, const QString &newName);
    void ListISOItems(const QString &destPath);
    bool ImportLastSession(bool reserved);

    void ClearAudioTracks();
    // Puts a wave file of CD audio before the track at `position` (from 1; later positions
    // append). False for anything else, an empty wave, the hundredth track, or while a job runs.
    bool AddAudioTrack(const QString &fileName, qint32 position);
    void RemoveAudioTrack(qint32 index); // index from 1
    // EnumAudioTrack for each track: its frames on the disc (without the gap), the bytes of its
    // audio and its number from 1.
    void ListAudioTracks();

    double BlocksToBytes(qint32 blocks, qint32 mode) const;
    QString BlocksToTime(qint32 blocks) const;

    void EnableBurnProof(bool enable);
    void SetLogging(bool enable, const QString &path);
    bool WriteDisc();
    bool CreateISOFile(const QString &path);
    bool WriteISOFile(const QString &path);
    void CancelWrite();
    // False at once, with no event, unless a rewritable medium (CD-RW, DVD-RW, DVD+RW,
    // DVD-RAM) is loaded; then EraseDiscStart, and EraseDiscComplete or WriteError.
    bool EraseDisc(bool quick);
    // False at once unless the disc is open; then ClosingSession, ClosingDisc when the disc is
    // closed, and WriteComplete or WriteError. Neither this nor erasing can be cancelled.
    bool FinishDisc(bool closeDisc);

    // For CDNotify: a text that changes whenever the medium in a drive changes (a disc put in,
    // taken out or swapped); empty while the drive holds none.
    QString mediumIdentity(qint32 index) const;
    // For CDNotify: true for a drive that only exists in this program (the Image Recorder).
    bool isVirtualDrive(qint32 index) const;
    // The drive objects, shared with the copier so that the machine is scanned once; owned by
    // this engine. A job on a drive claims it (Recorder::tryClaim) for its length.
    Recorder *recorder(qint32 index) const;

signals:
    // Paths inside the image are written with backslashes ("\dir\sub\name"); "\" alone is
    // the top of the image.
    void ISOItemAdded(const QString &sParentDestPath, const QString &sItemDestPath,
                      const QString &sItemName, const QString &SourceFilePath, bool bIsDirectory,
                      VbDate dteFileDate, qint64 lFileSize);
    void ISOItemRemoved(const QString &sDestinationPath, const QString &sItemName,
                        bool bIsDirectory);
    void ISODestPathChanged(const QString &sOldDestPath, const QString &sNewDestPath,
                            bool bIsDirectory);
    void EnumISOItems(const QString &sParentDestPath, const QString &sItemDestPath,
                      const QString &sItemName, const QString &sSourceFilePath, bool bIsDirectory,
                      VbDate dteFileDate, qint64 lFileSize);
    void ISOImageReset();
    // The handler sets bReplaceFile; the engine reads it when every handler has run.
    void ReplaceImportedISOFile(const QString &sDestPath, const QString &sNewSourcePath,
                                const QString &sFileName, bool &bReplaceFile);
    void EnumAudioTrack(const QString &sFileName, qint32 lTotalSizeBlocks, qint32 lTotalSizeBytes,
                        qint32 lTrackNumber);
    void PreparingToWrite();
    void CachingStatus(qint16 nPercentComplete);
    void ReadingTrackFile(const QString &sFileName, qint32 lFileIndex, qint32 lTrackNumber);
    void ReadingTrackFileError(qint32 TrackFileError, const QString &sFileName,
                               qint32 lTrackNumber);
    void CreatingDirectories();
    void TrackWriteStatus(qint32 lTrackNumber, qint32 lBlocksWritten, qint32 lBlocksToWrite);
    void ClosingTrack(qint32 lTrackNumber);
    void ClosingSession();
    void ClosingDisc();
    void WriteComplete();
    void WriteCancelled();
    void WriteError(qint32 WriteError, qint32 DriveError, const QString &sErrorInfo,
                    const QString &sSenseInfo);
    void EraseDiscStart();
    void EraseDiscComplete();
    // How far a drive that reports its course has blanked the disc, 0 to 100.
    void eraseProgress(qint32 percent);
    // A source file left out of the image (a link that leads nowhere, a named pipe) or taken
    // differently from when it was added (it grew): its path and a sentence to show the user.
    void SourceFileNotice(const QString &sSourceFilePath, const QString &sNotice);
    // The engine moved a tray: CDNotify looks at once instead of at its next poll.
    void trayMoved();
    // ImportLastSession left these files out (destination paths): the directory lists them, but
    // their data lies beyond what the session holds (a write cut short by a failure).
    void importedFilesMissing(const QStringList &destPaths);

private:
    // How the system calls read the disc of a drive (its volume label and serial).
    std::optional<SystemCalls::DiscAccess> discAccess(qint32 index);

    std::unique_ptr<CDWriterProPrivate> d;
};
