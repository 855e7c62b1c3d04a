#pragma once

#include <QString>
#include <QStringList>

// The running program's identity and its application folder: the per-user folder that holds
// "Dat", the audio folder and the error reports. Lives on the UI thread; set once at start.
class App {
public:
    // Chooses the folder (--app-folder DIR when given, else the XDG data folder) and makes it
    // with its "Dat" folder. Returns false when the folder can't be made.
    static bool initialize(const QStringList &arguments);
    static void setPath(const QString &folder);

    static QString Path();
    // A name of the system relative to the folder ("\Dat\tessaly.ini" or "/Dat/tessaly.ini").
    static QString pathOf(const QString &relativeName);
    // A file that ships beside the program: the application folder first, then the installed
    // share folder, then the source tree's resources (a build that was never installed).
    static QString resourcePath(const QString &relativeName);

    static QString ProductName() { return QStringLiteral("Tessaly"); }
    static QString Title() { return ProductName(); }
    static QString LegalCopyright();
    static int Major();
    static int Minor();
    static int Revision();
    static QString versionText(); // "major.minor.revision"

    // The command line the program was started with, for switches such as "/trace".
    static QStringList arguments();
    static QString argumentValue(const QString &option);
    static bool hasArgument(const QString &option);

private:
    static QString s_path;
    static QStringList s_arguments;
};
