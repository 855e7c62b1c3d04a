// The frame's side of a write: the engine's events from the first preparation to the one
// ending event, shown in the status bar, the write dialog and its animation.
#include "AudioTrackList.h"
#include "WriteDialog.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "base/RuntimeError.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "mdiMain.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "widgets/AnimationControl.h"
#include "widgets/KeyedPanel.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/MessageBoxService.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QMetaObject>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <optional>

namespace {

// A data disc or an ISO file: both write one data track.
bool dataKind() {
    return gblnDisctypeIsData == 0 || gblnDisctypeIsData == 3;
}

// A step of the progress display whose failure must not disturb the write: it is passed over.
template<typename F> void passOver(F &&step) {
    try {
        step();
    } catch (const std::exception &) {
    }
}

void setLabel(QLabel *label, const QString &text) {
    if (label)
        label->setText(text);
}

void enableControl(QWidget *control, bool enabled) {
    if (control)
        control->setEnabled(enabled);
}

} // namespace

void mdiMain::connectWriteEvents() {
    CDWriterPro *cd = Tessaly;
    TRAPPED_CONNECT(cd, &CDWriterPro::PreparingToWrite, mdiMain, Tessaly_PreparingToWrite);
    TRAPPED_CONNECT(cd, &CDWriterPro::CachingStatus, mdiMain, Tessaly_CachingStatus);
    TRAPPED_CONNECT(cd, &CDWriterPro::ReadingTrackFile, mdiMain, Tessaly_ReadingTrackFile);
    connect(cd, &CDWriterPro::ReadingTrackFileError, this,
            [this](qint32 error, const QString &name, qint32 track) {
                ErrorTrap::run("Tessaly_ReadingTrackFileError", "mdiMain",
                               [&] { Tessaly_ReadingTrackFileError(error, name, track); });
            });
    connect(cd, &CDWriterPro::CreatingDirectories, this, [this] {
        ErrorTrap::run("Tessaly_CreatingDirectories", "mdiMain",
                       [this] { Tessaly_CreatingDirectories(); });
    });
    connect(cd, &CDWriterPro::TrackWriteStatus, this,
            [this](qint32 track, qint32 written, qint32 toWrite) {
                ErrorTrap::run("Tessaly_TrackWriteStatus", "mdiMain",
                               [&] { Tessaly_TrackWriteStatus(track, written, toWrite); });
            });
    connect(cd, &CDWriterPro::ClosingTrack, this, [this](qint32 track) {
        ErrorTrap::run("Tessaly_ClosingTrack", "mdiMain", [&] { Tessaly_ClosingTrack(track); });
    });
    connect(cd, &CDWriterPro::ClosingSession, this, [this] {
        ErrorTrap::run("Tessaly_ClosingSession", "mdiMain", [this] { Tessaly_ClosingSession(); });
    });
    connect(cd, &CDWriterPro::ClosingDisc, this, [this] {
        ErrorTrap::run("Tessaly_ClosingDisc", "mdiMain", [this] { Tessaly_ClosingDisc(); });
    });
    connect(cd, &CDWriterPro::WriteComplete, this, [this] {
        ErrorTrap::run("Tessaly_WriteComplete", "mdiMain", [this] { Tessaly_WriteComplete(); });
    });
    connect(cd, &CDWriterPro::WriteCancelled, this, [this] {
        ErrorTrap::run("Tessaly_WriteCancelled", "mdiMain", [this] { Tessaly_WriteCancelled(); });
    });
    connect(cd, &CDWriterPro::WriteError, this,
            [this](qint32 error, qint32 drive, const QString &info, const QString &sense) {
                ErrorTrap::run("Tessaly_WriteError", "mdiMain",
                               [&] { Tessaly_WriteError(error, drive, info, sense); });
            });
}

void mdiMain::ShowWriteAnimation(const QString &name) {
    WriteDialog *burn = WriteDialog::open();
    if (!burn || !burn->aniBurn)
        return;
    const QString file = App::resourcePath(QStringLiteral("Dat/") + name + QStringLiteral(".gif"));
    if (file.isEmpty() || !QFileInfo::exists(file))
        return;
    if (burn->aniBurn->Open(file)) {
        burn->aniBurn->setVisible(true);
        burn->aniBurn->setAutoPlay(true);
    }
}

