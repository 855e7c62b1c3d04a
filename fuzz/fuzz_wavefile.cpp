#include "engine/writer/audio/WaveFile.h"

#include <QtCore>
#include <cstddef>
#include <cstdint>

// Any bytes offered as a track: judged without fault, and an accepted file reads to its end.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    WaveFile wave;
    if (wave.open(&buffer) != WaveFile::Status::Ok)
        return 0;
    char frames[4096 * 4];
    qint64 total = 0;
    for (qint64 n; (n = wave.readFrames(frames, 4096)) > 0;)
        total += n;
    if (total != wave.frames() && !wave.failed())
        __builtin_trap();
    return 0;
}
