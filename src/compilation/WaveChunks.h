#pragma once

#include <QByteArray>
#include <QtGlobal>

class QIODevice;

// The layout of a RIFF wave file as the player needs it: the raw format chunk, the format's
// first fields and where the samples lie. Every length is bounded by the bytes really present.
// Not thread-bound.
class WaveChunks {
public:
    // The step at which a walk stopped, in the order the walk takes them.
    enum class Result { Ok, NotWave, NoFormat, FormatUnreadable, NoData };

    // The format fields of the chunk's first 18 bytes (missing bytes read as 0).
    struct Format {
        quint16 wFormatTag = 0;
        quint16 nChannels = 0;
        quint32 nSamplesPerSec = 0;
        quint32 nAvgBytesPerSec = 0;
        quint16 nBlockAlign = 0;
        quint16 wBitsPerSample = 0;
        quint16 cbSize = 0;
    };

    // The raw format chunk is kept up to this many bytes.
    static constexpr int FormatBufferSize = 50;

    // Walks the chunks of a device open for reading, from its start. Chunks may come in any
    // order inside the RIFF chunk; unknown ones are stepped over.
    Result walk(QIODevice *device);

    QByteArray formatBuffer; // at most FormatBufferSize bytes
    Format format;
    qint64 dataOffset = 0; // of the first sample, from the start of the file
    qint64 dataLength = 0; // declared data size, cut to the bytes present

private:
    // The body of the first chunk of `id` between `from` and `end`: its offset and size (cut to
    // `end`). False when there is none.
    bool find(QIODevice *device, const char *id, qint64 from, qint64 end, qint64 *offset,
              qint64 *size) const;
};
