#pragma once

#include "app/FrameServices.h"

#include <QWidget>

class DGPNorm;
class QGroupBox;
class QLCDNumber;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSlider;

// "Normalize Wave File": chooses a wave file, a destination and a level, and has DGPNorm do the
// work. One default instance, a child of the frame. On the UI thread.
class frmNormalize : public QWidget {
    Q_OBJECT
public:
    // Needs nothing of the frame but its document area, which the registry places it in.
    explicit frmNormalize(const WindowContext &context = {});
    ~frmNormalize() override;

    void Slider1_Change();
    void cmdOpen_Click();
    void cmdSave_Click();
    void cmdStart_Click();
    void cmdClose_Click();
    void norm_PercentDone(double nPercent);
    // A run that could not make its file: the text goes to the trap.
    void norm_NormalizeFailed(const QString &description);

    QGroupBox *fraOpen = nullptr;
    QLineEdit *txtOpen = nullptr;
    QPushButton *cmdOpen = nullptr;
    QGroupBox *fraSave = nullptr;
    QLineEdit *txtSave = nullptr;
    QPushButton *cmdSave = nullptr;
    QLineEdit *txtNorm = nullptr;
    QSlider *Slider1 = nullptr;
    QLCDNumber *DigitalDisplay1 = nullptr;
    QProgressBar *prbProgress = nullptr;
    QPushButton *cmdStart = nullptr;
    QPushButton *cmdClose = nullptr;
    DGPNorm *norm = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;
};
