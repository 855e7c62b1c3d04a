#include "frmRecorderInfo.h"

#include "TabCycle.h"
#include "app/modDeclarations.h"
#include "base/Format.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/copier/CD2CD.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "widgets/NamedWidget.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

struct CapabilityRow {
    const char *label;
    const char *caption;
    qint32 code;
    bool reading; // reading rows say "Unsupported" where writing rows say "Not Supported"
};

const CapabilityRow WriteRows[] = {
    {"lblValueBufferUnderrun", "Buffer Underrun Protection:", 36, false},
    {"lblValueTAO", "TAO (Track At Once):", 42, false},
    {"lblValueDAO", "DAO (Disc At Once):", 41, false},
    {"lblValueRawWriting", "Raw Writing:", 40, false},
    {"lblValueCDR", "Writes CD-R Discs:", 6, false},
    {"lblValueCDRW", "Writes CD-RW Discs:", 7, false},
    {"lblValueDVDR", "Writes DVD-R Discs:", 9, false},
    {"lblValueDVDPR", "Writes DVD+R Discs:", 38, false},
    {"lblValueDVDRAM", "Writes DVD-RAM Discs:", 10, false},
    {"lblValueDVDRW", "Writes DVD-RW Discs:", 37, false},
    {"lblValueDVDRWP", "Writes DVD+RW Discs:", 39, false},
};
const CapabilityRow ReadRows[] = {
    {"lblValueReadCDR", "Reads CD-R Discs:", 0, true},
    {"lblValueReadCDRW", "Reads CD-RW Discs:", 1, true},
    {"lblValueReadDVDR", "Reads DVD-R Discs:", 4, true},
    {"lblValueReadDVDROM", "Reads DVD-ROM Discs:", 3, true},
    {"lblValueReadDVDRAM", "Reads DVD-RAM Discs:", 5, true},
};

} // namespace

frmRecorderInfo::frmRecorderInfo(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr)
    , m_context(context) {
    setObjectName(QStringLiteral("frmRecorderInfo"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *column = new QVBoxLayout(this);
    lblDrive = named(new QLabel(this), "lblDrive");
    QFont bold = lblDrive->font();
    bold.setBold(true);
    lblDrive->setFont(bold);
    column->addWidget(lblDrive);
    tbsRecorderInfo = named(new QTabWidget(this), "tbsRecorderInfo");
    column->addWidget(tbsRecorderInfo);
    const auto tab = [&](const char *tabCaption, const char *frameCaption) {
        auto *page = new QWidget(tbsRecorderInfo);
        auto *pageColumn = new QVBoxLayout(page);
        auto *frame = new QGroupBox(QString::fromLatin1(frameCaption), page);
        pageColumn->addWidget(frame);
        pageColumn->addStretch();
        fraOptions << frame;
        tbsRecorderInfo->addTab(page, QString::fromLatin1(tabCaption));
        return new QFormLayout(frame);
    };
    const auto value = [&](QFormLayout *form, const char *caption, const char *name) {
        auto *label = named(new QLabel(QStringLiteral("N/A"), form->parentWidget()), name);
        form->addRow(QString::fromLatin1(caption), label);
        return label;
    };
    QFormLayout *drive = tab("Recorder Information", "Recorder Information:");
    lblValueDriveVendor = value(drive, "Vendor:", "lblValueDriveVendor");
    lblValueDriveModel = value(drive, "Model:", "lblValueDriveModel");
    lblValueFirmware = value(drive, "Firmware Revision:", "lblValueFirmware");
    lblValueMaxSpeed = value(drive, "Maximum Write Speed:", "lblValueMaxSpeed");
    QFormLayout *writes = tab("Write Capabilities", "Write Capabilities:");
    for (const CapabilityRow &row : WriteRows)
        capabilityLabels.insert(QLatin1String(row.label), value(writes, row.caption, row.label));
    QFormLayout *reads = tab("Read Capabilities", "Read Capabilities:");
    for (const CapabilityRow &row : ReadRows)
        capabilityLabels.insert(QLatin1String(row.label), value(reads, row.caption, row.label));

    auto *buttons = new QHBoxLayout;
    cmdClose = named(new QPushButton(QStringLiteral("&Close"), this), "cmdClose");
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    column->addLayout(buttons);
    TRAPPED_CONNECT(cmdClose, &QPushButton::clicked, frmRecorderInfo, cmdClose_Click);
    TRAPPED_CONNECT(tbsRecorderInfo, &QTabWidget::currentChanged, frmRecorderInfo,
                    tbsRecorderInfo_Click);
    setMinimumWidth(600);
}

frmRecorderInfo::~frmRecorderInfo() {
    DefaultInstance<frmRecorderInfo>::release(this);
}

QString frmRecorderInfo::QueryRevision() const {
    if (!m_context.engine)
        return QString();
    // The copier's query answers for every kind of drive, the Image Recorder included.
    CD2CD copier(m_context.engine);
    const qint32 length = copier.QueryRevision(copier.DeviceAddress(glngDriveIndex));
    return length > 0 ? copier.ResultText().left(length) : QString();
}

void frmRecorderInfo::Form_Load() {
    CDWriterPro *cd = m_context.engine;
    if (!cd)
        return;
    const QString revision = QueryRevision();
    lblValueFirmware->setText(revision.isEmpty() ? QStringLiteral("N/A") : revision);
    // A drive that reports less than two times CD speed is named a 1x drive.
    double factor = double(cd->MaxWriteSpeed()) / 176.0;
    if (factor < 2)
        factor = 1;
    setWindowTitle(QStringLiteral("CD-Recorder Information"));
    const QString vendor = cd->DriveVendor(glngDriveIndex);
    const QString product = cd->DriveProduct(glngDriveIndex);
    lblDrive->setText(vendor + u' ' + product);
    lblValueDriveVendor->setText(vendor);
    lblValueDriveModel->setText(product);
    lblValueMaxSpeed->setText(Format(factor, QStringLiteral("#0")) + QStringLiteral("x (") +
                              Format(factor * 150, QStringLiteral("#0")) +
                              QStringLiteral(" kB/s)  Depends on media type loaded!"));
    const auto fill = [&](const CapabilityRow &row) {
        const bool has = cd->DriveCapability(row.code, glngDriveIndex);
        capabilityLabels.value(QLatin1String(row.label))
            ->setText(has ? QStringLiteral("Supported")
                          : (row.reading ? QStringLiteral("Unsupported")
                                         : QStringLiteral("Not Supported")));
    };
    for (const CapabilityRow &row : WriteRows)
        fill(row);
    for (const CapabilityRow &row : ReadRows)
        fill(row);
    tbsRecorderInfo_Click();
}

void frmRecorderInfo::tbsRecorderInfo_Click() {
    for (int i = 0; i < fraOptions.size(); ++i)
        fraOptions.at(i)->setEnabled(i == tbsRecorderInfo->currentIndex());
}

void frmRecorderInfo::keyPressEvent(QKeyEvent *event) {
    bool used = false;
    ErrorTrap::run("Form_KeyDown", "frmRecorderInfo",
                   [&] { used = TabCycle::handle(event, tbsRecorderInfo); });
    if (!used)
        QDialog::keyPressEvent(event);
}

void frmRecorderInfo::cmdClose_Click() {
    close();
}

void frmRecorderInfo::closeEvent(QCloseEvent *event) {
    DefaultInstance<frmRecorderInfo>::release(this);
    event->accept();
}
