#pragma once

#include "Recorder.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

// Finds the recorders of the machine: the drives libburn finds first, in its order, the Image
// Recorder last. Runs on the UI thread, once at start-up.
class DriveScanner {
public:
    static std::vector<std::unique_ptr<Recorder>> scan();

    // A file that libburn drives like a recorder ("stdio:" drive), listed by the following
    // scans before the Image Recorder. Tests use it; the program never does.
    static void addPseudoDrive(const QString &path);
    static void clearPseudoDrives();

    // What the last scan noticed: drives that exist but can't be used, with the reason. Also
    // written to the log category "tessaly.drives".
    static QStringList lastNotes();
};
