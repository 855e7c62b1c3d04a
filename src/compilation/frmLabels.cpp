#include "frmLabels.h"
#include "app/FormRegistry.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "diagnostics/ErrorTrap.h"
#include "widgets/DefaultInstance.h"

#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

frmLabels::frmLabels(QWidget *parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("frmLabels"));
    setModal(true);
    auto *form = new QFormLayout;
    // Limits of the boxes: one below the descriptor's 32- and 37-byte fields, all of the
    // 128-byte ones.
    auto box = [&](QLineEdit *&edit, const char *name, const char *caption, int limit) {
        edit = new QLineEdit(this);
        edit->setObjectName(QLatin1String(name));
        edit->setMaxLength(limit);
        edit->installEventFilter(this);
        form->addRow(QString::fromLatin1(caption), edit);
        connect(edit, &QLineEdit::textChanged, this, [this, name] {
            ErrorTrap::run(name, "frmLabels", [this] { cmdOK->setEnabled(true); });
        });
    };
    box(txtVolumeLabel, "txtVolumeLabel", "Volume Label:", 31);
    box(txtVolumeApplication, "txtVolumeApplication", "Application:", 128);
    box(txtVolumePublisher, "txtVolumePublisher", "Publisher:", 128);
    box(txtSystemVolumeIdentifier, "txtSystemVolumeIdentifier", "System Identifier:", 31);
    box(txtVolumeSet, "txtVolumeSet", "Volume Set:", 128);
    box(txtDataPreparer, "txtDataPreparer", "Data Preparer:", 128);
    box(txtCopyrightFile, "txtCopyrightFile", "Copyright File:", 36);
    box(txtAbstractFile, "txtAbstractFile", "Abstract File:", 36);
    box(txtBibliographicFile, "txtBibliographicFile", "Bibliographic File:", 36);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *column = new QVBoxLayout(this);
    column->addLayout(form);
    column->addLayout(buttons);
    setMinimumWidth(480);
    connect(cmdOK, &QPushButton::clicked, this,
            [this] { ErrorTrap::run("cmdOK_Click", "frmLabels", [this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        ErrorTrap::run("cmdCancel_Click", "frmLabels", [this] { cmdCancel_Click(); });
    });
    ErrorTrap::run("Form_Load", "frmLabels", [this] { Form_Load(); });
}

QList<QLineEdit *> frmLabels::boxes() const {
    return {
        txtVolumeLabel,      txtVolumeApplication, txtVolumePublisher, txtSystemVolumeIdentifier,
        txtVolumeSet,        txtDataPreparer,      txtCopyrightFile,   txtAbstractFile,
        txtBibliographicFile};
}

void frmLabels::Form_Load() {
    setWindowTitle(QStringLiteral("ISO Volume Labels"));
    txtVolumeApplication->setText(gstrVolumeApplicationIdentifier);
    txtVolumePublisher->setText(gstrVolumePublisher);
    txtSystemVolumeIdentifier->setText(gstrVolumeSystemIdentifier);
    txtVolumeSet->setText(gstrVolumeSetIdentifier);
    txtDataPreparer->setText(gstrVolumeDataPreparerIdentifier);
    txtCopyrightFile->setText(gstrVolumeCopyrightFileIdentifier);
    txtAbstractFile->setText(gstrVolumeAbstractFileIdentifier);
    txtBibliographicFile->setText(gstrVolumeBiblioFileIdentifier);
    txtVolumeLabel->setText(gstrVolumeIdentifier);
    // Last, so that filling the boxes leaves it disabled.
    cmdOK->setEnabled(false);
}

void frmLabels::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    txtVolumeLabel->setFocus();
}

bool frmLabels::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusIn) {
        if (auto *edit = qobject_cast<QLineEdit *>(watched)) {
            // After the focus has settled, or the click that brought it clears the selection.
            QTimer::singleShot(0, edit, [edit] {
                ErrorTrap::run("GotFocus", "frmLabels", [edit] { SelectText(edit); });
            });
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmLabels::cmdOK_Click() {
    if (FrameServices *frame = FormRegistry::context().frame)
        frame->setVolumeIdentifierText(txtVolumeLabel->text());
    gstrVolumeIdentifier = txtVolumeLabel->text();
    gstrVolumeApplicationIdentifier = txtVolumeApplication->text();
    gstrVolumePublisher = txtVolumePublisher->text();
    gstrVolumeSystemIdentifier = txtSystemVolumeIdentifier->text();
    gstrVolumeSetIdentifier = txtVolumeSet->text();
    gstrVolumeDataPreparerIdentifier = txtDataPreparer->text();
    gstrVolumeCopyrightFileIdentifier = txtCopyrightFile->text();
    gstrVolumeAbstractFileIdentifier = txtAbstractFile->text();
    gstrVolumeBiblioFileIdentifier = txtBibliographicFile->text();
    accept();
}

void frmLabels::cmdCancel_Click() {
    reject();
}

void frmLabels::showModal(QWidget *owner) {
    frmLabels dialog(owner);
    dialog.exec();
}
