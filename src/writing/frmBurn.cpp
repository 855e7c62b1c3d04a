#include "frmBurn.h"
#include "app/CompilationWindow.h"
#include "app/FormRegistry.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "base/RuntimeError.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/notify/CDNotify.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/AnimationControl.h"
#include "widgets/DefaultInstance.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>
#include <optional>

namespace {

QProgressBar *percentBar(QWidget *parent, const char *name) {
    auto *bar = new QProgressBar(parent);
    bar->setObjectName(QLatin1String(name));
    bar->setRange(0, 100);
    bar->setValue(0);
    return bar;
}

// A step of the progress display whose failure must not disturb the write: it is passed over.
template<typename F> void passOver(F &&step) {
    try {
        step();
    } catch (const std::exception &) {
    }
}

// A data disc or an ISO file: both write one data track.
bool dataKind() {
    return gblnDisctypeIsData == 0 || gblnDisctypeIsData == 3;
}

} // namespace

frmBurn::frmBurn(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr)
    , m_context(context) {
    setObjectName(QStringLiteral("frmBurn"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::ApplicationModal);
    buildControls();
    connectEngine();
    setOpen(this);
    ErrorTrap::run("Form_Load", "frmBurn", [this] { Form_Load(); });
}

frmBurn::~frmBurn() {
    DefaultInstance<frmBurn>::release(this);
    setOpen(nullptr);
}

frmBurn *frmBurn::instance() {
    return DefaultInstance<frmBurn>::peek();
}

void frmBurn::connectEngine() {
    CDWriterPro *cd = m_context.engine;
    if (!cd)
        return;
    TRAPPED_CONNECT(cd, &CDWriterPro::PreparingToWrite, frmBurn, Tessaly_PreparingToWrite);
    TRAPPED_CONNECT(cd, &CDWriterPro::CachingStatus, frmBurn, Tessaly_CachingStatus);
    TRAPPED_CONNECT(cd, &CDWriterPro::TrackWriteStatus, frmBurn, Tessaly_TrackWriteStatus);
    TRAPPED_CONNECT(cd, &CDWriterPro::ClosingTrack, frmBurn, Tessaly_ClosingTrack);
    TRAPPED_CONNECT(cd, &CDWriterPro::ClosingSession, frmBurn, Tessaly_ClosingSession);
    TRAPPED_CONNECT(cd, &CDWriterPro::ClosingDisc, frmBurn, Tessaly_ClosingDisc);
    if (CDNotify *notify = m_context.notify) {
        TRAPPED_CONNECT(notify, &CDNotify::Arrival, frmBurn, CDNotify1_Arrival);
        TRAPPED_CONNECT(notify, &CDNotify::RemoveComplete, frmBurn, CDNotify1_RemoveComplete);
    }
}

void frmBurn::buildControls() {
    auto *options = new QGroupBox(QStringLiteral("Options"), this);
    auto *optionRows = new QVBoxLayout(options);
    const auto box = [&](QCheckBox *&member, const char *name, const char *caption) {
        member = new QCheckBox(QString::fromLatin1(caption), options);
        member->setObjectName(QLatin1String(name));
        optionRows->addWidget(member);
    };
    box(chkFinalizeDisc, "chkFinalizeDisc", "&Finalize Disc (No Further Writing Possible)");
    box(chkUseJoliet, "chkUseJoliet", "&Include Joliet Directories (64 char file names)");
    box(chkCacheImage, "chkCacheImage", "Cac&he Image Before Writing");
    box(chkUseBurnProof, "chkUseBurnProof", "&Use Buffer Protection (Burn Proof, JustLink, etc)");
    box(chkUseMode2XA, "chkUseMode2XA", "&Mode2XA Instead Of Mode1 (CDR/W Only)");
    box(chkLogging, "chkLogging", "&Enable Logging");
    box(chkCloseWin, "chkCloseWin", "Clo&se Windows When Finished");
    chkUseJoliet->setChecked(true);
    chkCacheImage->setChecked(true);

    auto *mode = new QGroupBox(QStringLiteral("Write Mode"), this);
    auto *modeRows = new QVBoxLayout(mode);
    optWrite = new QRadioButton(QStringLiteral("Write &Disc"), mode);
    optWrite->setObjectName(QStringLiteral("optWrite"));
    optTest = new QRadioButton(
        QStringLiteral("Test &Write (Data will not be written to the media)"), mode);
    optTest->setObjectName(QStringLiteral("optTest"));
    modeRows->addWidget(optWrite);
    modeRows->addWidget(optTest);
    optTest->setChecked(true);

    auto *progress = new QGroupBox(QStringLiteral("Progress"), this);
    auto *grid = new QGridLayout(progress);
    aniBurn = new AnimationControl(progress);
    aniBurn->setObjectName(QStringLiteral("aniBurn"));
    aniBurn->setFixedSize(Twips::toPixels(720), Twips::toPixels(720));
    lblActions = new QLabel(progress);
    lblActions->setObjectName(QStringLiteral("lblActions"));
    lblActions->setMinimumWidth(Twips::toPixels(5400));
    lblActions->setWordWrap(true);
    lblTime = new QLabel(progress);
    lblTime->setObjectName(QStringLiteral("lblTime"));
    prgTrackProgress = percentBar(progress, "prgTrackProgress");
    prgTotalProgress = percentBar(progress, "prgTotalProgress");
    prgReadBuffer = percentBar(progress, "prgReadBuffer");
    prgDriveBuffer = percentBar(progress, "prgDriveBuffer");
    // Nothing measures the buffers: an empty bar must not read as an alarming "0%".
    prgReadBuffer->setTextVisible(false);
    prgDriveBuffer->setTextVisible(false);
    grid->addWidget(aniBurn, 0, 0, 2, 1);
    grid->addWidget(lblActions, 0, 1, 1, 2);
    grid->addWidget(lblTime, 1, 1, 1, 2);
    const QList<std::pair<const char *, QProgressBar *>> bars = {
        {"Track:", prgTrackProgress},
        {"Total:", prgTotalProgress},
        {"Read Buffer:", prgReadBuffer},
        {"Drive Buffer:", prgDriveBuffer},
    };
    int row = 2;
    for (const auto &[caption, bar] : bars) {
        grid->addWidget(new QLabel(QString::fromLatin1(caption), progress), row, 0);
        grid->addWidget(bar, row, 1, 1, 2);
        ++row;
    }

    cmdWrite = new QPushButton(QStringLiteral("&Test Write"), this);
    cmdWrite->setObjectName(QStringLiteral("cmdWrite"));
    cmdWrite->setToolTip(QStringLiteral("Start Writing Disc"));
    cmdWrite->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setToolTip(QStringLiteral("Cancel Write Disc"));
    // Nothing to cancel until a write has gone out.
    cmdCancel->setEnabled(false);
    cmdClose = new QPushButton(QStringLiteral("C&lose"), this);
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    cmdClose->setToolTip(QStringLiteral("Close"));
    cmdCloseTray = new QPushButton(QStringLiteral("Close T&ray"), this);
    cmdCloseTray->setObjectName(QStringLiteral("cmdCloseTray"));
    cmdCloseTray->setToolTip(QStringLiteral("Put the disc back into the recorder"));
    cmdCloseTray->setEnabled(false);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdCloseTray);
    buttons->addStretch(1);
    buttons->addWidget(cmdWrite);
    buttons->addWidget(cmdCancel);
    buttons->addWidget(cmdClose);

    auto *top = new QHBoxLayout;
    top->addWidget(options, 1);
    // The two choices sit at the top, not spread over the height of the options.
    auto *modeColumn = new QVBoxLayout;
    modeColumn->addWidget(mode);
    modeColumn->addStretch(1);
    top->addLayout(modeColumn);
    auto *column = new QVBoxLayout(this);
    column->addLayout(top);
    column->addWidget(progress);
    column->addLayout(buttons);

    tmrBurn = new QTimer(this);
    tmrBurn->setObjectName(QStringLiteral("tmrBurn"));
    tmrBurn->setInterval(1000);

    connect(optWrite, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            ErrorTrap::run("optWrite_Click", "frmBurn", [this] { optWrite_Click(); });
    });
    connect(optTest, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            ErrorTrap::run("optTest_Click", "frmBurn", [this] { optTest_Click(); });
    });
    connect(chkLogging, &QCheckBox::toggled, this, [this] {
        ErrorTrap::run("chkLogging_Click", "frmBurn", [this] { chkLogging_Click(); });
    });
    connect(cmdWrite, &QPushButton::clicked, this,
            [this] { ErrorTrap::run("cmdWrite_Click", "frmBurn", [this] { cmdWrite_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdCancel_Click", "frmBurn", [this] { cmdCancel_Click(); });
    });
    connect(cmdClose, &QPushButton::clicked, this,
            [this] { ErrorTrap::run("cmdClose_Click", "frmBurn", [this] { cmdClose_Click(); }); });
    connect(cmdCloseTray, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdCloseTray_Click", "frmBurn", [this] { cmdCloseTray_Click(); });
    });
    connect(tmrBurn, &QTimer::timeout, this,
            [this] { ErrorTrap::run("tmrBurn_Timer", "frmBurn", [this] { tmrBurn_Timer(); }); });
}

