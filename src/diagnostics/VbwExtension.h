#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QUrl;

// What the report needs from the system: the versions of the libraries in use, the machine's
// data, the zip of the report folder and the mail. Any thread; nothing here shows a window.
class VbwExtension {
public:
    // One line a library, each as the library reports its own version while the program runs.
    static QString VersionReport();
    // uname, the distribution's os-release, memory and the optical drives.
    static QString SystemReport();
    // Packs the plain files of `folder` (never a sub-folder, never the zip itself) into
    // `zipPath`. False when the zip could not be written.
    static bool ZipFolder(const QString &folder, const QString &zipPath);
    // Hands the mail to xdg-email; 0 means the mail program took it.
    static int SendReportMail(const QString &recipientName, const QString &recipientAddress,
                              const QString &subject, const QString &body,
                              const QString &attachment);

    // How outside programs and links are opened; tests replace them to see what was asked.
    using ProgramRunner = std::function<int(const QString &program, const QStringList &args)>;
    using UrlOpener = std::function<bool(const QUrl &url)>;
    static void setProgramRunner(ProgramRunner runner);
    static void setUrlOpener(UrlOpener opener);
    static bool openUrl(const QUrl &url);
};
