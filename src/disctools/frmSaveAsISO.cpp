#include "frmSaveAsISO.h"
#include "app/FormRegistry.h"
#include "app/modGlobals.h"
#include "diagnostics/ErrorTrap.h"
#include "widgets/DefaultInstance.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

frmSaveAsISO::frmSaveAsISO(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr)
    , m_context(context) {
    setObjectName(QStringLiteral("frmSaveAsISO"));
    setWindowTitle(QStringLiteral("ISO Options"));
    setModal(true);
    fraSaveAsISO = new QGroupBox(QStringLiteral("Save As ISO Options:"), this);
    chkUseJoliet = new QCheckBox(QStringLiteral("Include &Joliet Directories (64 char file names)"),
                                 fraSaveAsISO);
    chkUseJoliet->setObjectName(QStringLiteral("chkUseJoliet"));
    chkUseJoliet->setChecked(true);
    chkUseMode2XA =
        new QCheckBox(QStringLiteral("&Mode2XA Instead Of Mode1 (CDR/W Only)"), fraSaveAsISO);
    chkUseMode2XA->setObjectName(QStringLiteral("chkUseMode2XA"));
    auto *rows = new QVBoxLayout(fraSaveAsISO);
    rows->addWidget(chkUseJoliet);
    rows->addWidget(chkUseMode2XA);
    cmdLabels = new QPushButton(QStringLiteral("&Labels..."), this);
    cmdLabels->setObjectName(QStringLiteral("cmdLabels"));
    cmdContinue = new QPushButton(QStringLiteral("&Continue..."), this);
    cmdContinue->setObjectName(QStringLiteral("cmdContinue"));
    cmdContinue->setDefault(true);
    connect(cmdLabels, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdLabels_Click", "frmSaveAsISO", [this] { cmdLabels_Click(); });
    });
    connect(cmdContinue, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdContinue_Click", "frmSaveAsISO", [this] { cmdContinue_Click(); });
    });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdLabels);
    buttons->addStretch();
    buttons->addWidget(cmdContinue);
    auto *column = new QVBoxLayout(this);
    column->addWidget(fraSaveAsISO);
    column->addLayout(buttons);
    RemoveCancelMenuItem(this);
}

frmSaveAsISO::~frmSaveAsISO() {
    DefaultInstance<frmSaveAsISO>::release(this);
}

void frmSaveAsISO::unload() {
    delete DefaultInstance<frmSaveAsISO>::peek();
}

void frmSaveAsISO::closeEvent(QCloseEvent *event) {
    // Only Continue leaves the box.
    event->ignore();
}

void frmSaveAsISO::cmdLabels_Click() {
    FormRegistry::open(QStringLiteral("frmLabels"));
}

void frmSaveAsISO::cmdContinue_Click() {
    accept();
}
