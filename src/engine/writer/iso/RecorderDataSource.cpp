#include "RecorderDataSource.h"

#include "engine/writer/recorders/Recorder.h"

#include <cstdlib>

namespace {
int sourceOpen(IsoDataSource *) {
    return ISO_SUCCESS;
}
int sourceClose(IsoDataSource *) {
    return ISO_SUCCESS;
}

int sourceRead(IsoDataSource *src, uint32_t lba, uint8_t *buffer) {
    auto *recorder = static_cast<Recorder *>(src->data);
    if (lba > uint32_t(INT32_MAX))
        return ISO_DATA_SOURCE_FAILURE;
    return recorder->readBlocks(qint32(lba), 1, reinterpret_cast<char *>(buffer))
               ? ISO_SUCCESS
               : ISO_DATA_SOURCE_FAILURE;
}

void sourceFree(IsoDataSource *) {}
} // namespace

IsoLibrary::DataSourcePtr RecorderDataSource::create(Recorder &recorder) {
    // libisofs frees the structure itself with free() when the last reference goes.
    auto *src = static_cast<IsoDataSource *>(calloc(1, sizeof(IsoDataSource)));
    if (!src)
        return nullptr;
    src->version = 0;
    src->refcount = 1;
    src->open = sourceOpen;
    src->close = sourceClose;
    src->read_block = sourceRead;
    src->free_data = sourceFree;
    src->data = &recorder;
    return IsoLibrary::DataSourcePtr(src);
}
