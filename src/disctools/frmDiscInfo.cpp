#include "frmDiscInfo.h"
#include "MediaLogo.h"
#include "TabCycle.h"
#include "app/FormRegistry.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/App.h"
#include "base/Format.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "widgets/MessageBoxService.h"
#include "widgets/NamedWidget.h"

#include <QChart>
#include <QChartView>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPieSeries>
#include <QPieSlice>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr const char *Module = "frmDiscInfo";
const QColor UsedColor(200, 60, 50);
const QColor FreeColor(60, 140, 210);

struct Row {
    qint32 value;
    const char *text;
};

// The text of a code, or nothing for a code outside its table (the label keeps its text).
const char *textOf(const QList<Row> &rows, qint32 value) {
    for (const Row &r : rows) {
        if (r.value == value)
            return r.text;
    }
    return nullptr;
}

const QList<Row> DiscStatusTexts = {
    {0, "Empty Disc"}, {1, "Disc Open"}, {2, "Disc is Closed"}, {3, "Unknown"}};
const QList<Row> DiscTypeTexts = {
    {0, "CD-DA/CD-ROM"}, {16, "CDI"}, {32, "CD-ROM XA"}, {255, "Unknown"}};
const QList<Row> SessionTexts = {
    {0, "Empty Session"}, {1, "Incomplete Session"}, {2, "Unknown"}, {3, "Closed Session"}};

struct MediaRow {
    qint32 value;
    const char *text;
    const char *logo;
};
const QList<MediaRow> MediaTexts = {
    {255, "CD-R", "CDR"},     {253, "CD-RW", "CDRW"},   {2, "DVD-R", "DVDR"},
    {3, "DVD-RW", "DVDRW"},   {10, "DVD+R", "DVDR"},    {9, "DVD+RW", "DVDRW"},
    {1, "DVD-RAM", "DVDRAM"}, {0, "DVD-ROM", "DVDROM"}, {254, "Not Loaded", ""},
};

