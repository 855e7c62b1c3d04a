#pragma once

#include "base/Checked.h"

#include <QString>

// The state shared by every window, process-wide, alive until exit. Initial values are the
// language's own (0, False, empty) but where a value means "none".

inline QString gstrINIFile;
inline Long glngDriveIndex = -1;   // engine index of the recorder chosen in cboDevices
inline Long glngCurrentDrive = -1; // engine index of the drive the engine accepted
// Kind of the open job: 99 none, 0 data, 1 audio, 3 an ISO file being written.
inline Integer gblnDisctypeIsData = 0;
inline bool gblnIsTestWrite = false;
inline bool gblnUnloadOk = false;
inline bool gblnCloseWindows = false;
inline CheckedArray<bool, 100> gblnFormExist;
inline Integer gintActiveFileBrowser = 0;
inline Integer gintTracksToWrite = 0;
inline Integer gintCurrentTrackCaching = 0;
inline Long glngTrackBlocksToWrite = 0;
inline Long glngCurrentTrackBlocksToCache = 0;

inline QString gstrVolumeIdentifier;
inline QString gstrVolumeApplicationIdentifier;
inline QString gstrVolumePublisher;
inline QString gstrVolumeSystemIdentifier;
inline QString gstrVolumeSetIdentifier;
inline QString gstrVolumeDataPreparerIdentifier;
inline QString gstrVolumeCopyrightFileIdentifier;
inline QString gstrVolumeAbstractFileIdentifier;
inline QString gstrVolumeBiblioFileIdentifier;

// Puts every global back to its value at start; the tests run many starts in one process.
void ResetDeclarations();
