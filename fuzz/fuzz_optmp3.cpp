#include "ripping/modMP3Support.h"

#include <cstddef>
#include <cstdint>

// Any bytes as the MP3 tool's options file: reading never faults, and whatever record it keeps
// is written as one line that reads back to the same line.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    MP3Options options;
    modMP3Support::ParseRecords(bytes, options);
    const QByteArray line = modMP3Support::RecordLine(options);
    MP3Options again;
    if (!modMP3Support::ParseRecords(line, again) || modMP3Support::RecordLine(again) != line)
        __builtin_trap();
    return 0;
}
