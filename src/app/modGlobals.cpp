#include "modGlobals.h"
#include "base/App.h"
#include "base/Conversions.h"
#include "base/Format.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "modDeclarations.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTextEdit>
#include <QWidget>

QString TwoDigits(const QString &n) {
    return (QStringLiteral("00") + n).right(2);
}

QString TwoDigits(qint64 n) {
    return TwoDigits(QString::number(n));
}

void SelectText(QWidget *EditControl) {
    if (auto *line = qobject_cast<QLineEdit *>(EditControl)) {
        if (!line->text().isEmpty())
            line->setSelection(0, int(line->text().size()));
    } else if (auto *plain = qobject_cast<QPlainTextEdit *>(EditControl)) {
        if (!plain->toPlainText().isEmpty())
            plain->selectAll();
    } else if (auto *rich = qobject_cast<QTextEdit *>(EditControl)) {
        if (!rich->toPlainText().isEmpty())
            rich->selectAll();
    }
}

QString ScreenResolution() {
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize size = screen ? screen->size() : QSize(0, 0);
    return QStringLiteral("%1 X %2").arg(size.width()).arg(size.height());
}

void RemoveCancelMenuItem(QWidget *frm) {
    if (!frm)
        return;
    frm->setWindowFlag(Qt::CustomizeWindowHint, true);
    frm->setWindowFlag(Qt::WindowCloseButtonHint, false);
}

QString SetHelpStrings(int intSelHelpFile) {
    if (intSelHelpFile == 1)
        return App::pathOf(QStringLiteral("/tessaly.hlp"));
    return QString();
}

QString GetDriveErrorMessage(qint32 DriveError) {
    static const char *const texts[] = {
        "No additional error data was reported",
        "Abnormal I/O Termination",
        "The drive is not ready",
        "Communication with drive unit failed",
        "The drive could not track properly",
        "Writing error of unknown origin",
        "Writing occurred, but recovery is needed",
        "Recovery attempt failed",
        "A buffer under-run has occurred",
        "The disc could not be read",
        "The drive's attempts at reading retries failed",
        "The read timed out",
        "While reading, the LEC was not recovered",
        "The CIRC could not be validated",
        "Reading of the UPC failed",
        "Reading of the ISRC failed",
        "Streaming while reading was interrupted",
        "Drive could not position media",
        "An incompatible parameter length was sent to the drive",
        "A transfer error occurred to the drive",
        "An invalid command was sent to the drive",
        "Error trying to write past the end of the media",
        "Invalid command field",
        "An incompatible parameter field was sent to the drive",
        "A command parameter is not supported",
        "A command parameter had an invalid value",
        "The SCSI/ATAPI bus was reset and caused a write failure",
        "A command parameter changed while in progress",
        "The disc is not compatible with the drive mode",
        "The drive does not recognize the format of the disc",
        "The disc format is not compatible with the drive",
        "The disc is of an unknown format",
        "The drive cannot write because of an incompatible format",
        "A disc is not present",
        "The drive had an unknown failure",
        "The drive has timed out while completing a command",
        "The disc could not be erased",
        "The Table of Contents is unrecoverable",
        "Error trying to write past the user area of the media",
        "Packet recording is not configured correctly",
        "The current track mode is incompatible with the disc format",
        "Packet recording has incorrect size",
        "A generic session closing error occurred",
        "Error closing Lead-in area",
        "Error closing Lead-out area",
        "While closing, the track was never completed",
        "Error attempting to write to a reserved track",
        "Power calibration area is full",
        "A flaw exists in the Power calibration area",
        "The disc's PMA could not be updated",
        "The disc's PMA is full",
        "Unknown error - use extended data for more information",
        "No Error Reported",
        "A seek command was interrupted by another command",
        "A NT disc I/O operation failed",
        "A format is in progress causing operation failure",
    };
    static_assert(std::size(texts) == 56);
    QString strMsg;
    const qint64 index = qint64(DriveError) - 1000;
    if (index >= 0 && index < qint64(std::size(texts)))
        strMsg = QString::fromLatin1(texts[index]);
    return strMsg + QStringLiteral(" (") + QString::number(DriveError) + QStringLiteral(").");
}

