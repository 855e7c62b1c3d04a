#include "DriveScanner.h"

#include "image/ImageRecorder.h"

std::vector<std::unique_ptr<Recorder>> DriveScanner::scan() {
    std::vector<std::unique_ptr<Recorder>> drives;
    // Physical recorders through libburn take their places here, before the Image Recorder,
    // which every machine has and which is always listed last.
    drives.push_back(std::make_unique<ImageRecorder>());
    return drives;
}
