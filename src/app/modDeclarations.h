#pragma once

#include "base/Checked.h"

#include <QString>

// The state shared by every window, process-wide, alive until exit. Initial values are the
// language's own (0, False, empty) but where a value means "none".

inline QString gstrINIFile;
inline Long glngDriveIndex = -1;   // what the drive list points at (engine numbering)
inline Long glngCurrentDrive = -1; // the drive SelectDrive took, -1 when it refused
// What is open: 99 nothing, 0 a data compilation, 1 an audio one, 3 an ISO file to write.
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

// Lets an error report dump these globals by their names.
void RegisterDeclarationsDump();
