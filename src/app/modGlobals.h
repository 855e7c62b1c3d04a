#pragma once

#include <QString>

class CDWriterPro;
class QWidget;

// The small functions shared by the windows.

// The last two characters of "00" and the number: 7 gives "07", 123 gives "23".
QString TwoDigits(qint64 n);
QString TwoDigits(const QString &n);

// Selects all of an edit control's text when it has any; anything else is passed over.
void SelectText(QWidget *EditControl);

// The screen's width and height in pixels joined with " X " ("800 X 600").
QString ScreenResolution();

// Takes the close entries out of a dialog's title bar, for dialogs that may not be closed so.
void RemoveCancelMenuItem(QWidget *frm);

// The help file for a selector: 1 the program's help, anything else an empty text.
QString SetHelpStrings(int intSelHelpFile);

// The sentence of a drive failure code 1000 to 1055 with the code behind it:
// "A buffer under-run has occurred (1008).". An unknown code gives " (2000).".
QString GetDriveErrorMessage(qint32 DriveError);

// The sentence of a file failure class with the file's path behind it.
QString GetTrackFileErrorMessage(qint32 FileError, const QString &FileName);

// Space on the medium of the chosen recorder (glngDriveIndex), as a whole number: sizeFormat 1
// bytes, 2 kilobytes, 3 megabytes, anything else 0; 0 as well with no recorder chosen. Free
// space comes from the engine's free blocks, used space from the mounted volume of the disc
// (0 for a disc the system does not mount), total space is the sum.
double GetFreeSpace(CDWriterPro *cdObj, int sizeFormat);
// What a user is told of a disc whose last session a cancelled or failed write left open.
QString OpenSessionMessage();
double GetUsedSpace(CDWriterPro *cdObj, int sizeFormat);
double GetTotalSpace(CDWriterPro *cdObj, int sizeFormat);