void frmBurn::Form_Load() {
    mstrLogFilePath = App::pathOf(QStringLiteral("\\Dat\\Burnlog.txt"));
    mlngStart = Now();
    aniBurn->setAutoPlay(false);
    aniBurn->hide();
    lblTime->clear();
    setWindowTitle(QStringLiteral("Write Disc..."));
    RefreshForm();
}

void frmBurn::RefreshForm() {
    if (gblnDisctypeIsData == 1) {
        chkUseJoliet->setChecked(false);
        chkUseJoliet->setEnabled(false);
        chkFinalizeDisc->setChecked(true);
        chkFinalizeDisc->setEnabled(false);
        chkCacheImage->setEnabled(true);
        chkCacheImage->setText(QStringLiteral("Cach Files Locally"));
        chkUseMode2XA->setEnabled(false);
    }
    // The drive decides: no saved preference for the underrun protection.
    CDWriterPro *cd = m_context.engine;
    const bool burnProof = cd && cd->CurrentDriveCapability(CDWriterPro::CapBurnProof);
    chkUseBurnProof->setEnabled(burnProof);
    chkUseBurnProof->setChecked(burnProof);
}

void frmBurn::optTest_Click() {
    cmdWrite->setText(QStringLiteral("&Test Write"));
    // Shutting down after a test would skip the real write that must follow it.
    chkCloseWin->setEnabled(false);
    gblnIsTestWrite = true;
}

