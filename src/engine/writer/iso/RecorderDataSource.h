#pragma once

#include "IsoLibrary.h"

class Recorder;

// A libisofs data source that reads the blocks of the medium in a recorder. Its reads run on
// whichever thread libisofs uses; the recorder serialises them.
namespace RecorderDataSource {
IsoLibrary::DataSourcePtr create(Recorder &recorder);
}
