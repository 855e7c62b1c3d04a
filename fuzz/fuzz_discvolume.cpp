#include "engine/system/DiscVolume.h"

#include <cstddef>
#include <cstdint>

// Any bytes as the volume descriptors of a session: reading them must stay within the bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const QByteArray blocks(reinterpret_cast<const char *>(data), qsizetype(size));
    const DiscVolume volume = DiscVolume::fromDescriptors(blocks);
    if (volume.label.size() > 32)
        __builtin_trap();
    return 0;
}
