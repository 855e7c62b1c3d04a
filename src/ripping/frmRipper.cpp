#include "frmRipper.h"

#include "RippingWindows.h"
#include "frmExtract.h"
#include "frmMp3Settings.h"
#include "frmVorbisSettings.h"
#include "frmWMASettings.h"

#include "app/FormRegistry.h"
#include "base/App.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "engine/encoders/MP3EncoderX.h"
#include "engine/encoders/VorbisEncoderX.h"
#include "engine/encoders/WMAEncoderX.h"
#include "engine/ripper/CDRipperX.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/MessageBoxService.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
constexpr const char *Module = "frmRipper";

QString twoDigits(qint32 n) {
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}
} // namespace

frmRipper::frmRipper(const WindowContext &context, QWidget *parent)
    : frmRipper(TessalyRipper(context), parent) {}

frmRipper::frmRipper(CDRipperX *ripper, QWidget *parent)
    : QWidget(parent)
    , MP3EncoderXP(std::make_shared<MP3EncoderX>())
    , VorbisEncoderXP(std::make_shared<VorbisEncoderX>())
    , WMAEncoderXP(std::make_shared<WMAEncoderX>())
    , m_ripper(ripper) {
    setObjectName(QStringLiteral("frmRipper"));
    // What the MP3 dialog's OK kept last time holds from the start.
    frmMp3Settings::ApplySavedSettings(*MP3EncoderXP, *VorbisEncoderXP);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Rip Audio CD"));
    buildControls();
}

frmRipper::~frmRipper() {
    DefaultInstance<frmRipper>::release(this);
    // Form_Unload: the encoder is dropped; the drive's playback goes on.
    m_objEncoder.reset();
}

