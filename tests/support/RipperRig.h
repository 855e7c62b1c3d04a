#pragma once

#include "EngineRig.h"

#include "engine/ripper/CDRipperX.h"
#include "engine/ripper/WaveEncoder.h"

#include <QtCore>

#include <atomic>
#include <memory>

// A three-track audio disc (4.5 s, 7 s and an odd length) written by the writer onto the Image
// Recorder and left in its tray, and a ripper on that drive. Every ripper event is kept as a
// line of `events` in the order it came. Lives on the test's thread.
struct RipperRig {
    RipperRig();
    QString cue() const;
    bool waitForEnd();
    bool waitForStatus(qint32 status);
    EngineRig writer;
    QList<QByteArray> pcm; // each track's audio as written
    std::unique_ptr<CDRipperX> ripper;
    QStringList events;
    QList<qint32> statuses; // every ExtractionStatus code but progress
};

// Waves as the ripper writes them, but a write into the file named `holdIn` waits until
// `cancelled` is set: reading runs ahead of the file in work, so only the encoder knows where
// the job is. Used on the job's encoding thread.
struct HoldingEncoder : WaveEncoder {
    QString holdIn, current;
    std::atomic<bool> cancelled = false;
    bool open(const QString &path) override;
    bool write(const char *pcm, qint64 bytes) override;
};

// Empty when the file has no data chunk.
QByteArray wavePcm(const QString &path);
