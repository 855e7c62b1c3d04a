#include "base/RuntimeError.h"
#include "ripping/EncoderSettingsFiles.h"

#include <cstddef>
#include <cstdint>

namespace {
// Reads the bytes with one reader; a record it keeps must come back the same from its own line.
template<typename Record, typename Read, typename Write>
void roundTrip(const QByteArray &bytes, Read read, Write write) {
    try {
        const Record record = read(bytes);
        if (read(write(record)) != record)
            __builtin_trap();
    } catch (const RuntimeError &) {
        // Not a number, out of range or no whole record: the error the windows trap.
    }
}
} // namespace

// Any bytes as each of the three encoder settings files: reading never faults.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    using namespace EncoderSettingsFiles;
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    roundTrip<VorbisRecord>(bytes, readVorbis, vorbisLine);
    roundTrip<WMARecord>(bytes, readWMA, wmaLine);
    roundTrip<EncoderIniSettings>(bytes, readEncoderIni, [&bytes](const EncoderIniSettings &s) {
        return writeEncoderIni(bytes, s);
    });
    return 0;
}
