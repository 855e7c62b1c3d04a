#pragma once

#include "CdioHandles.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

// A drive the ripper reads from: a CD drive of the system, or the Image Recorder's tray.
struct RipDrive {
    QString letter;
    QString vendor;
    QString product;
    QString device; // the device node; empty for the Image Recorder
    bool image() const { return device.isEmpty(); }
};

// One track of a disc's table of contents, in frames of 2352 bytes from the disc's start.
struct RipTrack {
    qint32 start = 0;
    qint32 length = 0;
    bool audio = true;
    bool copyPermitted = true;
};

struct RipToc {
    QList<RipTrack> tracks;
    qint32 totalFrames = 0;
};

// An audio disc opened for reading: libcdio's handle and paranoia's drive on it. The drive is
// declared last so that it is closed before the handle it reads through.
struct OpenedDisc {
    CdioPtr cdio;
    CddaPtr cdda;
};

// Finds the drives and reads their discs. Stateless; safe on any thread.
class RipDrives {
public:
    // Every CD drive of the system that can be opened for reading, then the Image Recorder.
    // A drive that can't be opened is left out and named with the reason in `refused`.
    static QList<RipDrive> scan(QStringList *refused);
    // Whether a disc lies in the drive. May take as long as the drive needs to answer.
    static bool discPresent(const RipDrive &drive);
    static std::optional<RipToc> readToc(const RipDrive &drive);
    // Opens the audio of the disc for paranoia; nothing when there is no audio disc.
    static std::unique_ptr<OpenedDisc> openAudio(const RipDrive &drive);
    // The drive's highest read speed as a factor of 1x; 0 when the drive doesn't say.
    static qint16 maxReadSpeed(const RipDrive &drive);
    // What libcdio reads for the Image Recorder's disc: its cue sheet, or an empty text.
    static QString imageCueSheet();
};
