#pragma once

#include "OverwriteSessions.h"
#include "engine/writer/recorders/Recorder.h"

#include <QList>

class BurnDrive;
namespace burn {
struct burn_speed_descriptor;
}

// What a grabbed drive says about its medium and about itself, in the engine's codes. Runs on
// whichever thread holds the drive.
namespace BurnMedium {

struct Assessment {
    MediumState state;
    int profile = 0;
    // A medium written at any address, without a table of contents (DVD+RW, DVD-RAM,
    // restricted-overwrite DVD-RW, BD-RE, a file): sessions are laid out as OverwriteSessions.
    bool overwriteable = false;
    QList<OverwriteSessions::Session> sessions; // overwriteable media only
    QList<qint32> speeds;                       // kB/s, fastest first
};

// MediaType of an MMC profile; none loaded 254.
qint32 mediaTypeOf(int profile);
// Profiles written at any address rather than track after track.
bool isOverwriteable(int profile);
// Disc type of the text libburn gives for a CD's disc information.
qint32 discTypeOf(const char *cdDiscType);
// Write speeds in kB/s, fastest first: the loaded medium's own, else the drive's in general.
QList<qint32> writeSpeeds(const burn::burn_speed_descriptor *list, int profile);

Assessment assess(BurnDrive &drive);
// The capability codes of the engine as a bit set (bit n: code n), from the drive's feature
// descriptors and its mode page.
quint64 capabilities(BurnDrive &drive);
// Reads whole 2048-byte blocks.
bool readBlocks(BurnDrive &drive, qint32 lba, qint32 count, char *buffer);

} // namespace BurnMedium
