#pragma once

#include <QtCore>

// Stands in for the sound device while it lives: every device the player opens records the
// buffers it is given. A buffer counts as heard when it is released, by itself at once or by
// the test in `held` mode; a reset hands the unheard ones back unheard. UI thread.
class RecordingWaveOutput {
public:
    RecordingWaveOutput();
    ~RecordingWaveOutput();
    RecordingWaveOutput(const RecordingWaveOutput &) = delete;
    RecordingWaveOutput &operator=(const RecordingWaveOutput &) = delete;
    // Of the open device, in order; how many it released.
    int release(int count = 1);
    bool held = false;    // buffers wait for release()
    QString refusal;      // when set, opening fails with this text
    QByteArray heard;     // the bytes of every released buffer, in order
    QList<qint64> writes; // the length of every buffer written
    int opened = 0;       // devices opened
    int live = 0;         // devices open now
};
