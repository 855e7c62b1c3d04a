#include "DataImageMirror.h"

namespace {
DataImageMirror *&slot() {
    static DataImageMirror *open = nullptr;
    return open;
}
} // namespace

DataImageMirror::DataImageMirror() {
    slot() = this;
}

DataImageMirror::~DataImageMirror() {
    if (slot() == this)
        slot() = nullptr;
}

DataImageMirror *DataImageMirror::current() {
    return slot();
}