void frmRipper::buildControls() {
    auto *layout = new QVBoxLayout(this);
    auto *menuBar = new QMenuBar(this);
    layout->setMenuBar(menuBar);
    smartMenuRipper = new KeyedMenu(menuBar, this);
    smartMenuRipper->addMenu(QStringLiteral("FILE"), QStringLiteral("&File"));
    smartMenuRipper->addItem(QStringLiteral("FILE"), QStringLiteral("EXTRACT"),
                             QStringLiteral("Extract A&udio..."));
    smartMenuRipper->addSeparator(QStringLiteral("FILE"));
    smartMenuRipper->addItem(QStringLiteral("FILE"), QStringLiteral("EXIT"),
                             QStringLiteral("E&xit"));
    smartMenuRipper->addMenu(QStringLiteral("TRACKS"), QStringLiteral("&Tracks"));
    smartMenuRipper->addItem(QStringLiteral("TRACKS"), QStringLiteral("SELECTALLTRACKS"),
                             QStringLiteral("Select All Tracks"));
    smartMenuRipper->addItem(QStringLiteral("TRACKS"), QStringLiteral("DESELECTALLTRACKS"),
                             QStringLiteral("Deselect All Tracks"));
    smartMenuRipper->addMenu(QStringLiteral("SETTINGS"), QStringLiteral("&Settings"));
    smartMenuRipper->addItem(QStringLiteral("SETTINGS"), QStringLiteral("MP3SETTINGS"),
                             QStringLiteral("MP3 Settings..."));
    smartMenuRipper->addItem(QStringLiteral("SETTINGS"), QStringLiteral("OGGVORBISSETTINGS"),
                             QStringLiteral("Ogg Vorbis Settings..."));
    smartMenuRipper->addItem(QStringLiteral("SETTINGS"), QStringLiteral("WMASETTINGS"),
                             QStringLiteral("Windows Media Settings..."));
    smartMenuRipper->addMenu(QStringLiteral("HELP"), QStringLiteral("&Help"));
    smartMenuRipper->addItem(QStringLiteral("HELP"), QStringLiteral("ABOUT"),
                             QStringLiteral("&About..."));

    auto *top = new QHBoxLayout;
    cboDevices = new QComboBox(this);
    cboSpeeds = new QComboBox(this);
    cboEncoders = new QComboBox(this);
    const QStringList encoders = {"Mp3", "Wav", "Vorbis", "WMA"};
    for (int i = 0; i < encoders.size(); ++i)
        cboEncoders->addItem(encoders[i], i);
    top->addWidget(new QLabel(QStringLiteral("Drive:"), this));
    top->addWidget(cboDevices, 3);
    top->addWidget(new QLabel(QStringLiteral("Speed:"), this));
    top->addWidget(cboSpeeds, 1);
    top->addWidget(new QLabel(QStringLiteral("Output:"), this));
    top->addWidget(cboEncoders, 1);
    layout->addLayout(top);

    lvwTracks = new QTreeWidget(this);
    lvwTracks->setRootIsDecorated(false);
    lvwTracks->setHeaderLabels({QString(), "Track:", "Start Time:", "End Time:", "Length:",
                                "Track Type:", "Copy Allowed:"});
    lvwTracks->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    layout->addWidget(lvwTracks, 1);

    auto *player = new QGroupBox(QStringLiteral("Player Controls:"), this);
    auto *playerRow = new QHBoxLayout(player);
    auto button = [this](QLayout *row, const QString &text) {
        auto *b = new QPushButton(text, this);
        row->addWidget(b);
        return b;
    };
    cmdBack = button(playerRow, QStringLiteral("|<<"));
    cmdPlay = button(playerRow, QStringLiteral("Play"));
    cmdPause = button(playerRow, QStringLiteral("Pause"));
    cmdStop = button(playerRow, QStringLiteral("Stop"));
    cmdForward = button(playerRow, QStringLiteral(">>|"));
    cmdEject = button(playerRow, QStringLiteral("Eject"));
    cmdLoad = button(playerRow, QStringLiteral("Load"));
    layout->addWidget(player);

    auto *bottom = new QHBoxLayout;
    cmdSelectAll = button(bottom, QStringLiteral("Select All Tracks"));
    cmdDeselectAll = button(bottom, QStringLiteral("Deselect All Tracks"));
    bottom->addStretch();
    cmdSettings = button(bottom, QStringLiteral("Encoder Settings..."));
    cmdExtract = button(bottom, QStringLiteral("Extract A&udio..."));
    cmdCancel = button(bottom, QStringLiteral("&Close"));
    layout->addLayout(bottom);

    auto *status = new QStatusBar(this);
    status->setSizeGripEnabled(false);
    layout->addWidget(status);
    smartStatusBarRipper = new KeyedStatusBar(status, this);
    smartStatusBarRipper->addPanel(QStringLiteral("MEDIA"), KeyedPanel::Kind::Text, {}, 2400);
    smartStatusBarRipper->addPanel(QStringLiteral("TRACK"), KeyedPanel::Kind::Text, {}, 2400);
    smartStatusBarRipper->addPanel(QStringLiteral("TIME"), KeyedPanel::Kind::Text, {}, 2400);

    Timer1 = new QTimer(this);
    Timer1->setInterval(200);
    TRAPPED_CONNECT(cboDevices, &QComboBox::activated, frmRipper, cboDevices_Click);
    TRAPPED_CONNECT(cboSpeeds, &QComboBox::activated, frmRipper, cboSpeeds_Click);
    TRAPPED_CONNECT(cboEncoders, &QComboBox::currentIndexChanged, frmRipper, cboEncoders_Click);
    TRAPPED_CONNECT(cmdPlay, &QPushButton::clicked, frmRipper, cmdPlay_Click);
    TRAPPED_CONNECT(cmdPause, &QPushButton::clicked, frmRipper, cmdPause_Click);
    TRAPPED_CONNECT(cmdStop, &QPushButton::clicked, frmRipper, cmdStop_Click);
    TRAPPED_CONNECT(cmdBack, &QPushButton::clicked, frmRipper, cmdBack_Click);
    TRAPPED_CONNECT(cmdForward, &QPushButton::clicked, frmRipper, cmdForward_Click);
    TRAPPED_CONNECT(cmdEject, &QPushButton::clicked, frmRipper, cmdEject_Click);
    TRAPPED_CONNECT(cmdLoad, &QPushButton::clicked, frmRipper, cmdLoad_Click);
    TRAPPED_CONNECT(cmdExtract, &QPushButton::clicked, frmRipper, cmdExtract_Click);
    TRAPPED_CONNECT(cmdSettings, &QPushButton::clicked, frmRipper, cmdSettings_Click);
    TRAPPED_CONNECT(cmdCancel, &QPushButton::clicked, frmRipper, cmdCancel_Click);
    TRAPPED_CONNECT(Timer1, &QTimer::timeout, frmRipper, Timer1_Timer);
    TRAPPED_CONNECT(smartMenuRipper, &KeyedMenu::Click, frmRipper, smartMenuRipper_Click);
    connect(cmdSelectAll, &QPushButton::clicked, this, [this] { SelectTracks(true); });
    connect(cmdDeselectAll, &QPushButton::clicked, this, [this] { SelectTracks(false); });
    if (m_ripper)
        TRAPPED_CONNECT(m_ripper.data(), &CDRipperX::PlayFailed, frmRipper,
                        TessalyRipper_PlayFailed);
}

