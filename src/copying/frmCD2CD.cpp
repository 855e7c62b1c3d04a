#include "frmCD2CD.h"

#include "modCD2CD.h"

#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/copier/CD2CD.h"
#include "widgets/DefaultInstance.h"
#include "widgets/MessageBoxService.h"
#include "widgets/NamedWidget.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {
QComboBox *framedList(QWidget *parent, QVBoxLayout *column, const char *caption, const char *name) {
    auto *frame = new QGroupBox(QString::fromLatin1(caption), parent);
    auto *row = new QVBoxLayout(frame);
    auto *list = named(new QComboBox(frame), name);
    row->addWidget(list);
    column->addWidget(frame);
    return list;
}
} // namespace

frmCD2CD::frmCD2CD(const WindowContext &context) {
    setObjectName(QStringLiteral("frmCD2CD"));
    setAttribute(Qt::WA_DeleteOnClose);
    CD2CDX = new CD2CD(context.engine, this);
    CD2CDX->setBlankDiscHandler(this);
    auto *column = new QVBoxLayout(this);
    cboDrives = framedList(this, column, "&Source:", "cboDrives");
    cboBurner = framedList(this, column, "&Destination CD Recorder Drive:", "cboBurner");
    auto *row = new QHBoxLayout;
    auto *speedFrame = new QGroupBox(QStringLiteral("S&peed:"), this);
    auto *speedRow = new QVBoxLayout(speedFrame);
    cboSpeed = named(new QComboBox(speedFrame), "cboSpeed");
    speedRow->addWidget(cboSpeed);
    auto *options = new QGroupBox(QStringLiteral("&Options:"), this);
    auto *optionRow = new QVBoxLayout(options);
    optTestRecord[0] =
        named(new QRadioButton(QStringLiteral("&Test Write Disc"), options), "optTestRecord0");
    optTestRecord[1] =
        named(new QRadioButton(QStringLiteral("&Write Disc"), options), "optTestRecord1");
    optionRow->addWidget(optTestRecord[0]);
    optionRow->addWidget(optTestRecord[1]);
    row->addWidget(speedFrame);
    row->addWidget(options);
    column->addLayout(row);
    prgProgress = named(new QProgressBar(this), "prgProgress");
    prgProgress->setRange(0, 100);
    prgProgress->setValue(0);
    column->addWidget(prgProgress);
    lblInfo = named(new QLabel(QStringLiteral("Closing Out Burn"), this), "lblInfo");
    lblInfo->setVisible(false);
    column->addWidget(lblInfo);
    auto *buttons = new QHBoxLayout;
    cmdCopyBurn = named(new QPushButton(QStringLiteral("&Copy And Burn"), this), "cmdCopyBurn");
    cmdAbort = named(new QPushButton(QStringLiteral("&Abort"), this), "cmdAbort");
    cmdClose = named(new QPushButton(QStringLiteral("C&lose"), this), "cmdClose");
    buttons->addStretch();
    for (QPushButton *b : {cmdCopyBurn, cmdAbort, cmdClose})
        buttons->addWidget(b);
    column->addLayout(buttons);
    column->addStretch();
    cmdCopyBurn->setEnabled(false);
    cmdAbort->setEnabled(false);
    setMinimumWidth(480);

    TRAPPED_CONNECT(CD2CDX, &CD2CD::PercentDone, frmCD2CD, CD2CDX_PercentDone);
    TRAPPED_CONNECT(CD2CDX, &CD2CD::JobComplete, frmCD2CD, CD2CDX_JobComplete);
    TRAPPED_CONNECT(CD2CDX, &CD2CD::JobFailed, frmCD2CD, CD2CDX_JobFailed);
    TRAPPED_CONNECT(cboBurner, &QComboBox::currentIndexChanged, frmCD2CD, cboBurner_Click);
    TRAPPED_CONNECT(cboSpeed, &QComboBox::currentIndexChanged, frmCD2CD, cboSpeed_Click);
    TRAPPED_CONNECT(cmdCopyBurn, &QPushButton::clicked, frmCD2CD, cmdCopyBurn_Click);
    TRAPPED_CONNECT(cmdAbort, &QPushButton::clicked, frmCD2CD, cmdAbort_Click);
    TRAPPED_CONNECT(cmdClose, &QPushButton::clicked, frmCD2CD, cmdClose_Click);
}

