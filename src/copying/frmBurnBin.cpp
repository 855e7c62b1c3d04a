#include "frmBurnBin.h"

#include "modCD2CD.h"

#include "base/App.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/copier/CD2CD.h"
#include "widgets/DefaultInstance.h"
#include "widgets/FileBoxService.h"
#include "widgets/MessageBoxService.h"
#include "widgets/NamedWidget.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int PollMs = 250;
}

frmBurnBin::frmBurnBin(const WindowContext &context) {
    setObjectName(QStringLiteral("frmBurnBin"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Write Disc from CUE Sheet"));
    CD2CDX = new CD2CD(context.engine, this);
    auto *grid = new QGridLayout(this);
    cboDrives = named(new QComboBox(this), "cboDrives");
    cboSpeed = named(new QComboBox(this), "cboSpeed");
    grid->addWidget(cboDrives, 0, 0, 1, 3);
    grid->addWidget(cboSpeed, 0, 3);
    optTestRecord[0] =
        named(new QRadioButton(QStringLiteral("Write Disc"), this), "optTestRecord0");
    optTestRecord[1] =
        named(new QRadioButton(QStringLiteral("Test Write Disc"), this), "optTestRecord1");
    grid->addWidget(optTestRecord[0], 1, 0);
    grid->addWidget(optTestRecord[1], 1, 1);
    txtOpenFile = named(new QLineEdit(this), "txtOpenFile");
    cmdOpen = named(new QPushButton(QStringLiteral("..."), this), "cmdOpen");
    cmdOpen->setFixedWidth(32);
    grid->addWidget(txtOpenFile, 2, 0, 1, 3);
    grid->addWidget(cmdOpen, 2, 3);
    cmdBurn = named(new QPushButton(QStringLiteral("Burn"), this), "cmdBurn");
    cmdAbort = named(new QPushButton(QStringLiteral("Abort"), this), "cmdAbort");
    cmdEject = named(new QPushButton(QStringLiteral("Eject Drive"), this), "cmdEject");
    cmdCloseDrive = named(new QPushButton(QStringLiteral("Close Drive"), this), "cmdCloseDrive");
    cmdIsDiscBlank = named(new QPushButton(QStringLiteral("IsDiscBlank"), this), "cmdIsDiscBlank");
    cmdLock = named(new QPushButton(QStringLiteral("Lock Drive"), this), "cmdLock");
    cmdUnlock = named(new QPushButton(QStringLiteral("Unlock Drive"), this), "cmdUnlock");
    int at = 0;
    for (QPushButton *b :
         {cmdBurn, cmdAbort, cmdEject, cmdCloseDrive, cmdIsDiscBlank, cmdLock, cmdUnlock}) {
        grid->addWidget(b, 3 + at / 4, at % 4);
        ++at;
    }
    lblInfo = named(new QLabel(this), "lblInfo");
    grid->addWidget(lblInfo, 5, 0, 1, 4);
    grid->addWidget(new QLabel(QStringLiteral("Status:"), this), 6, 0);
    lblStatus = named(new QLabel(QStringLiteral("Idle"), this), "lblStatus");
    grid->addWidget(lblStatus, 6, 1, 1, 3);
    grid->addWidget(new QLabel(QStringLiteral("Current Sector:"), this), 7, 0);
    lblCurSector = named(new QLabel(this), "lblCurSector");
    lblTotSector = named(new QLabel(this), "lblTotSector");
    grid->addWidget(lblCurSector, 7, 1);
    grid->addWidget(lblTotSector, 7, 2);
    grid->setRowStretch(8, 1);
    Timer1 = new QTimer(this);
    Timer1->setInterval(PollMs);
    optTestRecord[0]->setChecked(true);
    setMinimumWidth(520);

    TRAPPED_CONNECT(CD2CDX, &CD2CD::JobComplete, frmBurnBin, CD2CDX_JobComplete);
    TRAPPED_CONNECT(CD2CDX, &CD2CD::JobFailed, frmBurnBin, CD2CDX_JobFailed);
    TRAPPED_CONNECT(Timer1, &QTimer::timeout, frmBurnBin, Timer1_Timer);
    TRAPPED_CONNECT(cboSpeed, &QComboBox::currentIndexChanged, frmBurnBin, cboSpeed_Click);
    TRAPPED_CONNECT(cmdOpen, &QPushButton::clicked, frmBurnBin, cmdOpen_Click);
    TRAPPED_CONNECT(cmdBurn, &QPushButton::clicked, frmBurnBin, cmdBurn_Click);
    TRAPPED_CONNECT(cmdAbort, &QPushButton::clicked, frmBurnBin, cmdAbort_Click);
    TRAPPED_CONNECT(cmdEject, &QPushButton::clicked, frmBurnBin, cmdEject_Click);
    TRAPPED_CONNECT(cmdCloseDrive, &QPushButton::clicked, frmBurnBin, cmdCloseDrive_Click);
    TRAPPED_CONNECT(cmdIsDiscBlank, &QPushButton::clicked, frmBurnBin, cmdIsDiscBlank_Click);
    TRAPPED_CONNECT(cmdLock, &QPushButton::clicked, frmBurnBin, cmdLock_Click);
    TRAPPED_CONNECT(cmdUnlock, &QPushButton::clicked, frmBurnBin, cmdUnlock_Click);
}

frmBurnBin::~frmBurnBin() {
    DefaultInstance<frmBurnBin>::release(this);
}

void frmBurnBin::closeEvent(QCloseEvent *event) {
    DefaultInstance<frmBurnBin>::release(this);
    QWidget::closeEvent(event);
}

qint32 frmBurnBin::selectedAddress() const {
    return cboDrives->currentIndex() >= 0 ? cboDrives->currentData().toInt() : -1;
}

void frmBurnBin::Form_Load() {
    modCD2CD::FillDrives(*CD2CDX, cboDrives);
    if (cboDrives->count() > 0)
        cboDrives->setCurrentIndex(0);
    cboDrives_Click();
    TRAPPED_CONNECT(cboDrives, &QComboBox::currentIndexChanged, frmBurnBin, cboDrives_Click);
}

void frmBurnBin::cboDrives_Click() {
    CD2CDX->SelectDevice(selectedAddress());
    modCD2CD::PopulateSpeedBin(cboSpeed, *CD2CDX);
    if (cboSpeed->count() > 0)
        cboSpeed->setCurrentIndex(0);
}

void frmBurnBin::cmdOpen_Click() {
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Open;
    request.filter = QStringLiteral("Cue File|*.cue");
    const QString name = FileBoxService::ask(request).value_or(QString());
    if (!name.isEmpty())
        txtOpenFile->setText(name);
}

void frmBurnBin::cboSpeed_Click() {
    if (cboSpeed->currentIndex() >= 0) {
        SpeedSelected = qint16(cboSpeed->currentIndex());
        CD2CDX->setSpeedCode(modCD2CD::SpeedCodeOfIndex(cboSpeed->currentIndex()));
    }
}

void frmBurnBin::cmdIsDiscBlank_Click() {
    Burnable = false;
    sReply.clear();
    lReply = CD2CDX->DiscState(selectedAddress());
    if (lReply != CD2CD::StateBlank) {
        lblInfo->setText(QStringLiteral("The Disc Is Not Blank!"));
        return;
    }
    lblInfo->setText(QStringLiteral("The Disc Is Blank"));
    Burnable = true;
}

void frmBurnBin::cmdBurn_Click() {
    cmdIsDiscBlank_Click();
    if (!Burnable) {
        MsgBox(QStringLiteral("The Disc Is Not Blank. Please Replace The Disc With A New Blank "
                              "Disc and Try Again. ;)"),
               vbCritical, QStringLiteral("Disc Detected Is Not Blank - Replace With Blank Disc "));
        return;
    }
    cmdLock_Click();
    const qint32 test = optTestRecord[1]->isChecked() ? 1 : 0;
    Timer1->start();
    lReply = CD2CDX->SubmitAudioJob(selectedAddress(), txtOpenFile->text(), CD2CDX->SpeedCode(),
                                    test, qintptr(winId()));
    lblStatus->setText(QStringLiteral("Burning Intro.."));
    if (lReply >= 0)
        return;
    // Nothing started: the tray is free again and the reason is shown with the number.
    Timer1->stop();
    cmdUnlock_Click();
    lblStatus->setText(QStringLiteral("Idle"));
    lblInfo->setText(CD2CDX->ResultText());
    MsgBox(QStringLiteral("SubmitAudioJob returned an error ") + QString::number(lReply) +
               QStringLiteral("\n") + CD2CDX->ResultText(),
           vbCritical, App::ProductName() + QStringLiteral(" - Critical"));
}

void frmBurnBin::showSectors(const QString &status) {
    lblStatus->setText(status);
    lblCurSector->setText(QString::number(CD2CDX->CurrentSector()));
    lblTotSector->setText(QString::number(CD2CDX->TotalSectors()));
}

void frmBurnBin::Timer1_Timer() {
    qint32 track = 0, sector = 0, sectors = 0;
    CD2CDX->ReadProgress(track, sector, sectors);
    const qint32 current = CD2CDX->CurrentSector();
    if (current < 0)
        lblStatus->setText(QStringLiteral("Burning Intro... "));
    else if (current > 0 && current < CD2CDX->TotalSectors())
        showSectors(QStringLiteral("Burning Image... "));
    else if (current > 0)
        showSectors(QStringLiteral("Burning Closing... "));
}

void frmBurnBin::cmdAbort_Click() {
    modCD2CD::AbortWithBox(*CD2CDX);
}

void frmBurnBin::cmdEject_Click() {
    CD2CDX->EjectTray(selectedAddress());
}

void frmBurnBin::cmdCloseDrive_Click() {
    CD2CDX->CloseTray(selectedAddress());
}

void frmBurnBin::cmdLock_Click() {
    CD2CDX->LockTray(selectedAddress());
}

void frmBurnBin::cmdUnlock_Click() {
    CD2CDX->UnlockTray(selectedAddress());
}

void frmBurnBin::CD2CDX_JobComplete() {
    Timer1->stop();
    cmdUnlock_Click();
    lblStatus->setText(QStringLiteral("Burn Complete"));
    MsgBox(optTestRecord[1]->isChecked() ? QStringLiteral("The test write went well.")
                                         : QStringLiteral("The disc was written."),
           vbInformation, App::ProductName() + QStringLiteral(" - Information"));
}

void frmBurnBin::CD2CDX_JobFailed(const QString &sReason) {
    Timer1->stop();
    cmdUnlock_Click();
    lblStatus->setText(QStringLiteral("Burn Failed"));
    MsgBox(QStringLiteral("The disc was not written: %1").arg(sReason), vbCritical,
           App::ProductName() + QStringLiteral(" - Critical"));
}
