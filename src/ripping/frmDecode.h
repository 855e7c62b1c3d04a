#pragma once

#include "app/FrameServices.h"

#include <QWidget>

#include <array>
#include <memory>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QStackedWidget;
class QTabBar;
class clsMP3;

// The MP3 tool: encodes a wave file to MP3 or decodes an MP3 file to wave by running lame with
// the switches its options make, shown all the time in lblStatus. One default instance, a child
// of the frame. On the UI thread.
class frmDecode : public QWidget {
    Q_OBJECT
public:
    // Needs nothing of the frame but its document area, which the registry places it in.
    explicit frmDecode(const WindowContext &context = {});
    ~frmDecode() override;

    void Form_Load();
    void InitializeOptions();
    void DisplaySwitches();
    void GetFileNames();
    void cmdEncode_Click();
    void cmdDecode_Click();
    void cmdClose_Click();
    void tbsDecoder_Click();
    // KeyCode and Shift as the keyboard reports them: 9 is Tab, Shift 2 is Ctrl.
    void Form_KeyDown(int KeyCode, int Shift);
    void sldBitrate_Click(int Index);
    void chkEnableVBR_Click();
    void chkUseABR_Click();
    void chkHighPassFreq_Click();
    void chkLowPassFreq_Click();
    // Every other control: copies its value to its field.
    void control_Change();

    QTabBar *tbsDecoder = nullptr;
    std::array<QWidget *, 3> fraOptions{};
    std::array<QSlider *, 2> sldBitrate{};
    QLabel *lblBitrate = nullptr;
    QComboBox *cboMode = nullptr;
    QComboBox *cboOptimize = nullptr;
    QComboBox *cboOutputFreq = nullptr;
    QCheckBox *chkCRC = nullptr;
    QCheckBox *chkCopy = nullptr;
    QCheckBox *chkCopyright = nullptr;
    QCheckBox *chkDelSource = nullptr;
    QCheckBox *chkEnableVBR = nullptr;
    QGroupBox *Frame11 = nullptr;
    QLabel *Label3 = nullptr;
    QLabel *Label4 = nullptr;
    QGroupBox *Frame12 = nullptr;
    QLineEdit *txtQuality = nullptr;
    QWidget *UpDown1 = nullptr;
    QCheckBox *chkDisableVBRTag = nullptr;
    QCheckBox *chkEnforceMinBitrate = nullptr;
    QCheckBox *chkUseABR = nullptr;
    QLabel *Label5 = nullptr;
    QLineEdit *txtABRBitrate = nullptr;
    QWidget *UpDown2 = nullptr;
    QCheckBox *chkHighPassFreq = nullptr;
    QLineEdit *txtHighPassFreq = nullptr;
    QCheckBox *chkHighPassWidth = nullptr;
    QLineEdit *txtHighPassWidth = nullptr;
    QCheckBox *chkLowPassFreq = nullptr;
    QLineEdit *txtLowPassFreq = nullptr;
    QCheckBox *chkLowPassWidth = nullptr;
    QLineEdit *txtLowPassWidth = nullptr;
    QLabel *lblStatus = nullptr;
    QPushButton *cmdEncode = nullptr;
    QPushButton *cmdDecode = nullptr;
    QPushButton *cmdClose = nullptr;

    bool blnCancelFlag = false;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildGeneral();
    void buildVbr();
    void buildFilters();
    void run(qint32 direction);
    void applyEnabling();
    void trapped(QObject *sender, const char *procedure, void (frmDecode::*handler)());

    QStackedWidget *m_pages = nullptr;
    std::shared_ptr<clsMP3> m_mp3;
    bool m_loading = false;
};
