#include "vbwErrorReport.h"
#include "VbwExtension.h"
#include "base/App.h"
#include "vbwDump.h"
#include "vbwErrHandler.h"
#include "vbwTrace.h"
#include "widgets/MessageBoxService.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>
#include <QUrlQuery>

namespace {
const QString crlf = QStringLiteral("\r\n");

void writeText(const QString &path, const QString &text) {
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(text.toUtf8());
}
} // namespace

QString vbwErrorReport::folder() {
    return App::pathOf(QStringLiteral("/Error Report Files/"));
}

bool vbwErrorReport::prepareFolder() {
    if (App::Path().isEmpty())
        return false;
    QDir dir(folder());
    for (const QFileInfo &file : dir.entryInfoList(QDir::Files | QDir::Hidden | QDir::System))
        QFile::remove(file.filePath());
    return dir.mkpath(QStringLiteral("."));
}

QString vbwErrorReport::errorText() {
    const vbwErrorState &s = vbwState();
    return s.vbwMessageString + crlf + crlf + QStringLiteral("Circumstances:") + crlf +
           s.vbwCircumstancesString;
}

QString vbwErrorReport::subject() {
    return QStringLiteral("Error report for ") + App::Title() + u' ' + App::versionText();
}

qint64 vbwErrorReport::sizeInKb(const QString &path) {
    return (QFileInfo(path).size() + 1023) / 1024;
}

QString vbwErrorReport::writeFiles() {
    const QString dir = folder();
    // Without the trace no stack is kept; the file then says so rather than being missing.
    writeText(dir + QStringLiteral("Stack.txt"), vbwGetStack());
    const QString log = vbwCloseLog();
    if (!log.isEmpty()) {
        QFile::remove(dir + QStringLiteral("Trace.txt"));
        QFile::copy(log, dir + QStringLiteral("Trace.txt"));
    }
    writeText(dir + QStringLiteral("Error.txt"), errorText());
    writeText(dir + QStringLiteral("Version.txt"), VbwExtension::VersionReport());
    writeText(dir + QStringLiteral("System.txt"), VbwExtension::SystemReport());
    const QString zip = dir + subject() + QStringLiteral(".zip");
    return VbwExtension::ZipFolder(dir, zip) ? zip : QString();
}

void vbwErrorReport::mail(const QString &zipPath) {
    const vbwOptions &o = vbwCurrentOptions();
    const vbwErrorState &s = vbwState();
    const QString name = subject();
    const QString size = QString::number(sizeInKb(zipPath));
    QString path = zipPath;
    path.chop(4); // the texts add ".zip" themselves
    const QString body = s.vbwMessageString + crlf + crlf + QStringLiteral("Circumstances:") +
                         s.vbwCircumstancesString + crlf + crlf +
                         QStringLiteral("(Note to sender: the attached file is ") + name +
                         QStringLiteral(".zip - Size: ") + size + QStringLiteral(" Kb)");
    if (VbwExtension::SendReportMail(o.vbwEmailRecipientName, o.vbwEmailRecipientAdress, name, body,
                                     zipPath) == 0)
        return;

    QUrl link(QStringLiteral("mailto:") + o.vbwEmailRecipientAdress);
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("subject"), name);
    query.addQueryItem(QStringLiteral("body"), QStringLiteral("(Please attach: ") + path +
                                                   QStringLiteral(".zip - Size: ") + size +
                                                   QStringLiteral(" Kb to this message.)"));
    link.setQuery(query);
    bool sent = false;
    if (VbwExtension::openUrl(link)) {
        sent = MsgBox(QStringLiteral("Have you been able to send the message successfully ?"),
                      vbYesNo | vbQuestion | vbSystemModal, App::Title()) == vbYes;
    }
    if (sent)
        return;
    const QString text =
        QStringLiteral("Impossible to send the error report automatically !") + crlf + crlf +
        QStringLiteral("Please open your email messenger and send a message with the following "
                       "parameters:") +
        crlf + QStringLiteral("Address: ") + o.vbwEmailRecipientAdress + crlf +
        QStringLiteral("Subject: ") + name + crlf +
        QStringLiteral("Message: Please open the attached file.") + crlf +
        QStringLiteral("Attached file: ") + path + QStringLiteral(".zip (Size: ") + size +
        QStringLiteral(" Kb)");
    if (MsgBox(text + crlf + crlf +
                   QStringLiteral("Would you like to copy this message to the clipboard ?"),
               vbYesNo | vbQuestion, App::Title()) == vbYes) {
        if (QClipboard *clipboard = QGuiApplication::clipboard())
            clipboard->setText(text);
    }
}

QString vbwErrorReport::writeUnattended() {
    if (!prepareFolder())
        return QString();
    vbwSetDumpFile(folder() + QStringLiteral("Variables.txt"));
    vbwOpenDumpFile();
    vbwDumpGlobals();
    vbwCloseDumpFile();
    return writeFiles();
}
