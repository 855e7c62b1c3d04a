// The audio window's life in the frame: loading, activation and unloading with the frame's
// command states, the pop-up it fills, the removal commands and the size shown on the ruler.
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "app/modIniFunc.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/writer/CDWriterPro.h"
#include "frmAudio.h"
#include "modCDPlay.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QCloseEvent>
#include <QMenu>
#include <QSlider>
#include <QTimer>
#include <QTreeWidget>

namespace {

// What an open audio window makes available.
const QStringList &commandItems() {
    static const QStringList keys = {
        QStringLiteral("CLOSE"),           QStringLiteral("CLOSEALL"),
        QStringLiteral("SAVEASISO"),       QStringLiteral("WRITEDISC"),
        QStringLiteral("PRINTPREVIEW"),    QStringLiteral("PRINT"),
        QStringLiteral("PRINTERSETTINGS"), QStringLiteral("PAGESETTINGS")};
    return keys;
}

void setCommands(FrameServices *main, bool loaded) {
    main->setCommandsEnabled({QStringLiteral("NEW"), QStringLiteral("IMPPRESES")}, !loaded);
    main->setCommandsEnabled(commandItems(), loaded);
    main->setMenuShown(QStringLiteral("AUDIODISC"), loaded);
}

void setPanels(FrameServices *main, const QString &data, const QString &files,
               const QString &directories) {
    main->setStatusText(QStringLiteral("DATA"), data);
    main->setStatusText(QStringLiteral("FILES"), files);
    main->setStatusText(QStringLiteral("DIRECTORIES"), directories);
}

} // namespace

void frmAudio::Form_Load() {
    FrameServices *main = services();
    const qint16 left = CInt(sGetINI(gstrINIFile, QStringLiteral("General"),
                                     QStringLiteral("AudioImage Left"), QStringLiteral("0")));
    QWidget *outer = parentWidget() ? parentWidget() : this;
    outer->setGeometry(Twips::toPixels(left), 0, Twips::toPixels(9000), Twips::toPixels(6000));
    gblnDisctypeIsData = 1;
    main->SetTypeSize();
    setWindowTitle(QStringLiteral("Audio Disc"));
    Slider1->setMinimum(0);
    Slider1->setMaximum(100);
    modCDPlay::Initialize(this);
    fMovingSlider = false;
    setCommands(main, true);
    main->setVolumeIdentifierText(QStringLiteral("Audio CD"));
    main->setVolumeIdentifierEnabled(false);
    setPanels(main, QStringLiteral(" Audio Disc Size:"), QString(), QStringLiteral(" Tracks:"));
    buildPopup();
    main->EnableForm(true);
    EnableForm(true);
    engine()->setUseFileModifiedDate(true);
}

void frmAudio::Form_Activate() {
    ErrorTrap::run("Form_Activate", "frmAudio", [this] {
        services()->setCommandsEnabled({QStringLiteral("CLOSE"), QStringLiteral("CLOSEALL")}, true);
    });
}

void frmAudio::Form_Unload(int &Cancel) {
    Cancel = gblnUnloadOk ? 0 : 1;
    gblnDisctypeIsData = 99;
    // Nothing of the user's stays open behind a closed window.
    Timer1->stop();
    modCDPlay::StopPlay();
    modCDPlay::CloseFile();
    FrameServices *main = services();
    setCommands(main, false);
    main->setVolumeIdentifierText(QString());
    setPanels(main, QStringLiteral(" Data Image Size:"), QStringLiteral(" Files:"),
              QStringLiteral(" Directories:"));
    main->setStatusPicture(QStringLiteral("FILES"), QString());
    main->clearSizeBar();
}

void frmAudio::closeEvent(QCloseEvent *event) {
    // The window is in use by the drop that is being added.
    if (m_dropping) {
        event->ignore();
        return;
    }
    int Cancel = 0;
    ErrorTrap::run("Form_Unload", "frmAudio", [&] { Form_Unload(Cancel); });
    if (Cancel != 0) {
        event->ignore();
        return;
    }
    if (m_popup)
        m_popup->clear();
    event->accept();
}

