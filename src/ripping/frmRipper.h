#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

class AudioEncoder;
class MP3EncoderX;
class VorbisEncoderX;
class WMAEncoderX;
class CDRipperX;
class KeyedItem;
class KeyedMenu;
class KeyedStatusBar;
class QComboBox;
class QPushButton;
class QTimer;
class QTreeWidget;
struct WindowContext;

// The audio ripper window: the disc's tracks with their times and flags, the player, and the
// way to the extraction dialog. Shows the ripper engine it is handed; polls it on a timer, as
// a drive gives no notice of a disc coming or going. UI thread.
class frmRipper : public QWidget {
    Q_OBJECT
public:
    // Made by the frame's command with the frame's ripper.
    explicit frmRipper(const WindowContext &context, QWidget *parent = nullptr);
    explicit frmRipper(CDRipperX *ripper, QWidget *parent = nullptr);
    ~frmRipper() override;

    QComboBox *cboDevices = nullptr;
    QComboBox *cboSpeeds = nullptr;
    QComboBox *cboEncoders = nullptr;
    QTreeWidget *lvwTracks = nullptr;
    QPushButton *cmdPlay = nullptr, *cmdPause = nullptr, *cmdStop = nullptr;
    QPushButton *cmdBack = nullptr, *cmdForward = nullptr, *cmdEject = nullptr, *cmdLoad = nullptr;
    QPushButton *cmdSelectAll = nullptr, *cmdDeselectAll = nullptr;
    QPushButton *cmdSettings = nullptr, *cmdExtract = nullptr, *cmdCancel = nullptr;
    QTimer *Timer1 = nullptr;
    KeyedStatusBar *smartStatusBarRipper = nullptr;
    KeyedMenu *smartMenuRipper = nullptr;

    bool m_bReadTOC = false;
    std::shared_ptr<AudioEncoder> m_objEncoder;
    // The three encoders of the window, each with the settings its dialog gave it.
    std::shared_ptr<MP3EncoderX> MP3EncoderXP;
    std::shared_ptr<VorbisEncoderX> VorbisEncoderXP;
    std::shared_ptr<WMAEncoderX> WMAEncoderXP;

    void Form_Load();
    void EnablePlayButtons(bool bEnable);
    void SelectTracks(bool blnSelect);
    void GetSelectedTrackIndex(qint32 &index);
    void LoadDriveSpeeds();

    void cboDevices_Click();
    void cboSpeeds_Click();
    void cboEncoders_Click();
    void cmdPlay_Click();
    void cmdPause_Click();
    void cmdStop_Click();
    void cmdEject_Click();
    void cmdLoad_Click();
    void cmdBack_Click();
    void cmdForward_Click();
    void cmdExtract_Click();
    void cmdSettings_Click();
    void cmdCancel_Click();
    void Timer1_Timer();
    void smartMenuRipper_Click(KeyedItem *Item);
    void TessalyRipper_PlayFailed(const QString &message);

private:
    void buildControls();
    void selectRow(int index); // 1-based
    // Opens another window of the program by name, or says it is not there.
    void openWindow(const QString &name, const QString &what);

    QPointer<CDRipperX> m_ripper;
};
