#include "IsoReadBack.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>

namespace {
QByteArray run(const QString &program, const QStringList &args, bool *ok) {
    QProcess p;
    p.start(program, args);
    *ok = p.waitForFinished(120000) && p.exitStatus() == QProcess::NormalExit && !p.exitCode();
    return p.readAllStandardOutput();
}
} // namespace

QByteArray IsoReadBack::sha256(const QString &path) {
    QFile f(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return f.open(QIODevice::ReadOnly) && hash.addData(&f) ? hash.result().toHex() : QByteArray();
}

QMap<QString, QByteArray> IsoReadBack::files(Tool tool, const QString &image, qint32 session) {
    QTemporaryDir dir;
    const QString at = QString::number(session), root = dir.filePath("x");
    bool ok = false;
    QMap<QString, QByteArray> out;
    if (tool == Tool::Bsdtar && QDir().mkpath(root))
        run("bsdtar", {"-xf", image, "-C", root}, &ok);
    else
        run("xorriso",
            {"-osirrox", "on", "-indev", image, "-load", "sbsector", at, "-extract", "/", root},
            &ok);
    for (QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
         ok && it.hasNext();) {
        const QString path = it.next(), name = path.mid(root.size());
        const QByteArray viaIsoinfo =
            tool == Tool::Isoinfo ? run("isoinfo", {"-R", "-T", at, "-i", image, "-x", name}, &ok)
                                  : QByteArray();
        out.insert(name,
                   tool == Tool::Isoinfo
                       ? QCryptographicHash::hash(viaIsoinfo, QCryptographicHash::Sha256).toHex()
                       : sha256(path));
    }
    return ok ? out : QMap<QString, QByteArray>();
}