QString GetTrackFileErrorMessage(qint32 FileError, const QString &FileName) {
    QString strErrorMsg;
    switch (FileError) {
    case 0:
        strErrorMsg = QStringLiteral("Error Opening File: ") + FileName;
        break;
    case 1:
        strErrorMsg = QStringLiteral("Error Closing File: ") + FileName;
        break;
    case 2:
        strErrorMsg = QStringLiteral("Error Reading file: ") + FileName;
        break;
    default:
        strErrorMsg = QStringLiteral("Unknown file error!:") + FileName;
        break;
    }
    return strErrorMsg;
}

namespace {
// Every space figure passes through the format "#0" and back: a whole number, rounded.
double wholeNumber(double value) {
    return Val(Format(value, QStringLiteral("#0")));
}
} // namespace

double GetFreeSpace(CDWriterPro *cdObj, int sizeFormat) {
    if (glngDriveIndex < 0 || !cdObj)
        return 0;
    const double bytes = cdObj->BlocksToBytes(cdObj->FreeBlocks(), 1);
    switch (sizeFormat) {
    case 1:
        return wholeNumber(bytes);
    case 2:
        return wholeNumber(bytes / 1024);
    case 3:
        return wholeNumber(bytes / 1024 / 1024);
    default:
        return 0;
    }
}

double GetUsedSpace(CDWriterPro *cdObj, int sizeFormat) {
    if (glngDriveIndex < 0 || !cdObj)
        return 0;
    const double kb =
        SystemCalls::DiskSizeKB(cdObj->DriveLetter(glngDriveIndex) + QStringLiteral(":\\"));
    switch (sizeFormat) {
    case 1:
        return wholeNumber(kb * 1024);
    case 2:
        return wholeNumber(kb);
    case 3:
        return wholeNumber(kb / 1024);
    default:
        return 0;
    }
}

double GetTotalSpace(CDWriterPro *cdObj, int sizeFormat) {
    return wholeNumber(GetFreeSpace(cdObj, sizeFormat) + GetUsedSpace(cdObj, sizeFormat));
}

QString OpenSessionMessage() {
    return QStringLiteral(
        "The last session of this disc is open: a write to it was cancelled or failed.\r\n"
        "It must be closed before anything more can be written to the disc.\r\n\r\n"
        "Close it with CD Recorder > Session Check..., or insert another disc.");
}

void SetVolumeIdentifiers(CDWriterPro *cdObj, const QString &volume) {
    cdObj->setVolumeIdentifier(volume);
    cdObj->setApplicationIdentifier(gstrVolumeApplicationIdentifier);
    cdObj->setPublisherIdentifier(gstrVolumePublisher);
    cdObj->setSystemIdentifier(gstrVolumeSystemIdentifier);
    cdObj->setVolumeSetIdentifier(gstrVolumeSetIdentifier);
    cdObj->setDataPreparerIdentifier(gstrVolumeDataPreparerIdentifier);
    cdObj->setCopyrightFileIdentifier(gstrVolumeCopyrightFileIdentifier);
    cdObj->setAbstractFileIdentifier(gstrVolumeAbstractFileIdentifier);
    cdObj->setBiblioFileIdentifier(gstrVolumeBiblioFileIdentifier);
}

void ClearVolumeTexts() {
    for (QString *text :
         {&gstrVolumeIdentifier, &gstrVolumeApplicationIdentifier, &gstrVolumePublisher,
          &gstrVolumeSystemIdentifier, &gstrVolumeSetIdentifier, &gstrVolumeDataPreparerIdentifier,
          &gstrVolumeCopyrightFileIdentifier, &gstrVolumeAbstractFileIdentifier,
          &gstrVolumeBiblioFileIdentifier})
        text->clear();
}

QString WriteErrorText(qint32 WriteError, qint32 DriveError, const QString &sErrorInfo,
                       const QString &sSenseInfo) {
    QString text = QStringLiteral("Writing Error: (") + QString::number(WriteError) +
                   QStringLiteral(")   ") + sErrorInfo + QStringLiteral("\r\n");
    if (WriteError == 3)
        text += GetDriveErrorMessage(DriveError) + QStringLiteral("\r\nError Sense Data: ") +
                sSenseInfo;
    return text;
}
