#pragma once

#include "Recorder.h"

#include <memory>
#include <vector>

// Finds the recorders of the machine: the physical drives first (none yet), the Image
// Recorder last. Runs on the UI thread, once at start-up.
class DriveScanner {
public:
    static std::vector<std::unique_ptr<Recorder>> scan();

    // Leaves the Image Recorder out of the next scans (on by default), so that a machine
    // without recorders can be seen.
    static void setImageRecorderEnabled(bool enabled);
    static bool imageRecorderEnabled();
};
