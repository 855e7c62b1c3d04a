#include "IsoFileCommands.h"
#include "app/FormRegistry.h"
#include "app/WriteDialog.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/App.h"
#include "base/Format.h"
#include "base/RuntimeError.h"
#include "base/VbDate.h"
#include "engine/writer/CDWriterPro.h"
#include "frmBurnIso.h"
#include "frmSaveAsISO.h"
#include "widgets/DefaultInstance.h"
#include "widgets/FileBoxService.h"
#include "widgets/MessageBoxService.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRadioButton>

namespace IsoFileCommands {

namespace {

const QString isoFilter = QStringLiteral("ISO file (*.iso)|*.iso");

QString information() {
    return App::ProductName() + QStringLiteral(" - Information");
}

QString critical() {
    return App::ProductName() + QStringLiteral(" - Critical");
}

// The file the user chose, with the extension the filter promises, and an existing one
// replaced only when the user says so; empty when the user declined.
QString settledSaveName(QString name) {
    if (name.trimmed().isEmpty())
        return QString(); // a box answered without a name: nothing to save, not ".iso" here
    if (!name.endsWith(QStringLiteral(".iso"), Qt::CaseInsensitive))
        name += QStringLiteral(".iso");
    if (QFileInfo::exists(name) &&
        MsgBox(QDir::toNativeSeparators(name) +
                   QStringLiteral(" already exists.\r\nDo you want to replace it?"),
               vbYesNo | vbExclamation | vbDefaultButton2,
               App::ProductName() + QStringLiteral(" - Warning")) != vbYes)
        return QString();
    return name;
}

} // namespace

QString proposedFileName() {
    const VbDate now = Now();
    return Format(now, QStringLiteral("YYYYMMDD")) + Format(now, QStringLiteral("hhmm")) +
           QStringLiteral(".iso");
}

bool isIso9660(QIODevice &device) {
    // Block 16 opens the volume descriptor set: type 1 (primary), "CD001", version 1.
    constexpr qint64 at = 16 * 2048;
    if (!device.seek(at))
        return false;
    const QByteArray head = device.read(7);
    return head == QByteArray("\x01"
                              "CD001"
                              "\x01",
                              7);
}

void ToolMenuSaveAsIso(const WindowContext &context) {
    CDWriterPro *cd = context.engine;
    FrameServices *frame = context.frame;
    if (gblnDisctypeIsData != 0) {
        MsgBox(QStringLiteral("Only a data compilation can be saved as an ISO file."),
               vbInformation, information());
        return;
    }
    try {
        frmSaveAsISO *options = DefaultInstance<frmSaveAsISO>::get(context);
        options->exec();
        FileBoxService::Request request;
        request.mode = FileBoxService::Mode::Save;
        request.title = QStringLiteral("Save as ISO File");
        request.fileName = proposedFileName();
        request.filter = isoFilter;
        request.flags = 256;
        const QString name = settledSaveName(FileBoxService::askOrThrow(request));
        if (name.isEmpty())
            throw RuntimeError(RuntimeError::CancelSelected);
        frame->EnableForm(false);
        cd->setISOFileSystem(options->chkUseJoliet->isChecked() ? 1 : 0);
        // The label box is what the user sees: after a write dialog emptied the globals it
        // still names the volume.
        const QString shown = frame->volumeIdentifierText();
        SetVolumeIdentifiers(cd, shown.isEmpty() ? gstrVolumeIdentifier : shown);
        cd->setTrackMode(options->chkUseMode2XA->isChecked() ? 2 : 1);
        frame->setStatusPicture(QStringLiteral("STATUSIMG"), QStringLiteral("WORKING"));
        const QPointer<CDWriterPro> alive(cd);
        const bool blnSuccess = cd->CreateISOFile(name);
        frame->setStatusValue(QStringLiteral("CACHING"), 0);
        frame->EnableForm(true);
        if (blnSuccess)
            MsgBox(QStringLiteral("ISO File Created successfully!"), vbInformation, information());
        else
            MsgBox(QStringLiteral("Error creating ISO File."), vbCritical, critical());
        frmSaveAsISO::unload();
        frame->setStatusPicture(QStringLiteral("STATUSIMG"), QStringLiteral("MEDIA"));
        if (alive)
            frame->RecalcImageSize();
    } catch (const RuntimeError &) {
        // A cancelled box: the options box keeps its choices for the next save.
        frame->EnableForm(true);
    }
}

void ToolMenuWriteIso(const WindowContext &context) {
    CDWriterPro *cd = context.engine;
    FrameServices *frame = context.frame;
    const QString strLogFilePath = App::pathOf(QStringLiteral("\\Dat\\Burnlog.txt"));
    try {
        FileBoxService::Request request;
        request.mode = FileBoxService::Mode::Open;
        request.title = QStringLiteral("Write ISO File");
        request.filter = isoFilter;
        request.flags = 256;
        const QString name = FileBoxService::askOrThrow(request);
        if (cd->MediaType() == CDWriterPro::MediaNone) {
            MsgBox(QStringLiteral("No media is loaded, aborting write!"), vbInformation,
                   information());
            return;
        }
        if (cd->DiscStatus() != CDWriterPro::DiscEmpty) {
            MsgBox(QStringLiteral("Please insert an empty disc for writing ISO."), vbInformation,
                   App::Title());
            return;
        }
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly) || !isIso9660(file)) {
            MsgBox(QDir::toNativeSeparators(name) +
                       QStringLiteral(" is not an ISO 9660 image file; nothing was written."),
                   vbInformation, information());
            return;
        }
        file.close();
        frmBurnIso *options = DefaultInstance<frmBurnIso>::get(context);
        options->exec();
        frame->EnableForm(false);
        FormRegistry::open(QStringLiteral("frmBurn"));
        IsoWriteChoices choices;
        choices.mode2XA = options->chkUseMode2XA->isChecked();
        choices.finalize = options->chkFinalizeDisc->isChecked();
        choices.testWrite = options->chkTestWrite->isChecked();
        choices.burnProof = options->chkUseBurnProof->isChecked();
        choices.logging = options->chkLogging->isChecked();
        // The box goes with the write dialog, whichever way the write ends.
        if (QWidget *dialog = FormRegistry::find(QStringLiteral("frmBurn")))
            QObject::connect(dialog, &QObject::destroyed, options, &frmBurnIso::unload);
        WriteDialog *burn = WriteDialog::open();
        if (burn) {
            burn->EnableFormWrite(false);
            burn->followIsoWrite(choices);
        }
        cd->setTrackMode(choices.mode2XA ? 2 : 1);
        cd->setFinalizeDisc(choices.finalize);
        cd->setCloseSession(true);
        cd->setTestWrite(choices.testWrite);
        cd->EnableBurnProof(choices.burnProof);
        cd->SetLogging(choices.logging, strLogFilePath);
        if (!cd->WriteISOFile(name)) {
            frame->EnableForm(true);
            // The write dialog has nothing to follow: it goes rather than wait with no way out.
            if ((burn = WriteDialog::open())) {
                burn->EnableFormWrite(true);
                burn->Unload();
            }
            MsgBox(QStringLiteral("Error Writing ISO File."), vbCritical, critical());
            frmBurnIso::unload();
        }
    } catch (const RuntimeError &) {
        frame->EnableForm(true);
        frmBurnIso::unload();
    }
}

} // namespace IsoFileCommands
