#pragma once

#include "engine/writer/recorders/Recorder.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

// A kind of blank medium the Image Recorder can load, with its real figures.
struct MediumKind {
    QString name;     // "CD-R 80", the name used in the settings and the descriptor
    qint32 mediaType; // MediaType code
    qint32 capacity;  // user data blocks of the blank medium
    qint32 maxSpeed;  // kB/s
    qint32 speedStep; // kB/s of 1x
    bool rewritable;
    bool cd;
    bool writable; // false for pressed media (DVD-ROM)
};

// The state of one Image Recorder disc, as its descriptor file holds it (format in README.md
// beside this file). Plain data; lives on whichever thread holds it.
class ImageMedium {
public:
    struct Session {
        qint32 start = 0;  // first block of its track
        qint32 blocks = 0; // blocks written in the track
        qint32 mode = 1;   // audio is 0; data is 1 (Mode 1) or 2 (Mode 2 XA)
        bool closed = true;
        // Audio sessions: where each track's audio starts (its index 1), from the session's
        // start on; the 2-second gap before every track but the first lies in the data.
        QList<qint32> trackStarts;
    };

    // CD lead-in/lead-out overhead between the end of a session's track and the next track:
    // 6750 (first lead-out, 1.5 min) or 2250 (later lead-outs, 30 s), then 4500 of lead-in and
    // 150 of pregap.
    static constexpr qint32 FirstSessionGap = 6750 + 4500 + 150;
    static constexpr qint32 LaterSessionGap = 2250 + 4500 + 150;

    // The gap of silence before each audio track (2 seconds): before the first it lies ahead of
    // block 0, before every later one inside the data.
    static constexpr qint32 AudioGap = 150;
    static constexpr qint32 AudioFrameBytes = 2352;
    static constexpr qint32 MaxTracks = 99;

    static const QList<MediumKind> &kinds();
    static const MediumKind *kindByName(const QString &name);

    static ImageMedium blank(const MediumKind &kind, const QString &dataFileName);
    // A plain ISO file put in the tray by hand: a pressed disc with one closed data session.
    static ImageMedium pressed(qint64 imageBytes, const QString &dataFileName);

    // Reads a descriptor; nothing when its bytes don't describe a consistent disc.
    static std::optional<ImageMedium> parse(const QByteArray &text);
    QByteArray serialize() const;

    MediumState state() const;
    qint32 nextWritableAddress() const; // -1 when nothing more can be written
    bool appendable() const;
    bool isAudio() const { return !sessions.isEmpty() && sessions.first().mode == 0; }
    // The cue sheet of an audio disc whose frames lie in `binName` (2352 bytes each, from block
    // 0); empty for any other disc.
    QByteArray cueSheet(const QString &binName) const;

    QString kindName;
    QString dataFile;
    QList<Session> sessions;
    bool finalized = false;

private:
    const MediumKind *kind() const { return kindByName(kindName); }
};
