#include "compilation/WaveChunks.h"

#include <QtCore>
#include <cstddef>
#include <cstdint>

// Any bytes offered to the player: walked without fault, and what it found lies inside them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    WaveChunks wave;
    if (wave.walk(&buffer) != WaveChunks::Result::Ok)
        return 0;
    if (wave.formatBuffer.size() > WaveChunks::FormatBufferSize || wave.dataOffset < 20 ||
        wave.dataOffset + wave.dataLength > qint64(size) || wave.format.nBlockAlign == 0)
        __builtin_trap();
    return 0;
}