void frmRipper::Form_Load() {
    cboEncoders->setCurrentIndex(0);
    cboEncoders_Click();
    for (qint32 i = 0; m_ripper && i < m_ripper->DriveCount(); ++i)
        cboDevices->addItem(m_ripper->DriveLetter(i) + QStringLiteral(": ") +
                            m_ripper->DriveVendor(i) + u' ' + m_ripper->DriveProduct(i));
    if (cboDevices->count() > 0) {
        cboDevices->setCurrentIndex(0);
        cboDevices_Click();
    }
}

void frmRipper::cboDevices_Click() {
    Timer1->stop();
    lvwTracks->clear();
    if (m_ripper && m_ripper->SelectDrive(cboDevices->currentIndex())) {
        LoadDriveSpeeds();
        m_bReadTOC = false;
        if (m_ripper->ReadTOC()) {
            for (qint32 i = 1; i <= m_ripper->TrackCount(); ++i) {
                const qint32 start = m_ripper->TrackStartFrame(i);
                const qint32 length = m_ripper->TrackLengthFrames(i);
                auto *row = new QTreeWidgetItem(lvwTracks);
                row->setCheckState(0, Qt::Unchecked);
                row->setText(1, twoDigits(i));
                row->setText(2, CDRipperX::FramesToTime(start));
                row->setText(3, CDRipperX::FramesToTime(start + length));
                row->setText(4, CDRipperX::FramesToTime(length));
                row->setText(5, m_ripper->TrackIsAudio(i) ? QStringLiteral("Audio")
                                                          : QStringLiteral("Data "));
                row->setText(6, m_ripper->TrackCopyProtected(i) ? QStringLiteral("N")
                                                                : QStringLiteral("Y"));
            }
            (void)m_ripper->TotalFrames();
        }
    }
    Timer1->start();
}

void frmRipper::LoadDriveSpeeds() {
    cboSpeeds->clear();
    cboSpeeds->addItem(QStringLiteral("Auto"), 0);
    const qint16 max = m_ripper ? m_ripper->MaxReadSpeed() : qint16(0);
    for (qint32 speed = 1; speed <= max; speed = speed <= 4 ? speed * 2 : speed + 4)
        cboSpeeds->addItem(QStringLiteral("%1x (%2 kB/sec.)").arg(speed).arg(speed * 150), speed);
    cboSpeeds->setCurrentIndex(0);
}

void frmRipper::cboSpeeds_Click() {
    if (m_ripper)
        m_ripper->SetReadSpeed(cboSpeeds->currentData().toInt());
}

void frmRipper::cboEncoders_Click() {
    const int choice = cboEncoders->currentData().toInt();
    m_objEncoder.reset();
    if (choice == 0)
        m_objEncoder = MP3EncoderXP;
    else if (choice == 2)
        m_objEncoder = VorbisEncoderXP;
    else if (choice == 3)
        m_objEncoder = WMAEncoderXP;
    if (!m_ripper)
        return;
    if (m_objEncoder)
        m_ripper->SetEncoder(m_objEncoder);
    m_ripper->setUseEncoder(bool(m_objEncoder));
}

void frmRipper::EnablePlayButtons(bool bEnable) {
    for (QPushButton *b : {cmdBack, cmdForward, cmdPause, cmdPlay, cmdStop})
        b->setEnabled(bEnable);
}

void frmRipper::SelectTracks(bool blnSelect) {
    for (int i = 0; i < lvwTracks->topLevelItemCount(); ++i)
        lvwTracks->topLevelItem(i)->setCheckState(0, blnSelect ? Qt::Checked : Qt::Unchecked);
}

void frmRipper::GetSelectedTrackIndex(qint32 &index) {
    index = 0;
    if (QTreeWidgetItem *row = lvwTracks->currentItem(); row && row->isSelected())
        index = lvwTracks->indexOfTopLevelItem(row) + 1;
}

void frmRipper::selectRow(int index) {
    QTreeWidgetItem *row = lvwTracks->topLevelItem(index - 1);
    lvwTracks->setCurrentItem(row);
    row->setSelected(true);
}

void frmRipper::cmdPlay_Click() {
    qint32 index = 0;
    GetSelectedTrackIndex(index);
    if (m_ripper)
        m_ripper->PlayTrack(index);
}

