#pragma once

#include <QString>

class CDWriterPro;
class QWidget;

// The small functions shared by the windows.

// The last two characters of "00" and the number: 7 gives "07", 123 gives "23".
QString TwoDigits(qint64 n);
QString TwoDigits(const QString &n);

// Marks the whole text of a line edit so that typing replaces it; other widgets are left alone.
void SelectText(QWidget *EditControl);

// The screen's width and height in pixels joined with " X " ("800 X 600").
QString ScreenResolution();

// Takes the close entries out of a dialog's title bar, for dialogs that may not be closed so.
void RemoveCancelMenuItem(QWidget *frm);

// The help file for a selector: 1 the program's help, anything else an empty text.
QString SetHelpStrings(int intSelHelpFile);

// Turns a drive failure code (1000 to 1055) into the user's sentence with the code in
// brackets after it; a code outside the table leaves only the bracketed code.
QString GetDriveErrorMessage(qint32 DriveError);

// The sentence of a file failure class with the file's path behind it.
QString GetTrackFileErrorMessage(qint32 FileError, const QString &FileName);

// Room on the disc in the chosen recorder, rounded to whole units of sizeFormat (1 bytes,
// 2 KB, 3 MB; other formats and no recorder give 0). Free room is the engine's free blocks;
// used room is read from the disc's mounted volume, so an unmounted disc counts none.
double GetFreeSpace(CDWriterPro *cdObj, int sizeFormat);
// What a user is told of a disc whose last session a cancelled or failed write left open.
QString OpenSessionMessage();
double GetUsedSpace(CDWriterPro *cdObj, int sizeFormat);
double GetTotalSpace(CDWriterPro *cdObj, int sizeFormat);

// The engine takes the volume's nine labels: `volume` as its name, the eight others from the
// globals, in the order every write and save hands them over.
void SetVolumeIdentifiers(CDWriterPro *cdObj, const QString &volume);
// The nine label globals emptied, as a new data compilation starts with none.
void ClearVolumeTexts();

// The sentence of a WriteError event: its class and text, and for a drive failure the drive's
// sentence and sense data.
QString WriteErrorText(qint32 WriteError, qint32 DriveError, const QString &sErrorInfo,
                       const QString &sSenseInfo);
