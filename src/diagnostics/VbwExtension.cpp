#include "VbwExtension.h"
#include "engine/system/EngineVersions.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QSysInfo>
#include <QThread>
#include <QUrl>

#include <sys/utsname.h>
#include <zip.h>

#include <memory>

namespace {
VbwExtension::ProgramRunner &runnerSlot() {
    static VbwExtension::ProgramRunner runner;
    return runner;
}
VbwExtension::UrlOpener &openerSlot() {
    static VbwExtension::UrlOpener opener;
    return opener;
}

QString fileText(const QString &path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QStringLiteral("(not readable)\n");
    return QString::fromUtf8(f.readAll());
}

struct ZipDiscard {
    void operator()(zip_t *z) const { zip_discard(z); }
};
} // namespace

QString VbwExtension::VersionReport() {
    QString text;
    for (const EngineVersion &v : engineVersions())
        text += v.name + u' ' + v.version + u'\n';
    return text;
}

QString VbwExtension::SystemReport() {
    QString text;
    struct utsname u;
    if (uname(&u) == 0) {
        text += QStringLiteral("uname: %1 %2 %3 %4 %5\n")
                    .arg(QString::fromLocal8Bit(u.sysname), QString::fromLocal8Bit(u.nodename),
                         QString::fromLocal8Bit(u.release), QString::fromLocal8Bit(u.version),
                         QString::fromLocal8Bit(u.machine));
    }
    text += QStringLiteral("processors: %1\n").arg(QThread::idealThreadCount());
    text += QStringLiteral("\n[os-release]\n") + fileText(QStringLiteral("/etc/os-release"));
    const QStringList mem = fileText(QStringLiteral("/proc/meminfo")).split(u'\n');
    text += QStringLiteral("\n[memory]\n") + mem.mid(0, 3).join(u'\n') + u'\n';
    text += QStringLiteral("\n[drives]\n");
    const QStringList drives =
        QDir(QStringLiteral("/dev")).entryList({QStringLiteral("sr*")}, QDir::System, QDir::Name);
    text += drives.isEmpty()
                ? QStringLiteral("no optical drive device\n")
                : QStringLiteral("/dev/") + drives.join(QStringLiteral(" /dev/")) + u'\n';
    if (QFile::exists(QStringLiteral("/proc/sys/dev/cdrom/info")))
        text += fileText(QStringLiteral("/proc/sys/dev/cdrom/info"));
    return text;
}

bool VbwExtension::ZipFolder(const QString &folder, const QString &zipPath) {
    int error = 0;
    std::unique_ptr<zip_t, ZipDiscard> archive(
        zip_open(QFile::encodeName(zipPath).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error));
    if (!archive)
        return false;
    const QString self = QFileInfo(zipPath).absoluteFilePath();
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo &file : files) {
        if (file.absoluteFilePath() == self)
            continue;
        zip_source_t *source =
            zip_source_file(archive.get(), QFile::encodeName(file.filePath()).constData(), 0, -1);
        if (!source)
            return false;
        if (zip_file_add(archive.get(), file.fileName().toUtf8().constData(), source,
                         ZIP_FL_OVERWRITE | ZIP_FL_ENC_UTF_8) < 0) {
            zip_source_free(source);
            return false;
        }
    }
    if (zip_close(archive.get()) != 0)
        return false;
    archive.release();
    return true;
}

int VbwExtension::SendReportMail(const QString &recipientName, const QString &recipientAddress,
                                 const QString &subject, const QString &body,
                                 const QString &attachment) {
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
    if (program.isEmpty() && !runnerSlot())
        return -1;
    const QStringList args = {QStringLiteral("--subject"),
                              subject,
                              QStringLiteral("--body"),
                              body,
                              QStringLiteral("--attach"),
                              attachment,
                              QStringLiteral("%1 <%2>").arg(recipientName, recipientAddress)};
    if (runnerSlot())
        return runnerSlot()(QStringLiteral("xdg-email"), args);
    return QProcess::execute(program, args);
}

void VbwExtension::setProgramRunner(ProgramRunner runner) {
    runnerSlot() = std::move(runner);
}

void VbwExtension::setUrlOpener(UrlOpener opener) {
    openerSlot() = std::move(opener);
}

bool VbwExtension::openUrl(const QUrl &url) {
    if (openerSlot())
        return openerSlot()(url);
    return QDesktopServices::openUrl(url);
}