frmCD2CD::~frmCD2CD() {
    DefaultInstance<frmCD2CD>::release(this);
}

void frmCD2CD::closeEvent(QCloseEvent *event) {
    DefaultInstance<frmCD2CD>::release(this);
    QWidget::closeEvent(event);
}

void frmCD2CD::Form_Load() {
    setWindowTitle(QStringLiteral("CD to CD Copy"));
    modCD2CD::FillDrives(*CD2CDX, cboDrives, cboBurner);
    if (cboDrives->count() > 0)
        cboDrives->setCurrentIndex(0);
    // Never the first device as its own destination: with one device nothing is chosen.
    if (cboBurner->count() > 1)
        cboBurner->setCurrentIndex(1);
    if (cboDrives->currentIndex() >= 0)
        CD2CDX->SelectDevice(cboDrives->currentData().toInt());
    optTestRecord[0]->setChecked(true);
}

void frmCD2CD::cboBurner_Click() {
    if (cboBurner->currentIndex() < 0)
        return;
    CD2CDX->SelectDevice(cboBurner->currentData().toInt());
    modCD2CD::PopulateSpeedCD2CD(cboSpeed, *CD2CDX);
    if (cboSpeed->count() > 0)
        cboSpeed->setCurrentIndex(0);
    cmdCopyBurn->setEnabled(true);
}

void frmCD2CD::cboSpeed_Click() {
    if (cboSpeed->currentIndex() >= 0)
        CD2CDX->setSpeedCode(modCD2CD::SpeedCodeOfIndex(cboSpeed->currentIndex()));
}

void frmCD2CD::cmdCopyBurn_Click() {
    lblInfo->setVisible(false);
    const qint16 lTest = optTestRecord[0]->isChecked() ? 1 : 0;
    const qint32 answer =
        CD2CDX->CopyDisc(cboDrives->currentData().toInt(), cboBurner->currentData().toInt(),
                         CD2CDX->SpeedCode(), lTest, qintptr(winId()));
    if (answer < 0) {
        MsgBox(CD2CDX->ResultText(), vbCritical,
               App::ProductName() + QStringLiteral(" - Critical"));
        return;
    }
    cmdAbort->setEnabled(true);
}

void frmCD2CD::cmdAbort_Click() {
    modCD2CD::AbortWithBox(*CD2CDX);
}

void frmCD2CD::cmdClose_Click() {
    close();
}

void frmCD2CD::CD2CDX_PercentDone(double nPercent) {
    prgProgress->setValue(qint32(RoundHalfEven(nPercent)));
    if (nPercent == 100.0) {
        lblInfo->setVisible(true);
        cmdAbort->setEnabled(false);
    }
}

void frmCD2CD::CD2CDX_JobComplete() {
    cmdAbort->setEnabled(false);
    MsgBox(optTestRecord[0]->isChecked() ? QStringLiteral("The test copy went well; the blank "
                                                          "disc was left blank.")
                                         : QStringLiteral("The disc was copied."),
           vbInformation, App::ProductName() + QStringLiteral(" - Information"));
}

void frmCD2CD::CD2CDX_JobFailed(const QString &sReason) {
    cmdAbort->setEnabled(false);
    lblInfo->setVisible(false);
    MsgBox(QStringLiteral("The copy did not finish: %1").arg(sReason), vbCritical,
           App::ProductName() + QStringLiteral(" - Critical"));
}

void frmCD2CD::blankDiscWanted(qint32 address, const QString &driveName) {
    ErrorTrap::run("blankDiscWanted", "frmCD2CD", [&] {
        const int answer =
            MsgBox(QStringLiteral("The source disc has been read. Please put a blank disc into "
                                  "%1 and click OK; Cancel stops the copy.")
                       .arg(driveName),
                   vbOKCancel | vbInformation, App::ProductName() + QStringLiteral(" - Message"));
        if (answer == vbOK)
            CD2CDX->CloseTray(address);
        else
            CD2CDX->AbortJob();
    });
}
