#pragma once

#include "app/FrameServices.h"

#include <QWidget>

class CD2CD;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTimer;

// Burns the tracks a cue sheet names through its own CD2CD, polling for the sector reached;
// the tray and blank-disc buttons sit beside it. One default instance,
// a child of the frame; UI thread.
class frmBurnBin : public QWidget {
    Q_OBJECT
public:
    explicit frmBurnBin(const WindowContext &context = {});
    ~frmBurnBin() override;

    void Form_Load();
    // Another drive chosen: its speeds.
    void cboDrives_Click();
    void cmdOpen_Click();
    void cboSpeed_Click();
    void cmdIsDiscBlank_Click();
    void cmdBurn_Click();
    void Timer1_Timer();
    void cmdAbort_Click();
    void cmdEject_Click();
    void cmdCloseDrive_Click();
    void cmdLock_Click();
    void cmdUnlock_Click();
    // The end of a burn: the timer stops, the tray is unlocked and the user told.
    void CD2CDX_JobComplete();
    void CD2CDX_JobFailed(const QString &sReason);

    qint32 lReply = 0;
    QString sReply;
    qint16 SpeedSelected = 0;
    bool Burnable = false;

    CD2CD *CD2CDX = nullptr;
    QComboBox *cboDrives = nullptr;
    QComboBox *cboSpeed = nullptr;
    QRadioButton *optTestRecord[2] = {};
    QLineEdit *txtOpenFile = nullptr;
    QPushButton *cmdOpen = nullptr;
    QPushButton *cmdBurn = nullptr;
    QPushButton *cmdAbort = nullptr;
    QPushButton *cmdEject = nullptr;
    QPushButton *cmdCloseDrive = nullptr;
    QPushButton *cmdIsDiscBlank = nullptr;
    QPushButton *cmdLock = nullptr;
    QPushButton *cmdUnlock = nullptr;
    QTimer *Timer1 = nullptr;
    QLabel *lblInfo = nullptr;
    QLabel *lblStatus = nullptr;
    QLabel *lblCurSector = nullptr;
    QLabel *lblTotSector = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    qint32 selectedAddress() const;
    void showSectors(const QString &status);
};
