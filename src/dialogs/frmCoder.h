#pragma once

#include "SupportDialog.h"

class QTextBrowser;

// The credits: who made Tessaly and the libraries it is built on, with their versions and
// licences. Opened from the about box. One default instance; UI thread.
class frmCoder : public SupportDialog {
    Q_OBJECT
public:
    explicit frmCoder(const WindowContext &context = {});
    ~frmCoder() override;

    void Form_Load();

    QTextBrowser *txtCredits = nullptr;
};
