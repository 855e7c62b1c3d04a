#pragma once

#include "app/FrameServices.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTextBrowser;

// The list of drives known to work with the program, from the text shipped with it. Not modal;
// one instance at a time. UI thread.
class frmSupDrives : public QDialog {
    Q_OBJECT
public:
    explicit frmSupDrives(const WindowContext &context);
    ~frmSupDrives() override;

    void Form_Load();

    QLabel *lblSupported = nullptr;
    QTextBrowser *rtbSupported = nullptr;
    QPushButton *cmdClose = nullptr;

    void cmdClose_Click();

protected:
    void closeEvent(QCloseEvent *event) override;
};