void frmBurn::optWrite_Click() {
    cmdWrite->setText(QStringLiteral("&Write"));
    gblnIsTestWrite = false;
}

void frmBurn::chkLogging_Click() {
    chkLogging->setText(chkLogging->isChecked()
                            ? QStringLiteral("Log CDR/W write to: ") + mstrLogFilePath
                            : QStringLiteral("Enable Logging"));
}

void frmBurn::cmdWrite_Click() {
    CDWriterPro *cd = m_context.engine;
    const QString information = App::ProductName() + QStringLiteral(" - Information");
    if (glngCurrentDrive < 0 || !cd) {
        MsgBox(QStringLiteral("A drive is not selected or does not exist."), vbInformation,
               information);
        return;
    }
    if (gblnDisctypeIsData == 0) {
        if (cd->MediaType() == CDWriterPro::MediaNone) {
            MsgBox(QStringLiteral("Please Insert Writable Media before continuing!"), vbInformation,
                   information);
            return;
        }
        if (cd->LastSessionStatus() == CDWriterPro::SessionIncomplete) {
            MsgBox(OpenSessionMessage(), vbInformation, information);
            return;
        }
        if (cd->LastSessionStatus() == CDWriterPro::SessionClosed) {
            MsgBox(QStringLiteral(
                       "This disc is closed, please insert an empty disc or a multisession disc!"),
                   vbInformation, information);
            return;
        }
    } else if (gblnDisctypeIsData == 1) {
        if (cd->MediaType() == CDWriterPro::MediaNone) {
            MsgBox(QStringLiteral("Please load an empty disc for recording audio."), vbInformation,
                   information);
            return;
        }
        if (cd->DiscStatus() != CDWriterPro::DiscEmpty) {
            MsgBox(QStringLiteral("Please insert an empty disc for recording audio."),
                   vbInformation, information);
            return;
        }
    }
    tmrBurn->start();
    mlngStart = Now();
    if (gblnDisctypeIsData == 0)
        setDataOptions();
    else if (gblnDisctypeIsData == 1)
        setAudioOptions();
    if (!cd->WriteDisc())
        MsgBox(QStringLiteral("Disc Write could not be started."), vbCritical,
               App::ProductName() + QStringLiteral(" - Critical"));
    // Also after a failed start: only closing is left then.
    chkCloseWin->setEnabled(false);
    cmdWrite->setEnabled(false);
}

void frmBurn::setDataOptions() {
    CDWriterPro *cd = m_context.engine;
    cd->setFinalizeDisc(chkFinalizeDisc->isChecked());
    cd->setCloseSession(true);
    cd->setISOFileSystem(chkUseJoliet->isChecked() ? 1 : 0);
    // What the frame's box shows is what goes on the disc, also after this dialog was closed
    // once and emptied the labels.
    const QString shown = m_context.frame ? m_context.frame->volumeIdentifierText() : QString();
    SetVolumeIdentifiers(cd, shown.isEmpty() ? gstrVolumeIdentifier : shown);
    cd->setCacheImage(chkCacheImage->isChecked());
    cd->EnableBurnProof(chkUseBurnProof->isChecked());
    cd->setTrackMode(chkUseMode2XA->isChecked() ? 2 : 1);
    cd->SetLogging(chkLogging->isChecked(), mstrLogFilePath);
    if (optTest->isChecked())
        cd->setTestWrite(true);
    else if (optWrite->isChecked())
        cd->setTestWrite(false);
}

