#pragma once

#include "app/FrameServices.h"

#include <QWidget>

class CD2CD;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

// Saves the data of a disc as an image file through its own CD2CD: an ISO, or a BIN with its
// cue sheet when the chosen name ends in ".bin". One default instance, a child of the frame; UI
// thread.
class frmIsoripper : public QWidget {
    Q_OBJECT
public:
    explicit frmIsoripper(const WindowContext &context = {});
    ~frmIsoripper() override;

    void Form_Load();
    void cboDrives_Click();
    void cmdOpen_Click();
    void cmdRipData_Click();
    void cmdAbort_Click();
    void cmdClose_Click();
    void cmdEject_Click();
    void cmdCloseDrive_Click();
    void CD2CDX_PercentDone(double nPercent);
    // The end of the read, which the form is told beyond its progress.
    void CD2CDX_JobComplete();
    void CD2CDX_JobFailed(const QString &sReason);

    // The selected drive's address.
    qint32 lngAddress = -1;
    CD2CD *CD2CDX = nullptr;
    QComboBox *cboDrives = nullptr;
    QLineEdit *txtFileName = nullptr;
    QPushButton *cmdOpen = nullptr;
    QPushButton *cmdRipData = nullptr;
    QPushButton *cmdAbort = nullptr;
    QPushButton *cmdClose = nullptr;
    QPushButton *cmdEject = nullptr;
    QPushButton *cmdCloseDrive = nullptr;
    QProgressBar *prbProgress = nullptr;
    QLabel *lblInfo = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void jobEnded();
    qint32 m_locked = -1; // the drive the job locked
};
