#include "frmIsoripper.h"

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
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

frmIsoripper::frmIsoripper(const WindowContext &context) {
    setObjectName(QStringLiteral("frmIsoripper"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Rip Data CD"));
    CD2CDX = new CD2CD(context.engine, this);
    auto *column = new QVBoxLayout(this);
    auto *driveFrame = new QGroupBox(QStringLiteral("Dr&ive:"), this);
    auto *driveRow = new QHBoxLayout(driveFrame);
    cboDrives = named(new QComboBox(driveFrame), "cboDrives");
    driveRow->addWidget(cboDrives);
    column->addWidget(driveFrame);
    auto *fileFrame = new QGroupBox(QStringLiteral("&Save File To:"), this);
    auto *fileRow = new QHBoxLayout(fileFrame);
    txtFileName = named(new QLineEdit(fileFrame), "txtFileName");
    cmdOpen = named(new QPushButton(QStringLiteral("..."), fileFrame), "cmdOpen");
    cmdOpen->setFixedWidth(32);
    fileRow->addWidget(txtFileName);
    fileRow->addWidget(cmdOpen);
    column->addWidget(fileFrame);
    prbProgress = named(new QProgressBar(this), "prbProgress");
    prbProgress->setRange(0, 100);
    prbProgress->setValue(0);
    column->addWidget(prbProgress);
    lblInfo = named(new QLabel(this), "lblInfo");
    column->addWidget(lblInfo);
    auto *buttons = new QHBoxLayout;
    cmdRipData = named(new QPushButton(QStringLiteral("&Rip Data"), this), "cmdRipData");
    cmdAbort = named(new QPushButton(QStringLiteral("&Abort"), this), "cmdAbort");
    cmdEject = named(new QPushButton(QStringLiteral("&Eject Drive"), this), "cmdEject");
    cmdCloseDrive = named(new QPushButton(QStringLiteral("Close &Drive"), this), "cmdCloseDrive");
    cmdClose = named(new QPushButton(QStringLiteral("&Close"), this), "cmdClose");
    for (QPushButton *b : {cmdRipData, cmdAbort, cmdEject, cmdCloseDrive, cmdClose})
        buttons->addWidget(b);
    column->addLayout(buttons);
    column->addStretch();
    cmdAbort->setEnabled(false);
    setMinimumWidth(480);

    TRAPPED_CONNECT(CD2CDX, &CD2CD::PercentDone, frmIsoripper, CD2CDX_PercentDone);
    TRAPPED_CONNECT(CD2CDX, &CD2CD::JobComplete, frmIsoripper, CD2CDX_JobComplete);
    TRAPPED_CONNECT(CD2CDX, &CD2CD::JobFailed, frmIsoripper, CD2CDX_JobFailed);
    TRAPPED_CONNECT(cboDrives, &QComboBox::currentIndexChanged, frmIsoripper, cboDrives_Click);
    TRAPPED_CONNECT(cmdOpen, &QPushButton::clicked, frmIsoripper, cmdOpen_Click);
    TRAPPED_CONNECT(cmdRipData, &QPushButton::clicked, frmIsoripper, cmdRipData_Click);
    TRAPPED_CONNECT(cmdAbort, &QPushButton::clicked, frmIsoripper, cmdAbort_Click);
    TRAPPED_CONNECT(cmdClose, &QPushButton::clicked, frmIsoripper, cmdClose_Click);
    TRAPPED_CONNECT(cmdEject, &QPushButton::clicked, frmIsoripper, cmdEject_Click);
    TRAPPED_CONNECT(cmdCloseDrive, &QPushButton::clicked, frmIsoripper, cmdCloseDrive_Click);
}

frmIsoripper::~frmIsoripper() {
    DefaultInstance<frmIsoripper>::release(this);
}

void frmIsoripper::closeEvent(QCloseEvent *event) {
    DefaultInstance<frmIsoripper>::release(this);
    QWidget::closeEvent(event);
}

void frmIsoripper::Form_Load() {
    modCD2CD::FillDrives(*CD2CDX, cboDrives);
    if (cboDrives->count() > 0)
        cboDrives->setCurrentIndex(0);
}

void frmIsoripper::cboDrives_Click() {
    lngAddress = cboDrives->currentIndex() >= 0 ? cboDrives->currentData().toInt() : -1;
}

void frmIsoripper::cmdOpen_Click() {
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Save;
    request.title = QStringLiteral("Save As");
    request.initialDirectory = App::Path();
    request.filter = QStringLiteral("ISO Data File|*.iso|Bin Data File|*.bin");
    // A cancel changes nothing.
    if (const auto name = FileBoxService::ask(request); name && !name->isEmpty())
        txtFileName->setText(*name);
}

void frmIsoripper::cmdRipData_Click() {
    m_locked = CD2CDX->DeviceAddress(0);
    CD2CDX->LockTray(m_locked);
    cmdRipData->setEnabled(false);
    cmdClose->setEnabled(false);
    cmdAbort->setEnabled(true);
    lblInfo->setText(QStringLiteral("Initializing..."));
    // A name ending in .bin gets a BIN with its cue sheet; anything else an ISO file.
    const QString name = txtFileName->text();
    const qint32 flag = name.endsWith(QStringLiteral(".bin"), Qt::CaseInsensitive) ? 1 : 0;
    if (CD2CDX->ReadDiscToFile(lngAddress, name, flag) < 0) {
        const QString why = CD2CDX->ResultText();
        jobEnded();
        lblInfo->setText(why);
        MsgBox(why, vbExclamation, App::ProductName() + QStringLiteral(" - Warning"));
        return;
    }
    lblInfo->setText(QStringLiteral("Analysing CD..."));
}

void frmIsoripper::CD2CDX_PercentDone(double nPercent) {
    prbProgress->setValue(qint32(std::clamp(nPercent, 0.0, 100.0)));
    lblInfo->setText(nPercent < 100 ? QStringLiteral("Creating ISO...")
                                    : QStringLiteral("Finished ISO"));
}

void frmIsoripper::jobEnded() {
    CD2CDX->UnlockTray(m_locked);
    cmdRipData->setEnabled(true);
    cmdClose->setEnabled(true);
    cmdAbort->setEnabled(false);
}

void frmIsoripper::CD2CDX_JobComplete() {
    jobEnded();
    MsgBox(QStringLiteral("The disc was saved to %1.").arg(txtFileName->text()), vbInformation,
           App::ProductName() + QStringLiteral(" - Information"));
}

void frmIsoripper::CD2CDX_JobFailed(const QString &sReason) {
    jobEnded();
    lblInfo->setText(QStringLiteral("Not saved"));
    MsgBox(QStringLiteral("The disc was not saved: %1 No file was left behind.").arg(sReason),
           vbCritical, App::ProductName() + QStringLiteral(" - Critical"));
}

void frmIsoripper::cmdAbort_Click() {
    modCD2CD::AbortWithBox(*CD2CDX);
}

void frmIsoripper::cmdClose_Click() {
    close();
}

void frmIsoripper::cmdEject_Click() {
    CD2CDX->EjectTray(lngAddress);
}

void frmIsoripper::cmdCloseDrive_Click() {
    CD2CDX->CloseTray(lngAddress);
}
