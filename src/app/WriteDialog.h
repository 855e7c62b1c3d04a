#pragma once

class AnimationControl;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTimer;

// What the frame's write handlers reach of the open write dialog. The dialog lives in a
// library above the frame's, so it registers itself here while it is open. UI thread.
class WriteDialog {
public:
    virtual ~WriteDialog();

    // The open dialog, or null.
    static WriteDialog *open();

    virtual void EnableFormWrite(bool blnEnable) = 0;
    virtual void RefreshForm() = 0;
    // Closes the dialog as its own close does; refused during a write.
    virtual void Unload() = 0;

    QRadioButton *optWrite = nullptr;
    QRadioButton *optTest = nullptr;
    QPushButton *cmdWrite = nullptr;
    QPushButton *cmdCancel = nullptr;
    QPushButton *cmdClose = nullptr;
    QCheckBox *chkCloseWin = nullptr;
    QLabel *lblActions = nullptr;
    QLabel *lblTime = nullptr;
    AnimationControl *aniBurn = nullptr;
    QProgressBar *prgTrackProgress = nullptr;
    QProgressBar *prgTotalProgress = nullptr;
    QTimer *tmrBurn = nullptr;

protected:
    // The dialog says when it opens and when it has closed.
    static void setOpen(WriteDialog *dialog);
};
