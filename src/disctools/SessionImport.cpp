#include "SessionImport.h"
#include "app/CompilationWindow.h"
#include "app/FormRegistry.h"
#include "app/FrameServices.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/App.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/MessageBoxService.h"

#include <QCoreApplication>

namespace SessionImport {

void ToolMenuImportPrevious(const WindowContext &context) {
    CDWriterPro *cd = context.engine;
    FrameServices *frame = context.frame;
    const QString information = App::ProductName() + QStringLiteral(" - Information");
    if (glngCurrentDrive == -1) {
        MsgBox(QStringLiteral("A drive is not selected or does not exist."), vbInformation,
               information);
        return;
    }
    if (cd->MediaType() == CDWriterPro::MediaNone) {
        MsgBox(QStringLiteral("Please Insert a disc before continuing!"), vbInformation,
               information);
        return;
    }
    if (gblnDisctypeIsData == 1) {
        // The command is greyed with an audio compilation open; a key that still reaches here
        // is told why nothing happens.
        MsgBox(QStringLiteral("Close the audio compilation before importing a session."),
               vbInformation, information);
        return;
    }
    // The data window empties the image as it loads: it is opened before the import, so that
    // what the disc brings in is not lost to it.
    if (!CompilationWindow::current()) {
        FormRegistry::open(QStringLiteral("frmData"));
        ClearVolumeTexts();
        FormRegistry::open(QStringLiteral("ResetImage"));
    }
    frame->setStatusText(QStringLiteral("DATA"), QStringLiteral(" Importing Previous Session..."));
    QCoreApplication::processEvents();
    if (!cd->ImportLastSession(true)) {
        MsgBox(QStringLiteral("Previous Session could not be imported\r\n"
                              "Only ISO/Joliet tracks (Mode1) can be imported."),
               vbCritical, App::ProductName() + QStringLiteral(" - Critical"));
        return;
    }
    frame->setVolumeIdentifierText(cd->VolumeIdentifier());
    gstrVolumeIdentifier = cd->VolumeIdentifier();
    gstrVolumeApplicationIdentifier = cd->ApplicationIdentifier();
    gstrVolumePublisher = cd->PublisherIdentifier();
    gstrVolumeSystemIdentifier = cd->SystemIdentifier();
    gstrVolumeSetIdentifier = cd->VolumeSetIdentifier();
    gstrVolumeDataPreparerIdentifier = cd->DataPreparerIdentifier();
    gstrVolumeCopyrightFileIdentifier = cd->CopyrightFileIdentifier();
    gstrVolumeAbstractFileIdentifier = cd->AbstractFileIdentifier();
    gstrVolumeBiblioFileIdentifier = cd->BiblioFileIdentifier();
    if (CompilationWindow *data = CompilationWindow::current())
        data->sessionImported();
    frame->setStatusText(QStringLiteral("DATA"), QStringLiteral(" Current Session: ") +
                                                     QString::number(cd->SessionCount()));
}

} // namespace SessionImport