void mdiMain::Tessaly_PreparingToWrite() {
    WriteDialog *burn = WriteDialog::open();
    if (dataKind())
        gintTracksToWrite = 1;
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" Preparing to Write Disc..."));
    if (burn) {
        setLabel(burn->lblActions, QStringLiteral("Preparing to Write Disc..."));
        burn->prgTotalProgress->setValue(0);
        burn->prgTrackProgress->setValue(0);
    }
    EnableForm(false);
    // Events may have closed the dialog while pending messages ran.
    if ((burn = WriteDialog::open())) {
        burn->EnableFormWrite(false);
        enableControl(burn->cmdCancel, false);
    }
}

void mdiMain::Tessaly_CachingStatus(qint16 nPercentComplete) {
    WriteDialog *burn = WriteDialog::open();
    if (mblnCacheFirst) {
        if (burn)
            enableControl(burn->cmdCancel, false);
        ShowWriteAnimation(gblnDisctypeIsData == 1 ? QStringLiteral("cachaudio")
                                                   : QStringLiteral("cachcd"));
        mblnCacheFirst = false;
    }
    const QString text = (dataKind() ? QStringLiteral("Caching Track... ")
                                     : QStringLiteral("Caching and Processing Track... ")) +
                         Format(nPercentComplete, QStringLiteral("0#")) + QStringLiteral(" %");
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(u' ' + text);
    if (burn)
        setLabel(burn->lblActions, text);
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
    WriteDialog *burn = WriteDialog::open();
    // A percentage that can't be computed leaves its bar as it was.
    std::optional<Integer> intPercentTrackWritten;
    std::optional<Integer> intPercentTotalTracksWritten;
    passOver([&] {
        if (mblnTrackWriteFirst) {
            smartStatusBar->Item(QStringLiteral("CACHING"))->setValue(0);
            ShowWriteAnimation(QStringLiteral("writecd"));
            mblnTrackWriteFirst = false;
        }
    });
    passOver([&] {
        if (lBlocksToWrite == 0)
            throw RuntimeError(11);
        intPercentTrackWritten = CInt(double(lBlocksWritten) / lBlocksToWrite * 100);
    });
    passOver([&] {
        if (!intPercentTrackWritten || gintTracksToWrite == 0)
            throw RuntimeError(11);
        intPercentTotalTracksWritten =
            CInt(((lTrackNumber - 1) + double(*intPercentTrackWritten) / 100) /
                 double(gintTracksToWrite) * 100);
    });
    if (burn) {
        if (intPercentTrackWritten) {
            passOver([&] { burn->prgTrackProgress->setValue(*intPercentTrackWritten); });
            // Caching leaves cancel off: it comes back once a percent of a track has gone out.
            if (*intPercentTrackWritten == 1)
                enableControl(burn->cmdCancel, true);
        }
        if (intPercentTotalTracksWritten)
            passOver([&] { burn->prgTotalProgress->setValue(*intPercentTotalTracksWritten); });
    }
    passOver([&] {
        if (dataKind()) {
            const QString blocks = QString::number(lBlocksWritten) + QStringLiteral(" of ") +
                                   QString::number(lBlocksToWrite);
            smartStatusBar->Item(QStringLiteral("DATA"))
                ->setText(QStringLiteral(" Writing Block: ") + blocks);
            if (burn)
                setLabel(burn->lblActions, QStringLiteral("Writing Block: ") + blocks +
                                               QStringLiteral(" at ") + mstrSpeed);
        } else if (gblnDisctypeIsData == 1) {
            const QString track = Format(lTrackNumber, QStringLiteral("0#"));
            smartStatusBar->Item(QStringLiteral("DATA"))
                ->setText(QStringLiteral(" Writing Track #") + track + QStringLiteral("... "));
            if (burn)
                setLabel(burn->lblActions,
                         QStringLiteral("Writing Track #") + track + QStringLiteral("..."));
        }
    });
}

