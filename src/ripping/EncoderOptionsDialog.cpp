#include "EncoderOptionsDialog.h"

#include "modEncoderLists.h"

#include "base/App.h"
#include "base/RuntimeError.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/TrappedConnect.h"
#include "widgets/MessageBoxService.h"

#include <QCloseEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSaveFile>

EncoderOptionsDialog::EncoderOptionsDialog(const QString &file, QWidget *parent)
    : QDialog(parent)
    , m_file(file) {
    buttons = new QHBoxLayout;
    cmdSave = new QPushButton(QStringLiteral("&Save Settings"), this);
    cmdLoad = new QPushButton(QStringLiteral("&Load Settings"), this);
    cmdApply = new QPushButton(QStringLiteral("&Apply Settings"), this);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    for (QPushButton *b : {cmdSave, cmdLoad, cmdApply, cmdCancel}) {
        b->setAutoDefault(false);
        buttons->addWidget(b);
    }
    TRAPPED_CONNECT(cmdSave, &QPushButton::clicked, EncoderOptionsDialog, cmdSave_Click);
    TRAPPED_CONNECT(cmdLoad, &QPushButton::clicked, EncoderOptionsDialog, cmdLoad_Click);
    TRAPPED_CONNECT(cmdCancel, &QPushButton::clicked, EncoderOptionsDialog, cmdCancel_Click);
    // Form_Load: saved choices come back only through Load.
    cmdLoad->setEnabled(QFile::exists(m_file));
}

void EncoderOptionsDialog::SaveSettings() {
    const QByteArray line = record();
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly) || file.write(line) != line.size() || !file.commit())
        throw RuntimeError(RuntimeError::PathNotFound, QStringLiteral("Path not found"));
    modEncoderLists::Inform(QStringLiteral("Options saved successfully in file: ") + m_file);
}

void EncoderOptionsDialog::LoadSettings() {
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeError(RuntimeError::FileNotFound, QStringLiteral("File not found"));
    restore(file.readAll());
    modEncoderLists::Inform(QStringLiteral("Options loaded successfully from file: ") + m_file);
}

void EncoderOptionsDialog::cmdSave_Click() {
    SaveSettings();
    cmdLoad->setEnabled(true);
}

void EncoderOptionsDialog::cmdLoad_Click() {
    LoadSettings();
}

void EncoderOptionsDialog::cmdCancel_Click() {
    close();
}

void EncoderOptionsDialog::closeEvent(QCloseEvent *event) {
    // Form_Unload: the question comes however the dialog closes, once, and names WMA in both.
    if (!m_asked) {
        m_asked = true;
        dropEncoder();
        const int answer =
            MsgBox(QStringLiteral("Do you want to Save WMA Options?"), vbQuestion | vbYesNo,
                   App::ProductName() + QStringLiteral(" - Save Options?"));
        if (answer == vbYes)
            ErrorTrap::run("SaveSettings", metaObject()->className(), [this] { SaveSettings(); });
    }
    event->accept();
    done(QDialog::Rejected);
}

void EncoderOptionsDialog::reject() {
    close();
}
