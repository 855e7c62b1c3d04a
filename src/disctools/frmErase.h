#pragma once

#include "app/FrameServices.h"
#include "base/VbDate.h"

#include <QDialog>
#include <QPointer>

class AnimationControl;
class CDWriterPro;
class QLabel;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTimer;

// The erase dialog: checks that the disc in the current recorder can be blanked, starts a quick
// or full erase and keeps the user company with an estimate and a clock until the engine says
// it is done; it can't be closed meanwhile. Modal over the frame. UI thread.
class frmErase : public QDialog {
    Q_OBJECT
public:
    explicit frmErase(const WindowContext &context);
    ~frmErase() override;

    void ShowErase(CDWriterPro *objCDR);

    QRadioButton *optQuickErase = nullptr;
    QRadioButton *optFullErase = nullptr;
    QPushButton *cmdErase = nullptr;
    QPushButton *cmdCancel = nullptr;
    QTimer *tmrErase = nullptr;
    QProgressBar *prgEstTime = nullptr;
    QLabel *lblEstTimeRemain = nullptr;
    QLabel *lblEstTime = nullptr;
    QLabel *lblTime = nullptr;
    QLabel *lblWarning = nullptr;
    QLabel *lblEraseMsg = nullptr;
    AnimationControl *aniErase = nullptr;

    bool mblnErasing = false;
    VbDate mlngStart;
    VbDate mlngElapsed;
    qint16 mintCounter = 0;
    qint16 mintTimeSeconds = 0;
    // Set once the drive reports how far it is: the bar then shows that instead of the guess.
    bool mblnRealProgress = false;

    void cmdErase_Click();
    void cmdCancel_Click();
    void tmrErase_Timer();
    void mobjCDRPro_EraseDiscStart();
    void mobjCDRPro_EraseDiscComplete();
    void mobjCDRPro_WriteError(qint32 WriteError, qint32 DriveError, const QString &sErrorInfo,
                               const QString &sSenseInfo);
    void mobjCDRPro_eraseProgress(qint32 percent);

protected:
    void closeEvent(QCloseEvent *event) override;
    void reject() override;

private:
    void buildControls();
    void Form_Load();
    void setControlsEnabled(bool enabled);

    WindowContext m_context;
    QPointer<CDWriterPro> mobjCDRPro;
};