void frmBurn::setAudioOptions() {
    CDWriterPro *cd = m_context.engine;
    cd->setCacheImage(chkCacheImage->isChecked());
    cd->setTrackMode(0);
    if (optTest->isChecked())
        cd->setTestWrite(true);
    else if (optWrite->isChecked())
        cd->setTestWrite(false);
    cd->setFinalizeDisc(true);
    cd->setCloseSession(true);
    cd->EnableBurnProof(chkUseBurnProof->isChecked());
}

void frmBurn::tmrBurn_Timer() {
    mlngElapsed = Now();
    lblTime->setText(Format(mlngElapsed - mlngStart, QStringLiteral("hh:mm:ss")));
    lblTime->repaint();
}

void frmBurn::cmdCancel_Click() {
    if (m_context.frame)
        m_context.frame->setStatusText(QStringLiteral("DATA"),
                                       QStringLiteral(" Aborting Write...Please Wait!"));
    m_context.engine->CancelWrite();
}

void frmBurn::cmdClose_Click() {
    Unload();
}

void frmBurn::cmdCloseTray_Click() {
    if (m_context.frame)
        m_context.frame->runCommand(QStringLiteral("CLOSETRAY"));
}

void frmBurn::Unload() {
    close();
}

void frmBurn::EnableFormWrite(bool blnEnable) {
    for (QWidget *control : std::initializer_list<QWidget *>{
             chkCacheImage, chkFinalizeDisc, chkLogging, chkUseBurnProof, chkUseJoliet, chkCloseWin,
             chkUseMode2XA, cmdClose, cmdWrite, optTest, optWrite})
        control->setEnabled(blnEnable);
    if (blnEnable)
        unsetCursor();
    else
        setCursor(Qt::WaitCursor);
    if (gblnDisctypeIsData == 0 || gblnDisctypeIsData == 1) {
        if (CompilationWindow *compilation = CompilationWindow::current())
            compilation->EnableForm(blnEnable);
    }
    QCoreApplication::processEvents();
}

void frmBurn::followIsoWrite(const IsoWriteChoices &choices) {
    chkUseMode2XA->setChecked(choices.mode2XA);
    chkUseBurnProof->setChecked(choices.burnProof);
    chkFinalizeDisc->setChecked(choices.finalize);
    chkLogging->setChecked(choices.logging);
    (choices.testWrite ? optTest : optWrite)->setChecked(true);
    chkCacheImage->setChecked(false);
    chkUseJoliet->setChecked(false);
    cmdWrite->setEnabled(false);
    chkLogging->setEnabled(false);
    tmrBurn->start();
}

void frmBurn::reject() {
    close();
}

void frmBurn::closeEvent(QCloseEvent *event) {
    int Cancel = 0;
    ErrorTrap::run("Form_Unload", "frmBurn", [&] { Form_Unload(Cancel); });
    if (Cancel != 0) {
        event->ignore();
        return;
    }
    setOpen(nullptr);
    DefaultInstance<frmBurn>::release(this);
    tmrBurn->stop();
    event->accept();
}

void frmBurn::Form_Unload(int &Cancel) {
    // No closing during a write.
    Cancel = gblnUnloadOk ? 0 : 1;
    gstrVolumeIdentifier.clear();
    gstrVolumeApplicationIdentifier.clear();
    gstrVolumePublisher.clear();
    if (gblnDisctypeIsData == 3) {
        if (QWidget *iso = FormRegistry::find(QStringLiteral("frmBurnIso")))
            iso->close();
    }
}

// --- The write as the dialog follows it -----------------------------------------------------

void frmBurn::showAction(const QString &text) {
    lblActions->setText(text);
}

void frmBurn::ShowWriteAnimation(const QString &name) {
    const QString file = App::resourcePath(QStringLiteral("Dat/") + name + QStringLiteral(".gif"));
    if (file.isEmpty() || !QFileInfo::exists(file))
        return;
    if (aniBurn->Open(file)) {
        aniBurn->setVisible(true);
        aniBurn->setAutoPlay(true);
    }
}

void frmBurn::Tessaly_PreparingToWrite() {
    showAction(QStringLiteral("Preparing to Write Disc..."));
    prgTotalProgress->setValue(0);
    prgTrackProgress->setValue(0);
    EnableFormWrite(false);
    cmdCancel->setEnabled(false);
    cmdCloseTray->setEnabled(false);
}