QLabel *valueLabel(const char *name, const QString &text, QWidget *parent) {
    auto *label = named(new QLabel(text, parent), name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel *colourKey(const char *name, const QColor &colour, QWidget *parent) {
    auto *key = named(new QLabel(parent), name);
    key->setFixedSize(16, 16);
    key->setAutoFillBackground(true);
    key->setStyleSheet(
        QStringLiteral("background-color: %1; border: 1px solid #555;").arg(colour.name()));
    return key;
}

} // namespace

frmDiscInfo::frmDiscInfo(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr)
    , m_context(context) {
    setObjectName(QStringLiteral("frmDiscInfo"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Disc Information"));
    buildControls();
}

frmDiscInfo::~frmDiscInfo() {
    DefaultInstance<frmDiscInfo>::release(this);
}

void frmDiscInfo::buildControls() {
    auto *column = new QVBoxLayout(this);
    tbsDiscInfo = named(new QTabWidget(this), "tbsDiscInfo");
    tbsDiscInfo->addTab(buildInfoTab(), QStringLiteral("CDR/W Media Information"));
    tbsDiscInfo->addTab(buildSizeTab(), QStringLiteral("CDR/W Media Size Information"));
    column->addWidget(tbsDiscInfo);

    auto *buttons = new QHBoxLayout;
    cmdEjectDisk = named(new QPushButton(QStringLiteral("&Eject CD"), this), "cmdEjectDisk");
    cmdEjectDisk->setToolTip(QStringLiteral("Eject The Media"));
    cmdClose = named(new QPushButton(QStringLiteral("&Close"), this), "cmdClose");
    cmdClose->setToolTip(QStringLiteral("Close Disc Information"));
    buttons->addStretch();
    buttons->addWidget(cmdEjectDisk);
    buttons->addWidget(cmdClose);
    column->addLayout(buttons);
    // Wide enough for both tab captions side by side.
    setMinimumWidth(560);

    TRAPPED_CONNECT(cmdCloseSession, &QPushButton::clicked, frmDiscInfo, cmdCloseSession_Click);
    TRAPPED_CONNECT(cmdCloseDisc, &QPushButton::clicked, frmDiscInfo, cmdCloseDisc_Click);
    TRAPPED_CONNECT(cmdErase, &QPushButton::clicked, frmDiscInfo, cmdErase_Click);
    TRAPPED_CONNECT(cmdEjectDisk, &QPushButton::clicked, frmDiscInfo, cmdEjectDisk_Click);
    TRAPPED_CONNECT(cmdClose, &QPushButton::clicked, frmDiscInfo, cmdClose_Click);
    TRAPPED_CONNECT(tbsDiscInfo, &QTabWidget::currentChanged, frmDiscInfo, tbsDiscInfo_Click);
    tbsDiscInfo_Click();
}

QWidget *frmDiscInfo::buildInfoTab() {
    auto *page = new QWidget(this);
    auto *pageColumn = new QVBoxLayout(page);
    auto *frame = new QGroupBox(QStringLiteral("CD-R/RW Media Information:"), page);
    fraOptions << frame;
    pageColumn->addWidget(frame);
    auto *grid = new QGridLayout(frame);
    txtMedia = named(new QLineEdit(frame), "txtMedia");
    txtMedia->setReadOnly(true);
    imgLogo = named(new QLabel(frame), "imgLogo");
    imgLogo->setFixedSize(MediaLogo::Size, MediaLogo::Size);
    grid->addWidget(imgLogo, 0, 0);
    grid->addWidget(txtMedia, 0, 1, 1, 2);
    const auto pair = [&](int row, const char *caption, QLabel *&value, const char *name,
                          const char *initial) {
        grid->addWidget(new QLabel(QString::fromLatin1(caption), frame), row, 1);
        value = valueLabel(name, QString::fromLatin1(initial), frame);
        grid->addWidget(value, row, 2);
    };
    pair(1, "Media Type:", lblValueMediaType, "lblValueMediaType", "N/A");
    pair(2, "Number of Sessions:", lblValueSessions, "lblValueSessions", "N/A");
    pair(3, "Last Session Status:", lblValueLastSessionStatus, "lblValueLastSessionStatus", "N/A");
    pair(4, "Disc Type:", lblValueDiscType, "lblValueDiscType", "N/A");
    pair(5, "Disc Status:", lblValueDiscStatus, "lblValueDiscStatus", "N/A");
    pair(6, "File System:", lblValueFileSystem, "lblValueFileSystem", "Unknown");
    pair(7, "Volume Serial Number:", lblValueVolumeSerial, "lblValueVolumeSerial", "Unknown");
    grid->setColumnStretch(2, 1);
    auto *buttons = new QHBoxLayout;
    cmdCloseSession =
        named(new QPushButton(QStringLiteral("Close &Session"), frame), "cmdCloseSession");
    cmdCloseSession->setToolTip(QStringLiteral("Close Disc Session"));
    cmdCloseDisc = named(new QPushButton(QStringLiteral("Close &Disc"), frame), "cmdCloseDisc");
    cmdCloseDisc->setToolTip(QStringLiteral("Close The Disc"));
    cmdErase = named(new QPushButton(QStringLiteral("E&rase Disc..."), frame), "cmdErase");
    buttons->addWidget(cmdCloseSession);
    buttons->addWidget(cmdCloseDisc);
    buttons->addWidget(cmdErase);
    buttons->addStretch();
    grid->addLayout(buttons, 8, 0, 1, 3);
    for (QPushButton *b : {cmdCloseSession, cmdCloseDisc, cmdErase})
        b->setEnabled(false);
    return page;
}

QWidget *frmDiscInfo::buildSizeTab() {
    auto *page = new QWidget(this);
    auto *pageColumn = new QVBoxLayout(page);
    auto *frame = new QGroupBox(QStringLiteral("Media Size Information:"), page);
    fraOptions << frame;
    pageColumn->addWidget(frame);
    auto *grid = new QGridLayout(frame);
    m_series = new QPieSeries;
    MSChart1 = new QChart;
    MSChart1->addSeries(m_series);
    MSChart1->legend()->hide();
    m_series->setPieSize(0.95);
    MSChart1->setMargins(QMargins(0, 0, 0, 0));
    MSChart1->setBackgroundVisible(false);
    m_chartView = named(new QChartView(MSChart1, frame), "MSChart1");
    m_chartView->setRenderHint(QPainter::Antialiasing);
    m_chartView->setMinimumSize(260, 200);
    grid->addWidget(m_chartView, 0, 0, 1, 4);
    lblUsedColor = colourKey("lblUsedColor", UsedColor, frame);
    lblFreeColor = colourKey("lblFreeColor", FreeColor, frame);
    grid->addWidget(lblUsedColor, 1, 0);
    grid->addWidget(new QLabel(QStringLiteral("Used Space:"), frame), 1, 1);
    lblValueUsedSpaceBytes = valueLabel("lblValueUsedSpaceBytes", QStringLiteral("N/A"), frame);
    lblValueUsedSpaceMB = valueLabel("lblValueUsedSpaceMB", QStringLiteral("N/A"), frame);
    grid->addWidget(lblValueUsedSpaceBytes, 1, 2);
    grid->addWidget(lblValueUsedSpaceMB, 1, 3);
    grid->addWidget(lblFreeColor, 2, 0);
    grid->addWidget(new QLabel(QStringLiteral("Free Space:"), frame), 2, 1);
    lblValueFreeSpaceBytes = valueLabel("lblValueFreeSpaceBytes", QStringLiteral("N/A"), frame);
    lblValueFreeSpaceMB = valueLabel("lblValueFreeSpaceMB", QStringLiteral("N/A"), frame);
    grid->addWidget(lblValueFreeSpaceBytes, 2, 2);
    grid->addWidget(lblValueFreeSpaceMB, 2, 3);
    grid->addWidget(new QLabel(QStringLiteral("Free Space Blocks:"), frame), 3, 1);
    lblValueFreeSpaceBlocks = valueLabel("lblValueFreeSpaceBlocks", QStringLiteral("N/A"), frame);
    grid->addWidget(lblValueFreeSpaceBlocks, 3, 2, 1, 2);
    grid->setColumnStretch(2, 1);
    return page;
}

void frmDiscInfo::ShowDiscInfo(CDWriterPro *objCDR, QWidget *frmParent) {
    mobjCDR = objCDR;
    if (!objCDR || objCDR->MediaType() == CDWriterPro::MediaNone) {
        MsgBox(QStringLiteral("No Media Loaded...Cannot Get Disc Info!"), vbInformation,
               App::ProductName() + QStringLiteral(" - Information"));
        // Nothing was shown: the dialog goes without asking anyone.
        DefaultInstance<frmDiscInfo>::release(this);
        deleteLater();
        return;
    }
    TRAPPED_CONNECT(objCDR, &CDWriterPro::ClosingSession, frmDiscInfo, mobjCDR_ClosingSession);
    TRAPPED_CONNECT(objCDR, &CDWriterPro::WriteComplete, frmDiscInfo, mobjCDR_WritingComplete);
    TRAPPED_CONNECT(objCDR, &CDWriterPro::WriteError, frmDiscInfo, mobjCDR_WriteError);
    if (frmParent && parentWidget() != frmParent)
        setParent(frmParent, windowFlags());
    FormRegistry::bringToFront(this);
    SetStatus();
}

void frmDiscInfo::setLogo(const QString &key) {
    imgLogo->setPixmap(key.isEmpty() ? QPixmap() : MediaLogo::pixmap(key));
    imgLogo->setAccessibleDescription(key);
}

void frmDiscInfo::SetStatus() {
    CDWriterPro *cd = m_context.engine ? m_context.engine : mobjCDR.data();
    if (!cd)
        return;
    const QString root = cd->DriveLetter(glngDriveIndex) + QStringLiteral(":\\");
    const QString strDriveLabel = SystemCalls::GetVolumeName(root);
    txtMedia->setText(strDriveLabel.isEmpty() ? QStringLiteral("No Label") : strDriveLabel);
    cmdCloseDisc->setEnabled(false);
    cmdCloseSession->setEnabled(false);
    cmdErase->setEnabled(false);

    const qint32 media = cd->MediaType();
    for (const MediaRow &row : MediaTexts) {
        if (row.value != media)
            continue;
        lblValueMediaType->setText(QString::fromLatin1(row.text));
        QString logo = QString::fromLatin1(row.logo);
        // A write-once CD whose last session is closed reads like a pressed one.
        if (media == CDWriterPro::MediaCDR && mobjCDR &&
            mobjCDR->LastSessionStatus() == CDWriterPro::SessionClosed)
            logo = QStringLiteral("CDROM");
        setLogo(logo);
        cmdErase->setEnabled(media == CDWriterPro::MediaCDRW);
    }
    if (txtMedia->text() == QLatin1String("Audio CD"))
        setLogo(QStringLiteral("AUDIO"));

    const QString caption =
        QStringLiteral("Capacity: ") +
        Format(GetTotalSpace(cd, 1), QStringLiteral("# ### ### ##0")) + QStringLiteral(" byte  ") +
        Format(GetTotalSpace(cd, 3), QStringLiteral("#0.0")) + QStringLiteral(" MB");
    double used = GetUsedSpace(cd, 3);
    const double free = GetFreeSpace(cd, 3);
    // No room left: the pie is all used, even when the volume's own figure says little.
    if (free == 0)
        used = 100;
    MSChart1->setTitle(caption);
    m_series->clear();
    m_series->append(QStringLiteral("Used"), used)->setBrush(UsedColor);
    m_series->append(QStringLiteral("Free"), free)->setBrush(FreeColor);
    // The pie in words, for a screen reader.
    m_chartView->setAccessibleDescription(caption +
                                          QStringLiteral(", used %1, free %2").arg(used).arg(free));

    lblValueSessions->setText(QString::number(cd->SessionCount()));
    lblValueFreeSpaceBlocks->setText(QString::number(cd->FreeBlocks()) + QStringLiteral(" blocks"));
    lblValueUsedSpaceBytes->setText(Format(GetUsedSpace(cd, 1), QStringLiteral("# ### ### ##0")) +
                                    QStringLiteral(" byte"));
    lblValueUsedSpaceMB->setText(Format(GetUsedSpace(cd, 3), QStringLiteral("#0.0")) +
                                 QStringLiteral(" MB"));
    lblValueFreeSpaceBytes->setText(Format(GetFreeSpace(cd, 1), QStringLiteral("# ### ### ##0")) +
                                    QStringLiteral(" byte"));
    lblValueFreeSpaceMB->setText(Format(GetFreeSpace(cd, 3), QStringLiteral("#0.0")) +
                                 QStringLiteral(" MB"));

    if (const char *text = textOf(DiscStatusTexts, cd->DiscStatus()))
        lblValueDiscStatus->setText(QString::fromLatin1(text));
    if (const char *text = textOf(DiscTypeTexts, cd->DiscType()))
        lblValueDiscType->setText(QString::fromLatin1(text));
    const qint32 session = cd->LastSessionStatus();
    if (const char *text = textOf(SessionTexts, session))
        lblValueLastSessionStatus->setText(QString::fromLatin1(text));
    if (session == CDWriterPro::SessionIncomplete) {
        cmdCloseSession->setEnabled(true);
        cmdCloseDisc->setEnabled(true);
    }

    const QString strFileSystem = SystemCalls::GetFileSystem(root);
    if (!strFileSystem.isEmpty())
        lblValueFileSystem->setText(strFileSystem);
    // A disc without a volume has no serial; "Unknown" says so better than a 0.
    const qint32 lngVolSerial = SystemCalls::VolumeSerialNumber(root);
    lblValueVolumeSerial->setText(lngVolSerial != 0 ? QString::number(lngVolSerial)
                                                    : QStringLiteral("Unknown"));
}

void frmDiscInfo::tbsDiscInfo_Click() {
    for (int i = 0; i < fraOptions.size(); ++i)
        fraOptions.at(i)->setEnabled(i == tbsDiscInfo->currentIndex());
}

void frmDiscInfo::keyPressEvent(QKeyEvent *event) {
    bool used = false;
    ErrorTrap::run("Form_KeyDown", Module, [&] { used = TabCycle::handle(event, tbsDiscInfo); });
    if (!used)
        QDialog::keyPressEvent(event);
}

void frmDiscInfo::setCloseButtons(bool enabled) {
    cmdClose->setEnabled(enabled);
    cmdCloseDisc->setEnabled(enabled);
    cmdCloseSession->setEnabled(enabled);
}

void frmDiscInfo::finishDisc(bool closeDisc) {
    mblnClosing = true;
    setCloseButtons(false);
    if (!mobjCDR || !mobjCDR->FinishDisc(closeDisc)) {
        MsgBox(closeDisc ? QStringLiteral("Error attempting to Close Disc!")
                         : QStringLiteral("Error attempting to Close Session!"),
               vbCritical, App::ProductName() + QStringLiteral(" - Critical"));
        setCloseButtons(true);
        mblnClosing = false;
    }
}

void frmDiscInfo::cmdCloseSession_Click() {
    finishDisc(false);
}

void frmDiscInfo::cmdCloseDisc_Click() {
    finishDisc(true);
}

void frmDiscInfo::mobjCDR_ClosingSession() {
    if (mblnClosing)
        txtMedia->setText(QStringLiteral("...Closing Session/Disc..."));
}

// The engine ends a close with WriteComplete, which the frame answers as well (and ejects).
// The dialog ends its own waiting here and shows the disc as it is now.
void frmDiscInfo::mobjCDR_WritingComplete() {
    if (!mblnClosing)
        return;
    txtMedia->setText(QStringLiteral("Closing Successful!!"));
    MsgBox(QStringLiteral("Session/Disc Closed Successful!"), vbInformation,
           App::ProductName() + QStringLiteral(" - Information"));
    cmdClose->setEnabled(true);
    mblnClosing = false;
    SetStatus();
}

void frmDiscInfo::mobjCDR_WriteError(qint32 WriteError, qint32 DriveError,
                                     const QString &sErrorInfo, const QString &sSenseInfo) {
    if (!mblnClosing)
        return;
    const QString strError = WriteErrorText(WriteError, DriveError, sErrorInfo, sSenseInfo);
    MsgBox(strError, vbCritical, App::ProductName() + QStringLiteral(" - Critical"));
    mblnClosing = false;
    close();
}

void frmDiscInfo::cmdEjectDisk_Click() {
    if (mblnClosing)
        return;
    if (mobjCDR)
        mobjCDR->MoveTray(false);
    close();
}

void frmDiscInfo::cmdErase_Click() {
    if (!close())
        return;
    FormRegistry::open(QStringLiteral("frmErase"));
}

void frmDiscInfo::cmdClose_Click() {
    close();
}

void frmDiscInfo::reject() {
    close();
}

void frmDiscInfo::closeEvent(QCloseEvent *event) {
    // No way out while the drive closes the disc.
    if (mblnClosing) {
        event->ignore();
        return;
    }
    mobjCDR = nullptr;
    DefaultInstance<frmDiscInfo>::release(this);
    event->accept();
}
