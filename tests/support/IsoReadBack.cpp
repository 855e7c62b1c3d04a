#include "IsoReadBack.h"

#include <algorithm>

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace {
QByteArray run(const QString &program, const QStringList &args, bool *ok) {
    QProcess p;
    p.start(program, args);
    const bool done = p.waitForFinished(120000);
    *ok = done && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    return p.readAllStandardOutput();
}

QMap<QString, QByteArray> hashTree(const QString &root) {
    QMap<QString, QByteArray> out;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        out.insert(path.mid(root.size()), IsoReadBack::sha256(path));
    }
    return out;
}
} // namespace

QByteArray IsoReadBack::sha256(const QString &path) {
    QFile f(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return f.open(QIODevice::ReadOnly) && hash.addData(&f) ? hash.result().toHex() : QByteArray();
}

QMap<QString, QByteArray> IsoReadBack::files(Tool tool, const QString &image, qint32 session) {
    QTemporaryDir dir;
    const QString at = QString::number(session);
    bool ok = false;
    if (tool == Tool::Xorriso) {
        run("xorriso",
            {"-osirrox", "on", "-indev", image, "-load", "sbsector", at, "-extract", "/",
             dir.filePath("x")},
            &ok);
        return ok ? hashTree(dir.filePath("x")) : QMap<QString, QByteArray>();
    }
    if (tool == Tool::Bsdtar) {
        run("bsdtar", {"-xf", image, "-C", dir.path()}, &ok);
        return ok ? hashTree(dir.path()) : QMap<QString, QByteArray>();
    }
    // isoinfo lists folders and files alike: a path that leads on to others is a folder.
    const QStringList listed =
        QString::fromUtf8(run("isoinfo", {"-R", "-f", "-T", at, "-i", image}, &ok))
            .split(u'\n', Qt::SkipEmptyParts);
    QMap<QString, QByteArray> out;
    for (const QString &path : listed) {
        if (!ok || std::any_of(listed.begin(), listed.end(),
                               [&](const QString &p) { return p.startsWith(path + u'/'); }))
            continue;
        bool read = false;
        const QByteArray bytes = run("isoinfo", {"-R", "-T", at, "-i", image, "-x", path}, &read);
        out.insert(path, read ? QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex()
                              : QByteArray());
    }
    return out;
}
