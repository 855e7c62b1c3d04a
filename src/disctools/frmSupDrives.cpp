#include "frmSupDrives.h"
#include "base/RuntimeError.h"
#include "diagnostics/TrappedConnect.h"
#include "widgets/DefaultInstance.h"
#include "widgets/NamedWidget.h"

#include <QCloseEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

frmSupDrives::frmSupDrives(const WindowContext &context) {
    Q_UNUSED(context);
    setObjectName(QStringLiteral("frmSupDrives"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *column = new QVBoxLayout(this);
    lblSupported = named(new QLabel(this), "lblSupported");
    column->addWidget(lblSupported);
    rtbSupported = named(new QTextBrowser(this), "rtbSupported");
    rtbSupported->setOpenExternalLinks(true);
    column->addWidget(rtbSupported);
    auto *buttons = new QHBoxLayout;
    cmdClose = named(new QPushButton(QStringLiteral("&Close"), this), "cmdClose");
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    column->addLayout(buttons);
    TRAPPED_CONNECT(cmdClose, &QPushButton::clicked, frmSupDrives, cmdClose_Click);
    resize(560, 460);
}

frmSupDrives::~frmSupDrives() {
    DefaultInstance<frmSupDrives>::release(this);
}

void frmSupDrives::Form_Load() {
    setWindowTitle(QStringLiteral("Supported CD-R/RW Drives"));
    lblSupported->setText(QStringLiteral("Supported CD-R/RW Drives"));
    QFile text(QStringLiteral(":/disctools/supported.html"));
    // The text is built into the program; a program without it is broken, not the user's fault.
    if (!text.open(QIODevice::ReadOnly))
        throw RuntimeError(53, QStringLiteral("File not found"));
    rtbSupported->setHtml(QString::fromUtf8(text.readAll()));
}

void frmSupDrives::cmdClose_Click() {
    close();
}

void frmSupDrives::closeEvent(QCloseEvent *event) {
    DefaultInstance<frmSupDrives>::release(this);
    event->accept();
}
