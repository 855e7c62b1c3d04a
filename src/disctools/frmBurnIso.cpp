#include "frmBurnIso.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/App.h"
#include "diagnostics/ErrorTrap.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

frmBurnIso::frmBurnIso(const WindowContext &context)
    : QDialog(context.frame ? context.frame->frameWidget() : nullptr)
    , m_context(context) {
    setObjectName(QStringLiteral("frmBurnIso"));
    setWindowTitle(QStringLiteral("Burn ISO Options"));
    setModal(true);
    fraOptions = new QGroupBox(QStringLiteral("&Write ISO Options:"), this);
    auto *rows = new QVBoxLayout(fraOptions);
    const auto box = [&](QCheckBox *&member, const char *name, const char *caption) {
        member = new QCheckBox(QString::fromLatin1(caption), fraOptions);
        member->setObjectName(QLatin1String(name));
        rows->addWidget(member);
    };
    box(chkUseMode2XA, "chkUseMode2XA", "&Mode2XA Instead Of Mode1 (CDR/W Only)");
    box(chkLogging, "chkLogging", "&Enable Logging");
    box(chkFinalizeDisc, "chkFinalizeDisc", "Finali&ze Disc (No Further Writing Possible)");
    box(chkTestWrite, "chkTestWrite", "&Test Write Mode (Data will not be written to the media)");
    box(chkUseBurnProof, "chkUseBurnProof", "&Use Buffer Protection (Burn Proof, JustLink, etc)");
    cmdContinue = new QPushButton(QStringLiteral("&Continue..."), this);
    cmdContinue->setObjectName(QStringLiteral("cmdContinue"));
    cmdContinue->setToolTip(QStringLiteral("Continue and write"));
    cmdContinue->setDefault(true);
    connect(chkLogging, &QCheckBox::toggled, this, [this] {
        ErrorTrap::run("chkLogging_Click", "frmBurnIso", [this] { chkLogging_Click(); });
    });
    connect(cmdContinue, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdContinue_Click", "frmBurnIso", [this] { cmdContinue_Click(); });
    });
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdContinue);
    auto *column = new QVBoxLayout(this);
    column->addWidget(fraOptions);
    column->addLayout(buttons);
    ErrorTrap::run("Form_Load", "frmBurnIso", [this] { Form_Load(); });
}

frmBurnIso::~frmBurnIso() {
    DefaultInstance<frmBurnIso>::release(this);
}

void frmBurnIso::closeEvent(QCloseEvent *event) {
    // Unloaded on close, but not by deleting itself: a modal run would delete it before the
    // caller has read its choices.
    DefaultInstance<frmBurnIso>::release(this);
    deleteLater();
    event->accept();
}

void frmBurnIso::unload() {
    if (frmBurnIso *box = DefaultInstance<frmBurnIso>::peek()) {
        DefaultInstance<frmBurnIso>::release(box);
        box->hide();
        box->deleteLater();
    }
}

void frmBurnIso::Form_Load() {
    mstrLogFilePath = App::pathOf(QStringLiteral("\\Dat\\Burnlog.txt"));
    gblnDisctypeIsData = 3;
    RemoveCancelMenuItem(this);
    const bool burnProof =
        m_context.engine->DriveCapability(CDWriterPro::CapBurnProof, qint32(glngDriveIndex));
    chkUseBurnProof->setEnabled(burnProof);
    chkUseBurnProof->setChecked(burnProof);
}

void frmBurnIso::chkLogging_Click() {
    chkLogging->setText(chkLogging->isChecked()
                            ? QStringLiteral("Logging CD write to: ") + mstrLogFilePath
                            : QStringLiteral("Enable Logging"));
}

void frmBurnIso::cmdContinue_Click() {
    accept();
}
