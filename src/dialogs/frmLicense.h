#pragma once

#include "SupportDialog.h"

class QTextBrowser;

// The licence Tessaly is under: a short notice and the full text of the GNU GPL version 3, read
// from the program itself so that it is there whatever was installed. One default instance;
// UI thread.
class frmLicense : public SupportDialog {
    Q_OBJECT
public:
    explicit frmLicense(const WindowContext &context = {});
    ~frmLicense() override;

    void Form_Load();

    // The notice and the licence as the box shows them.
    static QString licenseText();

    QTextBrowser *txtLicense = nullptr;
};
