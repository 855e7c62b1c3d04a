#pragma once

#include "app/FrameServices.h"

#include <QDialog>

class QCheckBox;
class QGroupBox;
class QPushButton;

// The options of an ISO file saved from the data compilation. Left only by Continue, which hides
// it: it stays loaded with its choices until the save is done. Modal over the frame; UI thread.
class frmSaveAsISO : public QDialog {
    Q_OBJECT
public:
    explicit frmSaveAsISO(const WindowContext &context);
    ~frmSaveAsISO() override;

    QGroupBox *fraSaveAsISO = nullptr;
    QCheckBox *chkUseJoliet = nullptr;
    QCheckBox *chkUseMode2XA = nullptr;
    QPushButton *cmdLabels = nullptr;
    QPushButton *cmdContinue = nullptr;

    void cmdLabels_Click();
    void cmdContinue_Click();

    // Unloads the open box, if any.
    static void unload();

protected:
    void closeEvent(QCloseEvent *event) override;
    // Escape does not leave the box either.
    void reject() override {}

private:
    WindowContext m_context;
};
