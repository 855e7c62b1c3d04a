#include "frmExtract.h"

#include "app/modGlobals.h"
#include "base/App.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/ripper/CDRipperX.h"
#include "widgets/FileBoxService.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/MessageBoxService.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>

namespace {
QPointer<frmExtract> &openDialog() {
    static QPointer<frmExtract> dialog;
    return dialog;
}

QString twoDigitsMin(qint32 n) {
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

QString information() {
    return App::ProductName() + QStringLiteral(" - Information");
}
} // namespace

frmExtract::frmExtract(QWidget *parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("frmExtract"));
    auto *grid = new QGridLayout(this);
    grid->setSizeConstraint(QLayout::SetNoConstraint);
    txtFileName = new QLineEdit(this);
    cmdFilename = new QPushButton(QStringLiteral("..."), this);
    prgTotal = new QProgressBar(this);
    prgTrack = new QProgressBar(this);
    lstStatus = new QListWidget(this);
    cmdGo = new QPushButton(QStringLiteral("&Extract"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Close"), this);
    grid->addWidget(new QLabel(QStringLiteral("File name:"), this), 0, 0);
    grid->addWidget(txtFileName, 0, 1);
    grid->addWidget(cmdFilename, 0, 2);
    grid->addWidget(new QLabel(QStringLiteral("Track:"), this), 1, 0);
    grid->addWidget(prgTrack, 1, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Total:"), this), 2, 0);
    grid->addWidget(prgTotal, 2, 1, 1, 2);
    grid->addWidget(lstStatus, 3, 0, 1, 3);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdGo);
    buttons->addWidget(cmdCancel);
    grid->addLayout(buttons, 4, 0, 1, 3);
    auto *status = new QStatusBar(this);
    status->setSizeGripEnabled(false);
    grid->addWidget(status, 5, 0, 1, 3);
    smartStatusBarExtract = new KeyedStatusBar(status, this);
    smartStatusBarExtract->addPanel(QStringLiteral("TRACK"), KeyedPanel::Kind::Text, {}, 4800);
    smartStatusBarExtract->addPanel(QStringLiteral("TIME"), KeyedPanel::Kind::Text, {}, 2400);
    resize(560, 420);

    TRAPPED_CONNECT(cmdFilename, &QPushButton::clicked, frmExtract, cmdFilename_Click);
    TRAPPED_CONNECT(cmdGo, &QPushButton::clicked, frmExtract, cmdGo_Click);
    TRAPPED_CONNECT(cmdCancel, &QPushButton::clicked, frmExtract, cmdCancel_Click);
    // Form_Load: the "Audio" folder is only named here; the file box or the job makes use of it.
    mstrPath = App::Path() + QStringLiteral("/Audio");
}

frmExtract::~frmExtract() = default;

frmExtract *frmExtract::instance() {
    return openDialog();
}

void frmExtract::ShowExtract(CDRipperX *objRipper, int EncType, const QList<bool> &checked,
                             QWidget *owner) {
    frmExtract dialog(owner);
    openDialog() = &dialog;
    dialog.m_objRipper = objRipper;
    dialog.m_checked = checked;
    static const struct {
        const char *extension;
        const char *caption;
    } kinds[] = {{".mp3", "Extract MP3 Files"},
                 {".wav", "Extract Wav Files"},
                 {".ogg", "Extract Ogg-Vorbis Files"},
                 {".wma", "Extract Windows Media Files"}};
    if (EncType >= 0 && EncType < 4) {
        dialog.m_strExtension = QString::fromLatin1(kinds[EncType].extension);
        dialog.setWindowTitle(QString::fromLatin1(kinds[EncType].caption));
        dialog.txtFileName->setText(dialog.mstrPath + QStringLiteral("/Track") +
                                    dialog.m_strExtension);
    }
    if (objRipper)
        dialog.connectRipper();
    dialog.lstStatus->clear();
    dialog.smartStatusBarExtract->Item(QStringLiteral("TRACK"))->setText(QString());
    dialog.prgTotal->setValue(0);
    dialog.prgTrack->setValue(0);
    dialog.cmdGo->setEnabled(true);
    dialog.cmdFilename->setEnabled(true);
    dialog.exec();
}

void frmExtract::connectRipper() {
    CDRipperX *r = m_objRipper;
    TRAPPED_CONNECT(r, &CDRipperX::ExtractionStart, frmExtract, m_objRipper_ExtractionStart);
    TRAPPED_CONNECT(r, &CDRipperX::ExtractingFileStart, frmExtract,
                    m_objRipper_ExtractingFileStart);
    TRAPPED_CONNECT(r, &CDRipperX::ExtractionStatus, frmExtract, m_objRipper_ExtractionStatus);
    TRAPPED_CONNECT(r, &CDRipperX::ExtractingFileEnd, frmExtract, m_objRipper_ExtractingFileEnd);
    TRAPPED_CONNECT(r, &CDRipperX::ExtractionEnd, frmExtract, m_objRipper_ExtractionEnd);
    TRAPPED_CONNECT(r, &CDRipperX::EncoderFailed, frmExtract, m_objRipper_EncoderFailed);
}

void frmExtract::log(const QString &line) {
    lstStatus->addItem(line);
    // SelectList: the newest line stays in view.
    lstStatus->setCurrentRow(mintCounter);
    mintCounter = qint16(mintCounter + 1);
}

void frmExtract::cmdFilename_Click() {
    FileBoxService::Request request;
    request.mode = FileBoxService::Mode::Open;
    request.title = QStringLiteral("Extract Selected Audio Tracks");
    request.initialDirectory = mstrPath;
    request.fileName = QStringLiteral("Track") + m_strExtension;
    request.filter =
        QStringLiteral("Audio file (*") + m_strExtension + QStringLiteral(")|*") + m_strExtension;
    request.flags = 256;
    // A cancel raises its error into the trap; the pattern stays as it was.
    txtFileName->setText(FileBoxService::askOrThrow(request));
}

void frmExtract::cmdGo_Click() {
    mintCounter = 0;
    lstStatus->clear();
    const int count = int(m_checked.count(true));
    if (count == 0) {
        MsgBox(QStringLiteral("No Tracks Selected for Extraction."), vbInformation, information());
        close();
        return;
    }
    if (!m_objRipper)
        return;
    prgTotal->setRange(0, count);
    prgTotal->setValue(0);
    smartStatusBarExtract->Item(QStringLiteral("TRACK"))
        ->setText(QStringLiteral(" Preparing to extract audio..."));
    m_objRipper->ClearExtractionQueue();
    const QString pattern = txtFileName->text();
    for (m_nTrack = 1; m_nTrack <= m_checked.size(); ++m_nTrack) {
        if (!m_checked[m_nTrack - 1])
            continue;
        // The last four characters are the pattern's extension, whatever they are.
        const QString file = pattern.left(qMax(0, int(pattern.size()) - 4)) +
                             twoDigitsMin(m_nTrack) + m_strExtension;
        prgTrack->setRange(0, 100);
        prgTrack->setValue(0);
        if (m_objRipper->TrackIsAudio(m_nTrack)) {
            if (!m_objRipper->AddExtractionTrack(m_nTrack, file, m_nTrack))
                log(QStringLiteral("Track #") + twoDigitsMin(m_nTrack) +
                    QStringLiteral(" could not be added for extraction!"));
        } else {
            log(QStringLiteral("Track #") + twoDigitsMin(m_nTrack) +
                QStringLiteral(" is a data track and cannot be extracted!"));
        }
    }
    if (!m_objRipper->StartExtraction())
        MsgBox(QStringLiteral("Extraction could not be started."), vbInformation, information());
}

void frmExtract::m_objRipper_ExtractionStart() {
    log(QStringLiteral("Preparing for Audio Extraction!"));
    m_dteStartTime = QDateTime::currentDateTime();
    m_bRipping = true;
    cmdGo->setEnabled(false);
    cmdFilename->setEnabled(false);
    cmdCancel->setText(QStringLiteral("&Cancel"));
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

void frmExtract::m_objRipper_ExtractingFileStart(const QString &FileName, qint32 StartFrame,
                                                 qint32 EndFrame, qint16 QueueID) {
    m_lCurrentStartTrackFrame = StartFrame;
    m_lCurrentEndTrackFrame = EndFrame;
    log(QStringLiteral("Ripping Track#") + twoDigitsMin(QueueID) + QStringLiteral(" to ") +
        FileName);
    m_nTrack = QueueID;
    m_strCurrentFileName = FileName;
    showTrackProgress(StartFrame); // the panel and bar follow the file in work at once
}

void frmExtract::m_objRipper_ExtractingFileEnd() {
    log(QStringLiteral("Finished Ripping Track#") + twoDigitsMin(m_nTrack) +
        QStringLiteral(" to ") + m_strCurrentFileName);
    prgTotal->setValue(prgTotal->value() + 1);
}

void frmExtract::m_objRipper_ExtractionEnd() {
    log(QStringLiteral("Audio Ripping Complete!"));
    m_bRipping = false;
    cmdGo->setEnabled(true);
    cmdFilename->setEnabled(true);
    cmdCancel->setText(QStringLiteral("&Close"));
    QApplication::restoreOverrideCursor();
}

void frmExtract::m_objRipper_ExtractionStatus(qint32 Status, qint32 CurrentFrame) {
    const qint64 s = qAbs(m_dteStartTime.secsTo(QDateTime::currentDateTime()));
    smartStatusBarExtract->Item(QStringLiteral("TIME"))
        ->setText(QStringLiteral(" Time: ") + TwoDigits(s / 3600) + u':' + TwoDigits(s / 60) +
                  u':' + TwoDigits(s % 60));
    static const QHash<qint32, QString> texts = {
        {3, QStringLiteral("Speed Adjusted to Correct Error.")},
        {4, QStringLiteral("Read Failed.")},
        {5, QStringLiteral("Retrying Read.")},
        {6, QStringLiteral("Retry Failed.")},
        {8, QStringLiteral("File Aborted.")},
        {9, QStringLiteral("Buffer Could Not Be Initialized.")},
        {10, QStringLiteral("Error Creating File.")},
        {11, QStringLiteral("Error Writing File.")},
        {12, QStringLiteral("Error Closing File.")},
        {13, QStringLiteral("Drive Could Not Be Initialized.")},
        {14, QStringLiteral("Ripping Cancelled.")}};
    if (Status == 2) {
        log(QStringLiteral("Jitter Could Not Be Corrected.  ") + QString::number(CurrentFrame));
    } else if (Status == 7) {
        showTrackProgress(CurrentFrame);
    } else if (texts.contains(Status)) {
        log(texts.value(Status));
    }
    // The job runs on its own threads; nothing here waits for it, so no loop is run.
}

// A job counts from StartExtraction on, before its first event has arrived.
bool frmExtract::jobRunning() const {
    return m_bRipping || (m_objRipper && m_objRipper->Extracting());
}

void frmExtract::showTrackProgress(qint32 CurrentFrame) {
    const qint32 done = CurrentFrame - m_lCurrentStartTrackFrame;
    const qint32 all = m_lCurrentEndTrackFrame - m_lCurrentStartTrackFrame;
    smartStatusBarExtract->Item(QStringLiteral("TRACK"))
        ->setText(QStringLiteral(" Track: ") + twoDigitsMin(m_nTrack) + QString(5, u' ') +
                  CDRipperX::FramesToTime(done) + QStringLiteral(" of ") +
                  CDRipperX::FramesToTime(all));
    if (all > 0)
        prgTrack->setValue(int(qRound(double(done) * 100 / all)));
}

void frmExtract::cmdCancel_Click() {
    if (!jobRunning()) {
        close();
        return;
    }
    if (m_objRipper)
        m_objRipper->CancelExtraction();
}

void frmExtract::closeEvent(QCloseEvent *event) {
    if (jobRunning() && m_objRipper) {
        // The job's files are not left half-written: cancel and wait for its end.
        m_objRipper->CancelExtraction();
        QEventLoop wait;
        connect(m_objRipper, &CDRipperX::ExtractionEnd, &wait, &QEventLoop::quit);
        if (m_objRipper->Extracting())
            wait.exec();
    }
    lstStatus->clear();
    event->accept();
}

void frmExtract::reject() {
    if (!jobRunning())
        QDialog::reject();
    else
        cmdCancel_Click();
}

void frmExtract::m_objRipper_EncoderFailed(const QString &Description) {
    // The encoder's reason stands in the log beside the failure it explains.
    log(Description);
}
