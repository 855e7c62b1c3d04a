// The audio window's life in the frame: loading, activation and unloading with the frame's
// command states, the pop-up it fills, the removal commands and the size shown on the ruler.
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "app/modIniFunc.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/writer/CDWriterPro.h"
#include "frmAudio.h"
#include "modCDPlay.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedPanel.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/MessageBoxService.h"
#include "widgets/Twips.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QSlider>
#include <QTimer>
#include <QTreeWidget>

namespace {

mdiMain *frame() {
    return DefaultInstance<mdiMain>::peek();
}

// What an open audio window makes available.
const QStringList &menuItems() {
    static const QStringList keys = {
        QStringLiteral("CLOSE"),           QStringLiteral("CLOSEALL"),
        QStringLiteral("SAVEASISO"),       QStringLiteral("WRITEDISC"),
        QStringLiteral("PRINTPREVIEW"),    QStringLiteral("PRINT"),
        QStringLiteral("PRINTERSETTINGS"), QStringLiteral("PAGESETTINGS")};
    return keys;
}

const QStringList &toolbarItems() {
    static const QStringList keys = {QStringLiteral("CLOSE"), QStringLiteral("CLOSEALL"),
                                     QStringLiteral("WRITEDISC"), QStringLiteral("PRINTPREVIEW"),
                                     QStringLiteral("PRINT")};
    return keys;
}

void setCommands(mdiMain *main, bool loaded) {
    for (const char *key : {"NEW", "IMPPRESES"}) {
        main->SmartMenu->Item(QLatin1String(key))->setEnabled(!loaded);
        main->SmartToolbar->Item(QLatin1String(key))->setEnabled(!loaded);
    }
    for (const QString &key : menuItems())
        main->SmartMenu->Item(key)->setEnabled(loaded);
    for (const QString &key : toolbarItems())
        main->SmartToolbar->Item(key)->setEnabled(loaded);
    KeyedItem *audio = main->SmartMenu->Item(QStringLiteral("AUDIODISC"));
    audio->setShown(loaded ? 1 : 0);
    audio->setEnabled(loaded);
    audio->setChecked(loaded);
}

void setPanels(mdiMain *main, const QString &data, const QString &files,
               const QString &directories) {
    main->smartStatusBar->Item(QStringLiteral("DATA"))->setText(data);
    main->smartStatusBar->Item(QStringLiteral("FILES"))->setText(files);
    main->smartStatusBar->Item(QStringLiteral("DIRECTORIES"))->setText(directories);
}

} // namespace

void frmAudio::Form_Load() {
    mdiMain *main = frame();
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
    main->txtVolIdentifier->setText(QStringLiteral("Audio CD"));
    main->txtVolIdentifier->setEnabled(false);
    setPanels(main, QStringLiteral(" Audio Disc Size:"), QString(), QStringLiteral(" Tracks:"));
    buildPopup();
    main->EnableForm(true);
    EnableForm(true);
    main->Tessaly->setUseFileModifiedDate(true);
}

void frmAudio::Form_Activate() {
    ErrorTrap::run("Form_Activate", "frmAudio", [] {
        mdiMain *main = frame();
        if (!main)
            return;
        for (const char *key : {"CLOSE", "CLOSEALL"}) {
            main->SmartMenu->Item(QLatin1String(key))->setEnabled(true);
            main->SmartToolbar->Item(QLatin1String(key))->setEnabled(true);
        }
    });
}

void frmAudio::Form_Unload(int &Cancel) {
    Cancel = gblnUnloadOk ? 0 : 1;
    gblnDisctypeIsData = 99;
    // Nothing of the user's stays open behind a closed window.
    Timer1->stop();
    modCDPlay::StopPlay();
    modCDPlay::CloseFile();
    mdiMain *main = frame();
    if (!main)
        return;
    setCommands(main, false);
    main->txtVolIdentifier->setText(QString());
    setPanels(main, QStringLiteral(" Data Image Size:"), QStringLiteral(" Files:"),
              QStringLiteral(" Directories:"));
    main->smartStatusBar->Item(QStringLiteral("FILES"))->setImageKey(QString());
    main->prbSize->resize(0, main->prbSize->height());
    main->prbSize->setValue(0);
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
    mdiMain *main = frame();
    m_popup = main->mnuPopUpAudio;
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
    frame()->Tessaly->RemoveAudioTrack(index);
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
    frame()->Tessaly->ClearAudioTracks();
    lvwAudioTracks->clear();
    LoadTrackList();
    modCDPlay::StopPlay();
    disablePlayer();
}

// --- The size on the frame's ruler --------------------------------------------------------

void frmAudio::LoadTrackList() {
    mdiMain *main = frame();
    CDWriterPro *engine = main->Tessaly;
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
    // A bar without range would draw as busy; an empty list has no width anyway.
    main->prbSize->setMaximum(qMax<qint32>(scaled, 1));
    Long width = scaled;
    width *= 10;
    main->prbSize->resize(Twips::toPixels(width), main->prbSize->height());
    main->prbSize->setValue(qMin<qint32>(width, scaled));
    if (engine->LastSessionStatus() != CDWriterPro::SessionClosed &&
        engine->MediaType() != CDWriterPro::MediaNone)
        warnFull();
    main->smartStatusBar->Item(QStringLiteral("DATA"))
        ->setText(QStringLiteral(" ") + engine->BlocksToTime(lngSize) + QStringLiteral(" of ") +
                  engine->BlocksToTime(lngFree) + QStringLiteral(" Used"));
    gintTracksToWrite = qint16(engine->AudioTrackCount());
}

void frmAudio::warnFull() {
    mdiMain *main = frame();
    // Five megabytes stay in reserve; the warning tells, the write may still be started.
    if (GetFreeSpace(main->Tessaly, 3) - 5 <= main->prbSize->value())
        MsgBox(QStringLiteral("Audio image size is bigger than free space on media!\nYou must "
                              "remove some files from the image."),
               vbExclamation, App::ProductName() + QStringLiteral(" - Warning"));
}