void mdiMain::Tessaly_ClosingTrack(qint32 lTrackNumber) {
    WriteDialog *burn = WriteDialog::open();
    const QString text = dataKind() ? QStringLiteral("Closing Track...")
                                    : QStringLiteral("Closing Track....#") +
                                          Format(lTrackNumber, QStringLiteral("0#"));
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(u' ' + text);
    if (burn) {
        setLabel(burn->lblActions, text);
        enableControl(burn->cmdCancel, false);
    }
    ShowWriteAnimation(QStringLiteral("closecd"));
}

void mdiMain::Tessaly_ClosingSession() {
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(QStringLiteral(" Closing Session..."));
    if (WriteDialog *burn = WriteDialog::open()) {
        setLabel(burn->lblActions, QStringLiteral("Closing Session..."));
        enableControl(burn->cmdCancel, false);
    }
}

void mdiMain::Tessaly_ClosingDisc() {
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(QStringLiteral(" Closing Disc..."));
    if (WriteDialog *burn = WriteDialog::open()) {
        setLabel(burn->lblActions, QStringLiteral("Closing Disc..."));
        enableControl(burn->cmdCancel, false);
    }
}

void mdiMain::Tessaly_WriteComplete() {
    mblnTrackWriteFirst = true;
    mblnCacheFirst = true;
    ShowWriteAnimation(QStringLiteral("goodcd"));
    WriteDialog *burn = WriteDialog::open();
    smartStatusBar->Item(QStringLiteral("DATA"))->setText(QStringLiteral(" Writing Complete!"));
    if (burn) {
        setLabel(burn->lblActions, QStringLiteral("Writing Complete!"));
        burn->prgTrackProgress->setValue(0);
        burn->prgTotalProgress->setValue(0);
    }
    smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("MEDIA"));
    const QString information = App::ProductName() + QStringLiteral(" - Information");
    if (!Tessaly->TestWrite()) {
        if (burn && burn->chkCloseWin->isChecked()) {
            // The box means what it says: the program ends and the computer goes off.
            burn->Unload();
            gblnCloseWindows = true;
            close();
            SystemCalls::WindowsExit();
            return;
        }
        if (burn)
            burn->tmrBurn->stop();
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
        if (burn) {
            burn->tmrBurn->stop();
            setLabel(burn->lblActions, QStringLiteral("Test write is completed successfully at ") +
                                           mstrSpeed + QStringLiteral("  Ejecting disc..."));
        }
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
        // The dialog stays and now offers the real write.
        if (burn) {
            burn->aniBurn->setAutoPlay(false);
            burn->RefreshForm();
            burn->optWrite->setChecked(true);
        }
    }
    if (gblnDisctypeIsData == 0) {
        RecalcImageSize();
    } else if (gblnDisctypeIsData == 1) {
        if (AudioTrackList *audio = AudioTrackList::current())
            audio->LoadTrackList();
    }
    // The disc is out: the button comes back with the next disc.
    if ((burn = WriteDialog::open()))
        enableControl(burn->cmdWrite, false);
}

void mdiMain::Tessaly_WriteCancelled() {
    mblnTrackWriteFirst = true;
    mblnCacheFirst = true;
    EnableForm(true);
    if (WriteDialog *burn = WriteDialog::open())
        burn->EnableFormWrite(true);
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
    ShowWriteAnimation(QStringLiteral("badcd"));
    QString strError = QStringLiteral("Writing Error: (") + QString::number(WriteError) +
                       QStringLiteral(")   ") + sErrorInfo + QStringLiteral("\r\n");
    if (WriteError == 3)
        strError += GetDriveErrorMessage(DriveError) + QStringLiteral("\r\nError Sense Data: ") +
                    sSenseInfo;
    MsgBox(strError + QStringLiteral("\r\n\r\nEjecting disc..."), vbCritical,
           App::ProductName() + QStringLiteral(" - Critical"));
    Tessaly->MoveTray(false);
    EnableForm(true);
    if (WriteDialog *burn = WriteDialog::open()) {
        burn->EnableFormWrite(true);
        burn->tmrBurn->stop();
        burn->lblTime->clear();
    }
    if (WriteDialog *burn = WriteDialog::open())
        burn->Unload();
    smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" A write error occurred..."));
    smartStatusBar->Item(QStringLiteral("STATUSIMG"))->setImageKey(QStringLiteral("MEDIA"));
}
