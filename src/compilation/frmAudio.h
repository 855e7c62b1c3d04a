#pragma once

#include "app/CompilationWindow.h"
#include "app/FrameServices.h"

#include <QPointer>
#include <QWidget>

class CDWriterPro;
class QMenu;
class QMimeData;
class QPushButton;
class QSlider;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

// The audio compilation: a view of the engine's track list, rebuilt after every change, with
// a player for the selected track above it. Waves come in by drops only; a track dragged
// within the list moves. One default instance, a child of the frame, made with the engine and
// the frame's services. On the UI thread.
class frmAudio : public QWidget, public CompilationWindow {
    Q_OBJECT
public:
    explicit frmAudio(const WindowContext &context);
    ~frmAudio() override;

    QTreeWidget *lvwAudioTracks = nullptr; // columns: track, file name, type, time
    QPushButton *cmdPlay = nullptr;
    QPushButton *cmdStop = nullptr;
    QPushButton *cmdPause = nullptr;
    QSlider *Slider1 = nullptr; // per cent of the track
    QTimer *Timer1 = nullptr;
    bool fMovingSlider = false;
    bool OnPause = false;

    // The procedures others call.
    void LoadTrackList();
    void EnableForm(bool blnEnable) override;
    // The row of a track as the engine lists it.
    void Tessaly_EnumAudioTrack(const QString &sFileName, qint32 lTotalSizeBlocks,
                                qint32 lTotalSizeBytes, qint32 lTrackNumber);
    static bool IsPathDirectory(const QString &strPath);
    void SizeControls();

    // Adds dropped wave files before the selected track; anything but a list of files is
    // ignored.
    void OLEDragDrop(const QMimeData *Data);
    // Moves track `from` (from 1) before the track at `to` (from 1; past the end appends).
    void moveTrack(int from, int to);
    // The commands of the pop-up, the menu and the toolbar.
    void RemoveTrack();
    void ClearTracks();

    void lvwAudioTracks_ItemClick(QTreeWidgetItem *Item);
    void cmdPlay_Click();
    void cmdPause_Click();
    void cmdStop_Click();
    void Timer1_Timer();
    void Slider1_MouseDown();
    void Slider1_MouseUp();

    void Form_Load();
    void Form_Activate() override;

    // The compilation as the frame and the write dialog see it.
    QWidget *widget() override { return this; }
    void Reload() override { LoadTrackList(); }
    // An audio compilation has no directories and no names to change.
    bool removeSelected(bool) override { return false; }
    bool renameSelected(bool) override { return false; }
    CompilationListing listing() override;
    CDWriterPro *engine() const { return m_context.engine; }
    FrameServices *services() const { return m_context.frame; }
    void Form_Unload(int &Cancel);

    // The path of a row (sub item 1).
    static QString pathOf(const QTreeWidgetItem *item);
    // The index (from 1) of the selected row, 0 for none.
    int selectedIndex() const;

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool dropOnList(QEvent *event);
    void buildPopup();
    void disablePlayer();

    WindowContext m_context;
    QPointer<QMenu> m_popup;
    // A drop lets events in while it adds; meanwhile the window takes no other change.
    bool m_dropping = false;
};
