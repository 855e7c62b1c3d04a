#include "WaveChunks.h"

#include <QIODevice>
#include <QtEndian>
#include <cstring>

namespace {
quint32 le32(const char *p) {
    return qFromLittleEndian<quint32>(p);
}
quint16 le16(const char *p) {
    return qFromLittleEndian<quint16>(p);
}
} // namespace

bool WaveChunks::find(QIODevice *device, const char *id, qint64 from, qint64 end, qint64 *offset,
                      qint64 *size) const {
    qint64 at = from;
    while (at + 8 <= end) {
        char header[8];
        if (!device->seek(at) || device->read(header, 8) != 8)
            return false;
        const qint64 body = at + 8;
        const qint64 declared = le32(header + 4);
        if (std::memcmp(header, id, 4) == 0) {
            *offset = body;
            *size = qMin(declared, end - body);
            return true;
        }
        // Chunks are padded to an even length.
        at = body + declared + (declared & 1);
    }
    return false;
}

WaveChunks::Result WaveChunks::walk(QIODevice *device) {
    formatBuffer.clear();
    format = Format();
    dataOffset = 0;
    dataLength = 0;
    if (!device || !device->isReadable())
        return Result::NotWave;
    const qint64 fileSize = device->size();
    char head[12];
    if (!device->seek(0) || device->read(head, 12) != 12 || std::memcmp(head, "RIFF", 4) != 0 ||
        std::memcmp(head + 8, "WAVE", 4) != 0)
        return Result::NotWave;
    // The RIFF chunk ends where it says or where the file does, whichever comes first.
    const qint64 end = qMin<qint64>(8 + qint64(le32(head + 4)), fileSize);

    qint64 offset = 0;
    qint64 size = 0;
    if (!find(device, "fmt ", 12, end, &offset, &size))
        return Result::NoFormat;
    const qint64 wanted = qMin<qint64>(size, FormatBufferSize);
    if (!device->seek(offset))
        return Result::FormatUnreadable;
    formatBuffer = device->read(wanted);
    // Without the fields up to the sample size there is nothing to play by.
    if (formatBuffer.size() != wanted || formatBuffer.size() < 16)
        return Result::FormatUnreadable;
    char fields[18] = {};
    std::memcpy(fields, formatBuffer.constData(), qMin<qsizetype>(18, formatBuffer.size()));
    format.wFormatTag = le16(fields);
    format.nChannels = le16(fields + 2);
    format.nSamplesPerSec = le32(fields + 4);
    format.nAvgBytesPerSec = le32(fields + 8);
    format.nBlockAlign = le16(fields + 12);
    format.wBitsPerSample = le16(fields + 14);
    format.cbSize = le16(fields + 16);
    if (format.nChannels == 0 || format.nBlockAlign == 0 || format.nSamplesPerSec == 0)
        return Result::FormatUnreadable;

    if (!find(device, "data", 12, end, &offset, &size))
        return Result::NoData;
    dataOffset = offset;
    dataLength = qMax<qint64>(0, size);
    return Result::Ok;
}