void frmAudio::buildPopup() {
    m_popup = services()->popupMenu(FrameServices::Popup::Audio);
    m_popup->clear();
    auto add = [this](const char *name, const QString &caption, void (frmAudio::*handler)()) {
        QAction *action = m_popup->addAction(caption);
        action->setObjectName(QLatin1String(name));
        connect(action, &QAction::triggered, this, [this, name, handler] {
            ErrorTrap::run(name, "mdiMain", [&] { (this->*handler)(); });
        });
    };
    add("mnuRemoveAudioTrack", QStringLiteral("&Remove Audio Track"), &frmAudio::RemoveTrack);
    add("mnuClearAudioTracks", QStringLiteral("&Clear All Tracks"), &frmAudio::ClearTracks);
}

// --- Commands -----------------------------------------------------------------------------

void frmAudio::RemoveTrack() {
    const int index = selectedIndex();
    if (index == 0)
        return;
    engine()->RemoveAudioTrack(index);
    LoadTrackList();
    modCDPlay::StopPlay();
    if (lvwAudioTracks->topLevelItemCount() == 0) {
        disablePlayer();
        return;
    }
    // The row that takes the removed one's place is selected and heard.
    QTreeWidgetItem *next =
        lvwAudioTracks->topLevelItem(qMin(index, lvwAudioTracks->topLevelItemCount()) - 1);
    lvwAudioTracks->setCurrentItem(next);
    modCDPlay::OpenFile(pathOf(next));
    modCDPlay::Play();
}

void frmAudio::ClearTracks() {
    engine()->ClearAudioTracks();
    lvwAudioTracks->clear();
    LoadTrackList();
    modCDPlay::StopPlay();
    disablePlayer();
}

// --- The size on the frame's ruler --------------------------------------------------------

void frmAudio::LoadTrackList() {
    CDWriterPro *engine = this->engine();
    gintTracksToWrite = qint16(engine->AudioTrackCount());
    Long lngFree = 0;
    if (glngCurrentDrive > -1)
        lngFree = engine->FreeBlocks();
    const int selected = selectedIndex();
    lvwAudioTracks->clear();
    engine->ListAudioTracks();
    // The selection stays on its row, so a command after a change acts where the user was.
    if (selected > 0 && lvwAudioTracks->topLevelItemCount() > 0)
        lvwAudioTracks->setCurrentItem(
            lvwAudioTracks->topLevelItem(qMin(selected, lvwAudioTracks->topLevelItemCount()) - 1));
    const Long lngSize = engine->AudioImageBlocks();
    const double bytes = engine->BlocksToBytes(lngSize, 1);
    // Megabytes of data blocks are scaled to the audio frames the disc really takes.
    const Integer megabytes = CInt(bytes / 1024 / 1024);
    Long scaled = CLng(double(megabytes) * 1.14);
    if (scaled >= 10016)
        scaled = 10015;
    const qint32 shown = services()->setSizeBar(scaled);
    // Five megabytes stay in reserve; the warning tells, the write may still be started.
    if (engine->LastSessionStatus() != CDWriterPro::SessionClosed &&
        engine->MediaType() != CDWriterPro::MediaNone && GetFreeSpace(engine, 3) - 5 <= shown)
        MsgBox(QStringLiteral("Audio image size is bigger than free space on media!\nYou must "
                              "remove some files from the image."),
               vbExclamation, App::ProductName() + QStringLiteral(" - Warning"));
    services()->setStatusText(QStringLiteral("DATA"),
                              QStringLiteral(" ") + engine->BlocksToTime(lngSize) +
                                  QStringLiteral(" of ") + engine->BlocksToTime(lngFree) +
                                  QStringLiteral(" Used"));
    gintTracksToWrite = qint16(engine->AudioTrackCount());
}
