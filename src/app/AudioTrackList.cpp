#include "AudioTrackList.h"

namespace {
AudioTrackList *&slot() {
    static AudioTrackList *open = nullptr;
    return open;
}
} // namespace

AudioTrackList::AudioTrackList() {
    slot() = this;
}

AudioTrackList::~AudioTrackList() {
    if (slot() == this)
        slot() = nullptr;
}

AudioTrackList *AudioTrackList::current() {
    return slot();
}
