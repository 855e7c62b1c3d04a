#pragma once

#include "SupportDialog.h"

class QLabel;

// "Tessaly On The Web": the web pages that belong to the program, its licence and the projects
// it is built on, each a link the desktop opens in the browser. One default instance; UI thread.
class frmWeb : public SupportDialog {
    Q_OBJECT
public:
    explicit frmWeb(const WindowContext &context = {});
    ~frmWeb() override;

    void Form_Load();

    // The links the window offers, as HTML.
    static QString linksHtml();

    QLabel *lblLinks = nullptr;
};
