#include "modDeclarations.h"

void ResetDeclarations() {
    gstrINIFile.clear();
    glngDriveIndex = -1;
    glngCurrentDrive = -1;
    gblnDisctypeIsData = 0;
    gblnIsTestWrite = false;
    gblnUnloadOk = false;
    gblnCloseWindows = false;
    gblnFormExist.fill(false);
    gintActiveFileBrowser = 0;
    gintTracksToWrite = 0;
    gintCurrentTrackCaching = 0;
    glngTrackBlocksToWrite = 0;
    glngCurrentTrackBlocksToCache = 0;
    for (QString *s : {&gstrVolumeIdentifier, &gstrVolumeApplicationIdentifier,
                       &gstrVolumePublisher, &gstrVolumeSystemIdentifier, &gstrVolumeSetIdentifier,
                       &gstrVolumeDataPreparerIdentifier, &gstrVolumeCopyrightFileIdentifier,
                       &gstrVolumeAbstractFileIdentifier, &gstrVolumeBiblioFileIdentifier})
        s->clear();
}
