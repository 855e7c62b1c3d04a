#include "DriveScanner.h"

#include "image/ImageRecorder.h"

namespace {
bool s_imageRecorderEnabled = true;
} // namespace

std::vector<std::unique_ptr<Recorder>> DriveScanner::scan() {
    std::vector<std::unique_ptr<Recorder>> drives;
    // Physical recorders through libburn take their places here, before the Image Recorder,
    // which every machine has and which is always listed last.
    if (s_imageRecorderEnabled)
        drives.push_back(std::make_unique<ImageRecorder>());
    return drives;
}

void DriveScanner::setImageRecorderEnabled(bool enabled) {
    s_imageRecorderEnabled = enabled;
}

bool DriveScanner::imageRecorderEnabled() {
    return s_imageRecorderEnabled;
}
