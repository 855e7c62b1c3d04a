#pragma once

#include "app/FrameServices.h"

#include <QDialog>

class QCheckBox;
class QGroupBox;
class QPushButton;

// The options of an ISO file written to a disc. Continue hides it; it stays loaded through the
// write until the write dialog goes. Marks the open job as an ISO file write while it exists.
// Modal over the frame; UI thread.
class frmBurnIso : public QDialog {
    Q_OBJECT
public:
    explicit frmBurnIso(const WindowContext &context);
    ~frmBurnIso() override;

    QGroupBox *fraOptions = nullptr;
    QCheckBox *chkUseMode2XA = nullptr;
    QCheckBox *chkLogging = nullptr;
    QCheckBox *chkFinalizeDisc = nullptr;
    QCheckBox *chkTestWrite = nullptr;
    QCheckBox *chkUseBurnProof = nullptr;
    QPushButton *cmdContinue = nullptr;
    QString mstrLogFilePath;

    void Form_Load();
    void chkLogging_Click();
    void cmdContinue_Click();

    // Unloads the box, if loaded.
    static void unload();

protected:
    void closeEvent(QCloseEvent *event) override;
    void reject() override {}

private:
    WindowContext m_context;
};
