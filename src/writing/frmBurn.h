#pragma once

#include "app/WriteDialog.h"
#include "base/VbDate.h"

#include <QDialog>
#include <QString>

// The write dialog: gathers the options of a data or audio write, checks the medium, hands
// everything to the engine and starts the write; the frame's write handlers drive it from
// then on and close it. Modal over the frame; one instance at a time. UI thread.
class frmBurn : public QDialog, public WriteDialog {
    Q_OBJECT
public:
    explicit frmBurn(QWidget *parent = nullptr);
    ~frmBurn() override;

    // Shows the dialog modally over `owner`, making it on first use.
    static frmBurn *showOver(QWidget *owner);
    // The open dialog, or null.
    static frmBurn *instance();

    void EnableFormWrite(bool blnEnable) override;
    void RefreshForm() override;
    void Unload() override;

    QCheckBox *chkFinalizeDisc = nullptr;
    QCheckBox *chkUseJoliet = nullptr;
    QCheckBox *chkCacheImage = nullptr;
    QCheckBox *chkUseBurnProof = nullptr;
    QCheckBox *chkUseMode2XA = nullptr;
    QCheckBox *chkLogging = nullptr;
    QProgressBar *prgReadBuffer = nullptr;
    QProgressBar *prgDriveBuffer = nullptr;

    VbDate mlngStart;
    VbDate mlngElapsed;
    QString mstrLogFilePath;

    void optTest_Click();
    void optWrite_Click();
    void chkLogging_Click();
    void cmdWrite_Click();
    void cmdCancel_Click();
    void cmdClose_Click();
    void tmrBurn_Timer();

protected:
    void closeEvent(QCloseEvent *event) override;
    // Escape closes as the close button does, through the same guard.
    void reject() override;

private:
    void buildControls();
    void Form_Load();
    void Form_Unload(int &Cancel);
    // The options of a data write and of an audio write, in the order the engine takes them.
    void setDataOptions();
    void setAudioOptions();
};
