#pragma once

#include "base/Checked.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QTimer;

// The splash window: names, version and a progress bar for a fixed 50 ticks of 55 ms, after
// which it unloads itself and shows the main frame. On the UI thread.
class frmSplash : public QWidget {
    Q_OBJECT
public:
    frmSplash();

    void tmrWait_Timer();

    QLabel *lblUser = nullptr;
    QLabel *lblComputer = nullptr;
    QLabel *lblVersion = nullptr;
    QLabel *lblCopyright = nullptr;
    QLabel *lblInfo = nullptr;
    QLabel *imgCD = nullptr;
    QProgressBar *prbWait = nullptr;
    QTimer *tmrWait = nullptr;

private:
    void Form_Load();
    Integer mintTime = 0;
};