void frmRipper::cmdPause_Click() {
    if (!m_ripper)
        return;
    if (m_ripper->Status() == CDRipperX::StatusPaused)
        m_ripper->ResumePlay();
    else
        m_ripper->PausePlay();
}

void frmRipper::cmdStop_Click() {
    if (m_ripper)
        m_ripper->StopPlay();
}

void frmRipper::cmdEject_Click() {
    if (m_ripper)
        m_ripper->EjectDisc();
}

void frmRipper::cmdLoad_Click() {
    if (m_ripper)
        m_ripper->LoadDisc();
}

void frmRipper::cmdBack_Click() {
    qint32 index = 0;
    GetSelectedTrackIndex(index);
    if (index > 1) {
        selectRow(index - 1);
        cmdPlay_Click();
    }
}

void frmRipper::cmdForward_Click() {
    qint32 index = 0;
    GetSelectedTrackIndex(index);
    if (index >= 1 && index < lvwTracks->topLevelItemCount()) {
        selectRow(index + 1);
        cmdPlay_Click();
    }
}

void frmRipper::Timer1_Timer() {
    if (!m_ripper)
        return;
    KeyedPanel *media = smartStatusBarRipper->Item(QStringLiteral("MEDIA"));
    switch (m_ripper->Status()) {
    case CDRipperX::StatusPlaying:
        media->setText(QStringLiteral(" Playing..."));
        EnablePlayButtons(true);
        break;
    case CDRipperX::StatusPaused:
        media->setText(QStringLiteral(" Paused..."));
        EnablePlayButtons(true);
        break;
    case CDRipperX::StatusNoDisc:
        media->setText(QStringLiteral(" No Disc Loaded..."));
        EnablePlayButtons(false);
        lvwTracks->clear();
        m_bReadTOC = true;
        break;
    case CDRipperX::StatusLoaded:
        if (m_bReadTOC)
            cboDevices_Click();
        media->setText(QStringLiteral(" Disc Loaded..."));
        EnablePlayButtons(true);
        break;
    default:
        media->setText(QStringLiteral(" No Status"));
        break;
    }
    smartStatusBarRipper->Item(QStringLiteral("TRACK"))
        ->setText(QString(10, u' ') + QStringLiteral(" Track: ") +
                  twoDigits(m_ripper->CurrentTrack()));
    smartStatusBarRipper->Item(QStringLiteral("TIME"))
        ->setText(QStringLiteral(" Time: ") + CDRipperX::FramesToTime(m_ripper->CurrentFrame()));
}

void frmRipper::cmdExtract_Click() {
    if (!m_ripper)
        return;
    Timer1->stop();
    QList<bool> checked;
    for (int i = 0; i < lvwTracks->topLevelItemCount(); ++i)
        checked.append(lvwTracks->topLevelItem(i)->checkState(0) == Qt::Checked);
    frmExtract::ShowExtract(m_ripper, cboEncoders->currentData().toInt(), checked, this);
    Timer1->start();
}

void frmRipper::openWindow(const QString &name, const QString &what) {
    // A window not built yet says so, in the words the frame's commands use.
    if (!FormRegistry::open(name))
        MsgBox(what + QStringLiteral(" is not available in this version of ") + App::ProductName() +
                   QStringLiteral(" yet."),
               vbInformation, App::ProductName() + QStringLiteral(" - Information"));
}

void frmRipper::cmdSettings_Click() {
    // The MP3 page, whatever output is chosen.
    frmMp3Settings::ShowForm(MP3EncoderXP, VorbisEncoderXP, this);
}

void frmRipper::cmdCancel_Click() {
    close();
}

void frmRipper::smartMenuRipper_Click(KeyedItem *Item) {
    const QString key = Item->Key();
    if (key == u"SELECTALLTRACKS")
        SelectTracks(true);
    else if (key == u"DESELECTALLTRACKS")
        SelectTracks(false);
    else if (key == u"EXIT")
        close();
    else if (key == u"EXTRACT")
        cmdExtract_Click();
    else if (key == u"MP3SETTINGS")
        cmdSettings_Click();
    else if (key == u"OGGVORBISSETTINGS")
        frmVorbisSettings::ShowForm(VorbisEncoderXP, this);
    else if (key == u"WMASETTINGS")
        frmWMASettings::ShowForm(WMAEncoderXP, this);
    else if (key == u"ABOUT")
        openWindow(QStringLiteral("frmAbout"), QStringLiteral("About"));
}

void frmRipper::TessalyRipper_PlayFailed(const QString &message) {
    MsgBox(message, vbInformation, App::ProductName() + QStringLiteral(" - Information"));
}
