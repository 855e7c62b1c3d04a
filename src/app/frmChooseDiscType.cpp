#include "frmChooseDiscType.h"
#include "FormRegistry.h"
#include "diagnostics/ErrorTrap.h"
#include "mdiMain.h"
#include "modDeclarations.h"
#include "modGlobals.h"
#include "widgets/DefaultInstance.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmChooseDiscType::frmChooseDiscType(QWidget *owner)
    : QDialog(owner) {
    setObjectName(QStringLiteral("frmChooseDiscType"));
    setWindowTitle(QStringLiteral("New Data/Audio Disc"));
    setModal(true);
    auto *layout = new QVBoxLayout(this);
    fraDiscType = new QGroupBox(QStringLiteral("&Select Disc Type"), this);
    auto *choices = new QVBoxLayout(fraDiscType);
    optData = new QRadioButton(QStringLiteral("New &Data Disc"), fraDiscType);
    lblDataCD = new QLabel(
        QStringLiteral("Select New Data Disc if you want to make a CD containing data files from "
                       "your comouter. This type of CD can be read back on any computer's CD-ROM "
                       "drive."),
        fraDiscType);
    optAudio = new QRadioButton(QStringLiteral("&New Audio Disc"), fraDiscType);
    lblAudioDisc = new QLabel(
        QStringLiteral("Select New Audio Disc if you want to make a CD containing music. This "
                       "type of CD can be played back on a home or car CD player."),
        fraDiscType);
    for (QLabel *l : {lblDataCD, lblAudioDisc}) {
        l->setWordWrap(true);
        l->setIndent(24);
        l->setMinimumWidth(360);
    }
    choices->addWidget(optData);
    choices->addWidget(lblDataCD);
    choices->addSpacing(8);
    choices->addWidget(optAudio);
    choices->addWidget(lblAudioDisc);
    layout->addWidget(fraDiscType);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdOK = new QPushButton(QStringLiteral("&Continue..."), this);
    cmdCancel = new QPushButton(QStringLiteral("C&ancel"), this);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);
    // Neither kind is chosen for the user.
    cmdOK->setEnabled(false);
    cmdOK->setDefault(true);
    connect(optData, &QRadioButton::clicked, this, [this] {
        ErrorTrap::run("optData_Click", "frmChooseDiscType", [this] { optData_Click(); });
    });
    connect(optAudio, &QRadioButton::clicked, this, [this] {
        ErrorTrap::run("optAudio_Click", "frmChooseDiscType", [this] { optAudio_Click(); });
    });
    connect(cmdOK, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdOK_Click", "frmChooseDiscType", [this] { cmdOK_Click(); });
    });
    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdCancel_Click", "frmChooseDiscType", [this] { cmdCancel_Click(); });
    });
}

void frmChooseDiscType::optData_Click() {
    cmdOK->setEnabled(true);
}

void frmChooseDiscType::optAudio_Click() {
    cmdOK->setEnabled(true);
}

void frmChooseDiscType::cmdCancel_Click() {
    reject();
}

void frmChooseDiscType::cmdOK_Click() {
    mdiMain *frame = DefaultInstance<mdiMain>::peek();
    if (optData->isChecked()) {
        accept();
        FormRegistry::open(QStringLiteral("frmData"), frame);
        ClearVolumeTexts();
        FormRegistry::open(QStringLiteral("ResetImage"), frame);
        if (frame)
            frame->CheckSession();
    } else if (optAudio->isChecked()) {
        accept();
        FormRegistry::open(QStringLiteral("frmAudio"), frame);
    }
}
