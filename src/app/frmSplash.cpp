#include "frmSplash.h"
#include "base/App.h"
#include "clsNetUserName.h"
#include "diagnostics/ErrorTrap.h"
#include "mdiMain.h"
#include "widgets/DefaultInstance.h"

#include <QFont>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

frmSplash::frmSplash()
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(App::ProductName());
    auto *layout = new QVBoxLayout(this);
    imgCD = new QLabel(this);
    auto *title = new QLabel(App::ProductName(), this);
    QFont big = title->font();
    big.setPointSize(big.pointSize() * 2);
    big.setBold(true);
    title->setFont(big);
    lblInfo = new QLabel(QStringLiteral("Compiles and writes CD and DVD discs"), this);
    lblUser = new QLabel(this);
    lblComputer = new QLabel(this);
    lblVersion = new QLabel(this);
    lblCopyright = new QLabel(this);
    prbWait = new QProgressBar(this);
    prbWait->setRange(0, 100);
    prbWait->setTextVisible(false);
    for (QWidget *w : {static_cast<QWidget *>(imgCD), static_cast<QWidget *>(title),
                       static_cast<QWidget *>(lblInfo), static_cast<QWidget *>(lblUser),
                       static_cast<QWidget *>(lblComputer), static_cast<QWidget *>(lblVersion),
                       static_cast<QWidget *>(lblCopyright), static_cast<QWidget *>(prbWait)})
        layout->addWidget(w);
    tmrWait = new QTimer(this);
    tmrWait->setInterval(55);
    connect(tmrWait, &QTimer::timeout, this,
            [this] { ErrorTrap::run("tmrWait_Timer", "frmSplash", [this] { tmrWait_Timer(); }); });
    ErrorTrap::run("Form_Load", "frmSplash", [this] { Form_Load(); });
}

void frmSplash::Form_Load() {
    const clsNetUserName names;
    mintTime = 0;
    lblUser->setText(QStringLiteral("User:  ") + names.NetworkUserName());
    lblComputer->setText(QStringLiteral("Computer Name:  ") + names.ComputerName());
    lblVersion->setText(QStringLiteral("Version  %1.%2.%3")
                            .arg(App::Major())
                            .arg(App::Minor())
                            .arg(App::Revision()));
    lblCopyright->setText(App::LegalCopyright());
    prbWait->setValue(0);
    tmrWait->start();
}

void frmSplash::tmrWait_Timer() {
    mintTime += 2;
    prbWait->setValue(mintTime);
    if (mintTime == 100) {
        tmrWait->stop();
        // The frame is shown before the splash goes, so that the program never stands
        // without a window.
        DefaultInstance<mdiMain>::get()->show();
        close();
    }
}
