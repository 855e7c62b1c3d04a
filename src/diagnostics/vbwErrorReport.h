#pragma once

#include <QString>

// The error report: the folder "Error Report Files" in the application folder, its files, the
// zip and the mail. Every step goes on past its own failures, leaving its part out.
class vbwErrorReport {
public:
    static QString folder();
    // Deletes the plain files of the folder (never a folder inside it) and makes it. Refuses,
    // and deletes nothing, when the application folder is not known.
    static bool prepareFolder();
    // "Error.txt": the message, the circumstances the user typed.
    static QString errorText();
    // "Error report for Tessaly 0.1.0"; the zip bears it as its name.
    static QString subject();
    // Stack, trace, error, version and system files, then the zip; returns the zip's path,
    // empty when it could not be made.
    static QString writeFiles();
    // Offers the zip by mail: xdg-email, else a mailto link, else the text for the clipboard.
    static void mail(const QString &zipPath);
    // The whole report with nobody to ask, for a fault the program does not survive.
    static QString writeUnattended();
    // The zip's size as the mail tells it, in whole kilobytes rounded up.
    static qint64 sizeInKb(const QString &path);
};
