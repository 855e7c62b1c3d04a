#pragma once

#include <QDialog>

class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;

// Asks which kind of disc to compile before the compilation window opens. Modal over the
// frame; UI thread.
class frmChooseDiscType : public QDialog {
    Q_OBJECT
public:
    explicit frmChooseDiscType(QWidget *owner = nullptr);

    QGroupBox *fraDiscType = nullptr;
    QRadioButton *optData = nullptr;
    QRadioButton *optAudio = nullptr;
    QLabel *lblDataCD = nullptr;
    QLabel *lblAudioDisc = nullptr;
    QPushButton *cmdOK = nullptr;
    QPushButton *cmdCancel = nullptr;

    void cmdOK_Click();
    void cmdCancel_Click();
    void optData_Click();
    void optAudio_Click();
};
