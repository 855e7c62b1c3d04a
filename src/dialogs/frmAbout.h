#pragma once

#include "app/FrameServices.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

// The about box: the program's name, version, copyright and licence, and the version of every
// engine library as it reports itself while the program runs. Opened from the frame and from
// the ripper. One default instance; UI thread.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(const WindowContext &context = {});
    ~frmAbout() override;

    void Form_Load();
    void cmdOK_Click();
    void cmdLicense_Click();
    void cmdCredits_Click();
    void cmdWeb_Click();

    // The opacity both this box and the links window take from the options, whether or not
    // transparency is switched on; a box never fades below readability.
    static void applyTransparency(QWidget *window);

    QLabel *picIcon = nullptr;
    QLabel *lblTitle = nullptr;
    QLabel *lblVersion = nullptr;
    QLabel *lblCopyright = nullptr;
    QLabel *lblLicense = nullptr;
    QTreeWidget *lvwEngines = nullptr;
    QPushButton *cmdLicense = nullptr;
    QPushButton *cmdCredits = nullptr;
    QPushButton *cmdWeb = nullptr;
    QPushButton *cmdOK = nullptr;
};
