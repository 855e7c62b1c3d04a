#include "engine/writer/recorders/image/ImageMedium.h"

#include <cstddef>
#include <cstdint>

// Any bytes as the descriptor of a disc put into the Image Recorder's tray by hand: read
// without fault, and a disc it accepts survives being written out and read again unchanged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArray text(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto medium = ImageMedium::parse(text);
    if (!medium)
        return 0;
    const MediumState state = medium->state();
    medium->cueSheet(QStringLiteral("disc.bin"));
    const QByteArray again = medium->serialize();
    const auto reread = ImageMedium::parse(again);
    if (!reread || reread->serialize() != again || reread->state().freeBlocks != state.freeBlocks)
        __builtin_trap();
    return 0;
}
