#pragma once

#include "app/FrameServices.h"
#include "engine/copier/BlankDiscHandler.h"

#include <QWidget>

class CD2CD;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QRadioButton;

// "CD to CD Copy": copies a disc from a drive to a recorder, or test-writes the copy, through
// its own CD2CD on the frame's drives. One default instance, a child of the frame; UI thread.
class frmCD2CD : public QWidget, public BlankDiscHandler {
    Q_OBJECT
public:
    explicit frmCD2CD(const WindowContext &context = {});
    ~frmCD2CD() override;

    void Form_Load();
    void cboBurner_Click();
    void cboSpeed_Click();
    void cmdCopyBurn_Click();
    void cmdAbort_Click();
    void cmdClose_Click();
    void CD2CDX_PercentDone(double nPercent);
    // The end of the copy, which the form is told beyond its progress.
    void CD2CDX_JobComplete();
    void CD2CDX_JobFailed(const QString &sReason);
    // Source and destination are one drive: the source is out, a blank disc must go in.
    void blankDiscWanted(qint32 address, const QString &driveName) override;

    CD2CD *CD2CDX = nullptr;
    QComboBox *cboDrives = nullptr;
    QComboBox *cboBurner = nullptr;
    QComboBox *cboSpeed = nullptr;
    QRadioButton *optTestRecord[2] = {};
    QPushButton *cmdCopyBurn = nullptr;
    QPushButton *cmdAbort = nullptr;
    QPushButton *cmdClose = nullptr;
    QProgressBar *prgProgress = nullptr;
    QLabel *lblInfo = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;
};
