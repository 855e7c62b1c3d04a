// The frame's side of a write: the engine's events from the first preparation to the one
// ending event in the status bar, and at the end the box, the eject and the write dialog told.
#include "CompilationWindow.h"
#include "WriteDialog.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "mdiMain.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "widgets/KeyedPanel.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/MessageBoxService.h"

namespace {

// A data disc or an ISO file: both write one data track.
bool dataKind() {
    return gblnDisctypeIsData == 0 || gblnDisctypeIsData == 3;
}

} // namespace

void mdiMain::connectWriteEvents() {
    CDWriterPro *cd = Tessaly;
    TRAPPED_CONNECT(cd, &CDWriterPro::PreparingToWrite, mdiMain, Tessaly_PreparingToWrite);
    TRAPPED_CONNECT(cd, &CDWriterPro::CachingStatus, mdiMain, Tessaly_CachingStatus);
    TRAPPED_CONNECT(cd, &CDWriterPro::ReadingTrackFile, mdiMain, Tessaly_ReadingTrackFile);
    TRAPPED_CONNECT(cd, &CDWriterPro::ReadingTrackFileError, mdiMain,
                    Tessaly_ReadingTrackFileError);
    TRAPPED_CONNECT(cd, &CDWriterPro::CreatingDirectories, mdiMain, Tessaly_CreatingDirectories);
    TRAPPED_CONNECT(cd, &CDWriterPro::TrackWriteStatus, mdiMain, Tessaly_TrackWriteStatus);
    TRAPPED_CONNECT(cd, &CDWriterPro::ClosingTrack, mdiMain, Tessaly_ClosingTrack);
    TRAPPED_CONNECT(cd, &CDWriterPro::ClosingSession, mdiMain, Tessaly_ClosingSession);
    TRAPPED_CONNECT(cd, &CDWriterPro::ClosingDisc, mdiMain, Tessaly_ClosingDisc);
    TRAPPED_CONNECT(cd, &CDWriterPro::WriteComplete, mdiMain, Tessaly_WriteComplete);
    TRAPPED_CONNECT(cd, &CDWriterPro::WriteCancelled, mdiMain, Tessaly_WriteCancelled);
    TRAPPED_CONNECT(cd, &CDWriterPro::WriteError, mdiMain, Tessaly_WriteError);
}

void mdiMain::Tessaly_PreparingToWrite() {
    if (dataKind())
        gintTracksToWrite = 1;
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" Preparing to Write Disc..."));
    EnableForm(false);
}

void mdiMain::Tessaly_CachingStatus(qint16 nPercentComplete) {
    mblnCacheFirst = false;
    const QString text = (dataKind() ? QStringLiteral("Caching Track... ")
                                     : QStringLiteral("Caching and Processing Track... ")) +
                         Format(nPercentComplete, QStringLiteral("0#")) + QStringLiteral(" %");
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(u' ' + text);
    smartStatusBar->Item(QStringLiteral("CACHING"))->setValue(nPercentComplete);
}

void mdiMain::Tessaly_ReadingTrackFile(const QString &sFileName, qint32 lFileIndex,
                                       qint32 lTrackNumber) {
    gintCurrentTrackCaching = CInt(lTrackNumber);
    smartStatusBar->Item(QStringLiteral("FILES"))
        ->setText(QStringLiteral(" Track: ") + Format(lTrackNumber, QStringLiteral("0#")) +
                  QStringLiteral(" - Reading...") + QString::number(lFileIndex) +
                  QStringLiteral(" - ") + sFileName);
}

void mdiMain::Tessaly_ReadingTrackFileError(qint32 TrackFileError, const QString &sFileName,
                                            qint32 lTrackNumber) {
    Q_UNUSED(lTrackNumber);
    const QString strErrorMsg = GetTrackFileErrorMessage(TrackFileError, sFileName);
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" ERROR: ") + strErrorMsg + sFileName);
}

void mdiMain::Tessaly_CreatingDirectories() {
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" Creating Directories..."));
}

void mdiMain::Tessaly_TrackWriteStatus(qint32 lTrackNumber, qint32 lBlocksWritten,
                                       qint32 lBlocksToWrite) {
    if (mblnTrackWriteFirst) {
        smartStatusBar->Item(QStringLiteral("CACHING"))->setValue(0);
        mblnTrackWriteFirst = false;
    }
    if (dataKind()) {
        smartStatusBar->Item(QStringLiteral("DATA"))
            ->setText(QStringLiteral(" Writing Block: ") + QString::number(lBlocksWritten) +
                      QStringLiteral(" of ") + QString::number(lBlocksToWrite));
    } else if (gblnDisctypeIsData == 1) {
        smartStatusBar->Item(QStringLiteral("DATA"))
            ->setText(QStringLiteral(" Writing Track #") +
                      Format(lTrackNumber, QStringLiteral("0#")) + QStringLiteral("... "));
    }
}

void mdiMain::Tessaly_ClosingTrack(qint32 lTrackNumber) {
    const QString text = dataKind() ? QStringLiteral("Closing Track...")
                                    : QStringLiteral("Closing Track....#") +
                                          Format(lTrackNumber, QStringLiteral("0#"));
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(u' ' + text);
}

void mdiMain::Tessaly_ClosingSession() {
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(QStringLiteral(" Closing Session..."));
}

void mdiMain::Tessaly_ClosingDisc() {
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(QStringLiteral(" Closing Disc..."));
}