void frmBurn::Tessaly_CachingStatus(qint16 nPercentComplete) {
    if (m_cacheFirst) {
        cmdCancel->setEnabled(false);
        ShowWriteAnimation(gblnDisctypeIsData == 1 ? QStringLiteral("cachaudio")
                                                   : QStringLiteral("cachcd"));
        m_cacheFirst = false;
    }
    showAction((dataKind() ? QStringLiteral("Caching Track... ")
                           : QStringLiteral("Caching and Processing Track... ")) +
               Format(nPercentComplete, QStringLiteral("0#")) + QStringLiteral(" %"));
}

void frmBurn::Tessaly_TrackWriteStatus(qint32 lTrackNumber, qint32 lBlocksWritten,
                                       qint32 lBlocksToWrite) {
    if (m_trackWriteFirst) {
        passOver([&] { ShowWriteAnimation(QStringLiteral("writecd")); });
        m_trackWriteFirst = false;
    }
    // A percentage that can't be computed leaves its bar as it was.
    std::optional<Integer> intPercentTrackWritten;
    std::optional<Integer> intPercentTotalTracksWritten;
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
    if (intPercentTrackWritten) {
        passOver([&] { prgTrackProgress->setValue(*intPercentTrackWritten); });
        // Cancel stays off while caching and returns once one per cent of the track is written.
        if (*intPercentTrackWritten == 1)
            cmdCancel->setEnabled(true);
    }
    if (intPercentTotalTracksWritten)
        passOver([&] { prgTotalProgress->setValue(*intPercentTotalTracksWritten); });
    if (dataKind()) {
        const QString speed = m_context.frame ? m_context.frame->writeSpeedText() : QString();
        showAction(QStringLiteral("Writing Block: ") + QString::number(lBlocksWritten) +
                   QStringLiteral(" of ") + QString::number(lBlocksToWrite) +
                   QStringLiteral(" at ") + speed);
    } else if (gblnDisctypeIsData == 1) {
        showAction(QStringLiteral("Writing Track #") + Format(lTrackNumber, QStringLiteral("0#")) +
                   QStringLiteral("..."));
    }
}

void frmBurn::Tessaly_ClosingTrack(qint32 lTrackNumber) {
    showAction(dataKind() ? QStringLiteral("Closing Track...")
                          : QStringLiteral("Closing Track....#") +
                                Format(lTrackNumber, QStringLiteral("0#")));
    cmdCancel->setEnabled(false);
    ShowWriteAnimation(QStringLiteral("closecd"));
}

void frmBurn::Tessaly_ClosingSession() {
    showAction(QStringLiteral("Closing Session..."));
    cmdCancel->setEnabled(false);
}

void frmBurn::Tessaly_ClosingDisc() {
    showAction(QStringLiteral("Closing Disc..."));
    cmdCancel->setEnabled(false);
}

void frmBurn::CDNotify1_Arrival() {
    cmdWrite->setEnabled(true);
    cmdCloseTray->setEnabled(false);
    showAction(QStringLiteral("Disc inserted ready to write..."));
}

void frmBurn::CDNotify1_RemoveComplete() {
    cmdWrite->setEnabled(false);
    // Not while a job runs: a disc pulled out mid-write ends the job first.
    cmdCloseTray->setEnabled(gblnUnloadOk);
    showAction(QStringLiteral("Please insert the disc again..."));
}

void frmBurn::writeEnded(const QString &action, const QString &animation) {
    tmrBurn->stop();
    cmdCancel->setEnabled(false);
    m_cacheFirst = true;
    m_trackWriteFirst = true;
    if (!animation.isEmpty())
        ShowWriteAnimation(animation);
    if (!action.isEmpty()) {
        showAction(action);
        prgTrackProgress->setValue(0);
        prgTotalProgress->setValue(0);
    }
}

void frmBurn::offerRealWrite() {
    aniBurn->setAutoPlay(false);
    RefreshForm();
    optWrite->setChecked(true);
    // Ejected after the test: writing waits for a disc, and the tray button brings it back.
    const bool discIn = m_context.engine->MediaType() != CDWriterPro::MediaNone;
    cmdWrite->setEnabled(discIn);
    cmdCloseTray->setEnabled(!discIn);
    if (!discIn) {
        showAction(QStringLiteral("Please insert the disc again..."));
        cmdCloseTray->setFocus();
    }
}

bool frmBurn::closeWindowsWhenFinished() const {
    return chkCloseWin->isChecked();
}
