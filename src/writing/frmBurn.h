#pragma once

#include "app/FrameServices.h"
#include "app/WriteDialog.h"
#include "base/VbDate.h"

#include <QDialog>
#include <QString>

class AnimationControl;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTimer;

// The write dialog: gathers the options of a data or audio write, checks the medium, hands
// everything to the engine and starts the write, then follows the engine's progress and the
// disc in the drive itself; the frame tells it only how the job ended. Modal over the frame;
// one instance at a time. UI thread.
class frmBurn : public QDialog, public WriteDialog {
    Q_OBJECT
public:
    explicit frmBurn(const WindowContext &context);
    ~frmBurn() override;

    // The open dialog, or null.
    static frmBurn *instance();

    void EnableFormWrite(bool blnEnable) override;
    void RefreshForm() override;
    void Unload() override;
    void writeEnded(const QString &action, const QString &animation) override;
    void offerRealWrite() override;
    bool closeWindowsWhenFinished() const override;
    void followIsoWrite(const IsoWriteChoices &choices) override;

    QRadioButton *optWrite = nullptr;
    QRadioButton *optTest = nullptr;
    QPushButton *cmdWrite = nullptr;
    QPushButton *cmdCancel = nullptr;
    QPushButton *cmdClose = nullptr;
    // Puts the disc back while the dialog waits for it; the frame's own button is out of reach
    // behind this modal dialog.
    QPushButton *cmdCloseTray = nullptr;
    QCheckBox *chkCloseWin = nullptr;
    QCheckBox *chkFinalizeDisc = nullptr;
    QCheckBox *chkUseJoliet = nullptr;
    QCheckBox *chkCacheImage = nullptr;
    QCheckBox *chkUseBurnProof = nullptr;
    QCheckBox *chkUseMode2XA = nullptr;
    QCheckBox *chkLogging = nullptr;
    QLabel *lblActions = nullptr;
    QLabel *lblTime = nullptr;
    AnimationControl *aniBurn = nullptr;
    QProgressBar *prgTrackProgress = nullptr;
    QProgressBar *prgTotalProgress = nullptr;
    QProgressBar *prgReadBuffer = nullptr;
    QProgressBar *prgDriveBuffer = nullptr;
    QTimer *tmrBurn = nullptr;

    VbDate mlngStart;
    VbDate mlngElapsed;
    QString mstrLogFilePath;

    void optTest_Click();
    void optWrite_Click();
    void chkLogging_Click();
    void cmdWrite_Click();
    void cmdCancel_Click();
    void cmdClose_Click();
    void cmdCloseTray_Click();
    void tmrBurn_Timer();

    // The engine's progress and the drive's disc, as this dialog shows them.
    void Tessaly_PreparingToWrite();
    void Tessaly_CachingStatus(qint16 nPercentComplete);
    void Tessaly_TrackWriteStatus(qint32 lTrackNumber, qint32 lBlocksWritten,
                                  qint32 lBlocksToWrite);
    void Tessaly_ClosingTrack(qint32 lTrackNumber);
    void Tessaly_ClosingSession();
    void Tessaly_ClosingDisc();
    void CDNotify1_Arrival();
    void CDNotify1_RemoveComplete();

protected:
    void closeEvent(QCloseEvent *event) override;
    // Escape closes as the close button does, through the same guard.
    void reject() override;

private:
    void buildControls();
    void connectEngine();
    void Form_Load();
    void Form_Unload(int &Cancel);
    // The options of a data write and of an audio write, in the order the engine takes them.
    void setDataOptions();
    void setAudioOptions();
    // Opens the animation of a name ("writecd"); a missing one is passed over.
    void ShowWriteAnimation(const QString &name);
    void showAction(const QString &text);

    WindowContext m_context;
    bool m_cacheFirst = true;
    bool m_trackWriteFirst = true;
};