void mdiMain::Tessaly_WriteComplete() {
    mblnTrackWriteFirst = true;
    mblnCacheFirst = true;
    WriteDialog *burn = WriteDialog::open();
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(QStringLiteral(" Writing Complete!"));
    if (burn)
        burn->writeEnded(QStringLiteral("Writing Complete!"), QStringLiteral("goodcd"));
    smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("MEDIA"));
    restAfterJob();
    const QString information = App::ProductName() + QStringLiteral(" - Information");
    if (!Tessaly->TestWrite()) {
        if (burn && burn->closeWindowsWhenFinished()) {
            // The box means what it says: the program ends and the computer goes off. The job is
            // over, so the windows may go now; the power-off is asked first, so that a refusal
            // leaves the program whole and usable rather than half closed.
            EnableForm(true);
            burn->EnableFormWrite(true);
            if (SystemCalls::WindowsExit()) {
                burn->Unload();
                gblnCloseWindows = true;
                close();
                return;
            }
            burn->Unload();
            smartStatusBar->Item(QStringLiteral("STATUSIMG"))
                ->setImageKey(QStringLiteral("NOMEDIA"));
            MsgBox(QStringLiteral("Burn process completed successfully at ") + mstrSpeed +
                       QStringLiteral(".\r\n\r\nThe computer could not be switched off; "
                                      "Tessaly stays open.\r\n\r\nEjecting disc..."),
                   vbInformation, information);
            Tessaly->MoveTray(false);
            return;
        }
        smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("NOMEDIA"));
        EnableForm(true);
        if ((burn = WriteDialog::open())) {
            burn->EnableFormWrite(true);
            burn->Unload();
        }
        MsgBox(QStringLiteral("Burn process completed successfully at ") + mstrSpeed +
                   QStringLiteral(".\r\n\r\nEjecting disc..."),
               vbInformation, information);
        Tessaly->MoveTray(false);
    } else {
        if (burn)
            burn->writeEnded(QStringLiteral("Test write is completed successfully at ") +
                                 mstrSpeed + QStringLiteral("  Ejecting disc..."),
                             QString());
        gblnIsTestWrite = true;
        Tessaly->MoveTray(false);
        EnableForm(true);
        if ((burn = WriteDialog::open()))
            burn->EnableFormWrite(true);
        if (gblnDisctypeIsData == 3) {
            if (burn)
                burn->Unload();
            MsgBox(QStringLiteral("Test write is completed successfully at ") + mstrSpeed +
                       QStringLiteral("\r\n\r\nEjecting disc..."),
                   vbInformation, information);
            Tessaly->MoveTray(false);
            return;
        }
        if ((burn = WriteDialog::open()))
            burn->offerRealWrite();
    }
    if (gblnDisctypeIsData == 0) {
        RecalcImageSize();
    } else if (gblnDisctypeIsData == 1) {
        if (CompilationWindow *audio = CompilationWindow::current())
            audio->Reload();
    }
}

void mdiMain::restAfterJob() {
    // The progress panels of the job give way to the compilation's own counts.
    smartStatusBar->Item(QStringLiteral("CACHING"))->setValue(0);
    smartStatusBar->Item(QStringLiteral("FILES"))
        ->setText(gblnDisctypeIsData == 0
                      ? QStringLiteral(" Files: ") + QString::number(Tessaly->ISOFileCount())
                      : QStringLiteral(" Files:"));
}

void mdiMain::Tessaly_WriteCancelled() {
    mblnTrackWriteFirst = true;
    mblnCacheFirst = true;
    EnableForm(true);
    restAfterJob();
    if (WriteDialog *burn = WriteDialog::open()) {
        burn->writeEnded(QString(), QString());
        burn->EnableFormWrite(true);
    }
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" Writing Cancelled......"));
    MsgBox(QStringLiteral("Writing Cancelled!"), vbInformation,
           App::ProductName() + QStringLiteral(" - Information"));
    smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("MEDIA"));
    if (WriteDialog *burn = WriteDialog::open())
        burn->Unload();
}

void mdiMain::Tessaly_WriteError(qint32 WriteError, qint32 DriveError, const QString &sErrorInfo,
                                 const QString &sSenseInfo) {
    // The caching flag stays: a retry after a cached failure skips the first-time block.
    mblnTrackWriteFirst = true;
    if (WriteDialog *burn = WriteDialog::open())
        burn->writeEnded(QString(), QStringLiteral("badcd"));
    QString strError = QStringLiteral("Writing Error: (") + QString::number(WriteError) +
                       QStringLiteral(")   ") + sErrorInfo + QStringLiteral("\r\n");
    if (WriteError == 3)
        strError += GetDriveErrorMessage(DriveError) + QStringLiteral("\r\nError Sense Data: ") +
                    sSenseInfo;
    restAfterJob();
    // A disc that left the drive during the write is not ejected again.
    const bool discIn = Tessaly->MediaType() != CDWriterPro::MediaNone;
    if (discIn)
        strError += QStringLiteral("\r\n\r\nEjecting disc...");
    MsgBox(strError, vbCritical, App::ProductName() + QStringLiteral(" - Critical"));
    if (discIn)
        Tessaly->MoveTray(false);
    EnableForm(true);
    if (WriteDialog *burn = WriteDialog::open()) {
        burn->EnableFormWrite(true);
        burn->Unload();
    }
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" A write error occurred..."));
    smartStatusBar->Item(QStringLiteral("STATUSIMG"))
        ->setImageKey(discIn ? QStringLiteral("MEDIA") : QStringLiteral("NOMEDIA"));
}
