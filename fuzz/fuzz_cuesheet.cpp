#include "engine/copier/CueSheet.h"

#include <cstddef>
#include <cstdint>

// Any bytes as a cue sheet: read without fault, and a sheet it accepts describes tracks of one
// kind, each with sectors that lie inside its file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArray text(reinterpret_cast<const char *>(data), qsizetype(size));
    // Every named file exists and holds 100 frames.
    const CueSheet sheet = CueSheet::parse(text, QStringLiteral("/cue"),
                                           [](const QString &) -> qint64 { return 235200; });
    if (!sheet.ok())
        return 0;
    for (const CueSheet::Track &t : sheet.tracks()) {
        const qint64 sector = t.audio ? 2352 : 2048;
        if (t.audio != sheet.audio() || t.sectors <= 0 || t.offset < 0 ||
            t.offset >= 235200 + sector || sheet.tracks().size() > 99)
            __builtin_trap();
    }
    return 0;
}
