#include "modDeclarations.h"
#include "diagnostics/vbwDump.h"

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

void RegisterDeclarationsDump() {
    vbwRegisterGlobals(QStringLiteral("modDeclarations"), [] {
        vbwReportVariable(QStringLiteral("gstrINIFile"), gstrINIFile);
        vbwReportVariable(QStringLiteral("glngDriveIndex"), glngDriveIndex);
        vbwReportVariable(QStringLiteral("glngCurrentDrive"), glngCurrentDrive);
        vbwReportVariable(QStringLiteral("gblnDisctypeIsData"), gblnDisctypeIsData);
        vbwReportVariable(QStringLiteral("gblnIsTestWrite"), gblnIsTestWrite);
        vbwReportVariable(QStringLiteral("gblnUnloadOk"), gblnUnloadOk);
        vbwReportVariable(QStringLiteral("gblnCloseWindows"), gblnCloseWindows);
        vbwReportVariable(QStringLiteral("gblnFormExist"), gblnFormExist);
        vbwReportVariable(QStringLiteral("gintActiveFileBrowser"), gintActiveFileBrowser);
        vbwReportVariable(QStringLiteral("gintTracksToWrite"), gintTracksToWrite);
        vbwReportVariable(QStringLiteral("gintCurrentTrackCaching"), gintCurrentTrackCaching);
        vbwReportVariable(QStringLiteral("glngTrackBlocksToWrite"), glngTrackBlocksToWrite);
        vbwReportVariable(QStringLiteral("glngCurrentTrackBlocksToCache"),
                          glngCurrentTrackBlocksToCache);
        const std::pair<const char *, const QString *> volumes[] = {
            {"gstrVolumeIdentifier", &gstrVolumeIdentifier},
            {"gstrVolumeApplicationIdentifier", &gstrVolumeApplicationIdentifier},
            {"gstrVolumePublisher", &gstrVolumePublisher},
            {"gstrVolumeSystemIdentifier", &gstrVolumeSystemIdentifier},
            {"gstrVolumeSetIdentifier", &gstrVolumeSetIdentifier},
            {"gstrVolumeDataPreparerIdentifier", &gstrVolumeDataPreparerIdentifier},
            {"gstrVolumeCopyrightFileIdentifier", &gstrVolumeCopyrightFileIdentifier},
            {"gstrVolumeAbstractFileIdentifier", &gstrVolumeAbstractFileIdentifier},
            {"gstrVolumeBiblioFileIdentifier", &gstrVolumeBiblioFileIdentifier},
        };
        for (const auto &[name, value] : volumes)
            vbwReportVariable(QString::fromLatin1(name), *value);
    });
}
