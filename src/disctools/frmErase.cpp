#include "frmErase.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/AnimationControl.h"
#include "widgets/DefaultInstance.h"
#include "widgets/MessageBoxService.h"
#include "widgets/NamedWidget.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// The rewritable media and the capability their erase needs of the recorder.
struct Rewritable {
    qint32 mediaType;
    qint32 capability;
};
constexpr Rewritable RewritableMedia[] = {
    {CDWriterPro::MediaCDRW, CDWriterPro::CapWritesCDRW},
    {CDWriterPro::MediaDVDRW, CDWriterPro::CapWritesDVDRW},
    {CDWriterPro::MediaDVDRAM, CDWriterPro::CapWritesDVDRAM},
    {CDWriterPro::MediaDVDPlusRW, CDWriterPro::CapWritesDVDPlusRW},
};

QString information() {
    return App::Title() + QStringLiteral(" - Information");
}
QString critical() {
    return App::ProductName() + QStringLiteral(" - Critical");
}

} // namespace

frmErase::frmErase(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr)
    , m_context(context) {
    setObjectName(QStringLiteral("frmErase"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::ApplicationModal);
    buildControls();
    ErrorTrap::run("Form_Load", "frmErase", [this] { Form_Load(); });
}

frmErase::~frmErase() {
    DefaultInstance<frmErase>::release(this);
}

void frmErase::buildControls() {
    auto *column = new QVBoxLayout(this);
    lblWarning = named(new QLabel(QStringLiteral("WARNING !!! All the contents of the CD-RW "
                                                 "currently in the selected CD-Recorder will be "
                                                 "erased."),
                                  this),
                       "lblWarning");
    lblWarning->setWordWrap(true);
    lblWarning->setStyleSheet(QStringLiteral("color: #b00000; font-weight: bold;"));
    column->addWidget(lblWarning);

    auto *options = new QGroupBox(this);
    auto *optionRow = new QHBoxLayout(options);
    optQuickErase =
        named(new QRadioButton(QStringLiteral("&Quick Erase"), options), "optQuickErase");
    optQuickErase->setToolTip(QStringLiteral("Use Quick Erase"));
    optFullErase = named(new QRadioButton(QStringLiteral("&Full Erase"), options), "optFullErase");
    optFullErase->setToolTip(QStringLiteral("Use Full Erase"));
    optQuickErase->setChecked(true);
    aniErase = named(new AnimationControl(options), "aniErase");
    aniErase->setFixedSize(48, 48);
    optionRow->addWidget(optQuickErase);
    optionRow->addWidget(optFullErase);
    optionRow->addStretch();
    optionRow->addWidget(aniErase);
    column->addWidget(options);

    lblEraseMsg = named(
        new QLabel(QStringLiteral(
                       "NOTE: If not performing a quick erase, it could take several minutes to "
                       "completely erase the disc. This operation cannot be cancelled. A quick "
                       "erase will erase the table of contents, but not the actual data. Most "
                       "users prefer the Quick Erase option. Howerver, to ensure the entire CD "
                       "is erased, click Full Erase."),
                   this),
        "lblEraseMsg");
    lblEraseMsg->setWordWrap(true);
    column->addWidget(lblEraseMsg);
    lblEstTime =
        named(new QLabel(QStringLiteral("For full erase the time listed below, is an approximation "
                                        "and may take as long as 10 minutes longer than appears on "
                                        "the progress bar below. Calculate 25 - 45 minutes for a "
                                        "full erase."),
                         this),
              "lblEstTime");
    lblEstTime->setWordWrap(true);
    column->addWidget(lblEstTime);
    lblEstTimeRemain =
        named(new QLabel(QStringLiteral("Estimated Time Remaining:"), this), "lblEstTimeRemain");
    column->addWidget(lblEstTimeRemain);
    prgEstTime = named(new QProgressBar(this), "prgEstTime");
    prgEstTime->setAlignment(Qt::AlignCenter);
    column->addWidget(prgEstTime);
    lblTime = named(new QLabel(this), "lblTime");
    column->addWidget(lblTime);

    auto *buttons = new QHBoxLayout;
    cmdErase = named(new QPushButton(QStringLiteral("&Erase"), this), "cmdErase");
    cmdErase->setToolTip(QStringLiteral("Start Erasing CD"));
    cmdCancel = named(new QPushButton(QStringLiteral("&Cancel"), this), "cmdCancel");
    cmdCancel->setToolTip(QStringLiteral("Cancel Erase"));
    buttons->addStretch();
    buttons->addWidget(cmdErase);
    buttons->addWidget(cmdCancel);
    column->addLayout(buttons);
    // Parts of the dialog come and go during an erase; its size stays what it was at first.
    column->setSizeConstraint(QLayout::SetNoConstraint);
    setMinimumWidth(460);
    resize(460, sizeHint().height());

    tmrErase = new QTimer(this);
    tmrErase->setInterval(1000);
    TRAPPED_CONNECT(cmdErase, &QPushButton::clicked, frmErase, cmdErase_Click);
    TRAPPED_CONNECT(cmdCancel, &QPushButton::clicked, frmErase, cmdCancel_Click);
    TRAPPED_CONNECT(tmrErase, &QTimer::timeout, frmErase, tmrErase_Timer);
}

void frmErase::Form_Load() {
    prgEstTime->setValue(0);
    prgEstTime->hide();
    lblTime->clear();
    lblEstTime->hide();
    lblEstTimeRemain->hide();
    CDWriterPro *cd = m_context.engine;
    setWindowTitle(
        QStringLiteral("Erase CD-RW - ") +
        (cd ? cd->DriveVendor(glngDriveIndex) + cd->DriveProduct(glngDriveIndex) : QString()));
}

void frmErase::ShowErase(CDWriterPro *objCDR) {
    mobjCDRPro = objCDR;
    if (objCDR) {
        TRAPPED_CONNECT(objCDR, &CDWriterPro::EraseDiscStart, frmErase, mobjCDRPro_EraseDiscStart);
        TRAPPED_CONNECT(objCDR, &CDWriterPro::EraseDiscComplete, frmErase,
                        mobjCDRPro_EraseDiscComplete);
        TRAPPED_CONNECT(objCDR, &CDWriterPro::WriteError, frmErase, mobjCDRPro_WriteError);
        TRAPPED_CONNECT(objCDR, &CDWriterPro::eraseProgress, frmErase, mobjCDRPro_eraseProgress);
    }
    setControlsEnabled(true);
    show();
}

void frmErase::setControlsEnabled(bool enabled) {
    for (QWidget *w : {static_cast<QWidget *>(cmdCancel), static_cast<QWidget *>(cmdErase),
                       static_cast<QWidget *>(optQuickErase), static_cast<QWidget *>(optFullErase)})
        w->setEnabled(enabled);
}

void frmErase::cmdErase_Click() {
    CDWriterPro *cd = mobjCDRPro;
    if (!cd)
        return;
    const qint32 media = cd->MediaType();
    mlngStart = Now();
    const qint32 lngTotalTime = CLng(GetTotalSpace(cd, 3));
    if (media == CDWriterPro::MediaNone) {
        MsgBox(QStringLiteral("No Media Loaded."), vbInformation, information());
        close();
        return;
    }
    const Rewritable *row = nullptr;
    for (const Rewritable &r : RewritableMedia)
        row = r.mediaType == media ? &r : row;
    if (!row) {
        MsgBox(QStringLiteral("The current media is not Re-Writable."), vbInformation,
               information());
        close();
        return;
    }
    const bool bCanErase = cd->CurrentDriveCapability(row->capability);
    if (!bCanErase) {
        MsgBox(QStringLiteral("Selected drive does not support Re-Writable discs of this format."),
               vbInformation, information());
        close();
        return;
    }
    const bool quick = optQuickErase->isChecked();
    if (!cd->EraseDisc(quick)) {
        MsgBox(QStringLiteral("Error Erasing Disc!!!"), vbCritical, critical());
        close();
        return;
    }
    if (quick) {
        prgEstTime->setMaximum(65);
    } else {
        mintCounter = 0;
        // Seconds per megabyte, measured: a larger disc goes faster per megabyte.
        prgEstTime->setMaximum(CInt(lngTotalTime * (lngTotalTime <= 400 ? 2.24 : 1.91)));
    }
    mintTimeSeconds = qint16(prgEstTime->maximum());
    prgEstTime->show();
    lblEstTime->show();
    lblEstTimeRemain->show();
    tmrErase->start();
}

void frmErase::tmrErase_Timer() {
    if (!mblnRealProgress) {
        // The estimate runs short at times: the bar then stays full while the erase goes on.
        prgEstTime->setValue(qMin<int>(mintCounter, prgEstTime->maximum()));
        mintCounter = qint16(mintCounter + 1);
        prgEstTime->setFormat(TwoDigits(mintTimeSeconds / 3600) + u':' +
                              TwoDigits(mintTimeSeconds / 60) + u':' +
                              TwoDigits(mintTimeSeconds % 60));
        if (mintTimeSeconds > 0)
            --mintTimeSeconds;
    }
    mlngElapsed = Now();
    lblTime->setText(QStringLiteral("Time Elapsed (hh:mm:ss): ") +
                     Format(mlngElapsed - mlngStart, QStringLiteral("hh:mm:ss")));
    lblTime->repaint();
}

void frmErase::mobjCDRPro_eraseProgress(qint32 percent) {
    if (!mblnErasing)
        return;
    if (!mblnRealProgress) {
        mblnRealProgress = true;
        lblEstTimeRemain->setText(QStringLiteral("Erased so far:"));
        prgEstTime->setMaximum(100);
    }
    prgEstTime->setValue(percent);
    prgEstTime->setFormat(QStringLiteral("%p %"));
}

void frmErase::mobjCDRPro_EraseDiscStart() {
    mblnErasing = true;
    const QString animation = App::pathOf(QStringLiteral("/Dat/erasecd.avi"));
    if (SystemCalls::FileExists(animation)) {
        aniErase->setAutoPlay(true);
        aniErase->Open(animation);
    }
    if (FrameServices *frame = m_context.frame) {
        frame->EnableForm(false);
        frame->setStatusPicture(QStringLiteral("STATUSIMG"), QStringLiteral("WORKING"));
        frame->setStatusText(QStringLiteral("DATA"), QStringLiteral(" Erasing disc..."));
    }
    setControlsEnabled(false);
    setCursor(Qt::WaitCursor);
}

void frmErase::mobjCDRPro_EraseDiscComplete() {
    aniErase->setAutoPlay(false);
    aniErase->Stop();
    prgEstTime->hide();
    unsetCursor();
    setControlsEnabled(true);
    mblnErasing = false;
    tmrErase->stop();
    FrameServices *frame = m_context.frame;
    if (frame) {
        frame->EnableForm(true);
        frame->setStatusPicture(QStringLiteral("STATUSIMG"), QStringLiteral("MEDIA"));
        frame->setStatusText(QStringLiteral("DATA"), QStringLiteral(" Erasing complete"));
    }
    // The dialog is gone before the box; the engine is the frame's and outlives it.
    CDWriterPro *engine = m_context.engine ? m_context.engine : mobjCDRPro.data();
    close();
    MsgBox(QStringLiteral("Erase completed successfully!\r\n\r\nEjecting disc..."), vbInformation,
           App::ProductName() + QStringLiteral(" - Information"));
    if (engine)
        engine->MoveTray(false);
}

void frmErase::mobjCDRPro_WriteError(qint32 WriteError, qint32 DriveError,
                                     const QString &sErrorInfo, const QString &sSenseInfo) {
    if (!mblnErasing)
        return;
    const QString strError = WriteErrorText(WriteError, DriveError, sErrorInfo, sSenseInfo);
    MsgBox(strError, vbCritical, critical());
    cmdCancel->setEnabled(true);
    unsetCursor();
    lblEstTime->hide();
    lblEstTimeRemain->hide();
    tmrErase->stop();
    prgEstTime->hide();
    mblnErasing = false;
}

void frmErase::cmdCancel_Click() {
    close();
}

void frmErase::reject() {
    close();
}

void frmErase::closeEvent(QCloseEvent *event) {
    // An erase can't be stopped, so the dialog stays until it ends.
    if (mblnErasing) {
        event->ignore();
        return;
    }
    tmrErase->stop();
    DefaultInstance<frmErase>::release(this);
    event->accept();
}
