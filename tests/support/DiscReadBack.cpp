#include "DiscReadBack.h"

#include "ReadBack.h"

#include <QtTest>

#include <unistd.h>

namespace {
// On failure `out` says so instead.
bool run(const QString &program, const QStringList &args, QByteArray &out) {
    int status = -1;
    out = ReadBack::run(program, args, &status);
    if (status != 0)
        out = program.toUtf8() + " failed with status " + QByteArray::number(status);
    return status == 0;
}

DiscReadBack::Tree failed(const QByteArray &message) {
    return {{QStringLiteral("<error>"), message.trimmed()}};
}

// What a tool extracted into a folder, as a tree.
DiscReadBack::Tree collect(const QString &root) {
    DiscReadBack::Tree tree;
    QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        const QString path = QDir(root).relativeFilePath(info.filePath());
        if (info.isSymLink()) {
            char target[4096] = {};
            const ssize_t n = ::readlink(QFile::encodeName(info.filePath()).constData(), target,
                                         sizeof target - 1);
            tree[path] = "-> " + QByteArray(target, n > 0 ? int(n) : 0);
        } else if (info.isDir()) {
            tree[path] = "<dir>";
            QFile::setPermissions(info.filePath(), QFile::permissions(info.filePath()) |
                                                       QFile::WriteOwner | QFile::ExeOwner);
        } else {
            QFile f(info.filePath());
            tree[path] = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
        }
    }
    return tree;
}

DiscReadBack::Tree isoinfoTree(const QString &image, qint32 startBlock) {
    const QStringList base{"-R", "-i", image, "-T", QString::number(startBlock)};
    QByteArray listing;
    if (!run("isoinfo", base + QStringList{"-l"}, listing))
        return failed(listing);
    DiscReadBack::Tree tree;
    QString dir;
    for (const QByteArray &raw : listing.split('\n')) {
        const QString line = QString::fromUtf8(raw);
        if (line.startsWith(u"Directory listing of /")) {
            dir = line.mid(int(qstrlen("Directory listing of /"))).trimmed();
            continue;
        }
        const int at = line.indexOf(u"]  ");
        if (at < 0 || line.isEmpty())
            continue;
        QString entry = line.mid(at + 3).trimmed();
        if (entry.isEmpty() || entry == u"." || entry == u"..")
            continue;
        const QChar type = line.at(0);
        QByteArray value = "<dir>";
        if (type == u'l') {
            const int arrow = entry.indexOf(u" -> ");
            value = "-> " + entry.mid(arrow + 4).toUtf8();
            entry = entry.left(arrow);
        }
        const QString path = dir + entry;
        if (type == u'-' && !run("isoinfo", base + QStringList{"-x", u'/' + path}, value))
            value = "<isoinfo -x failed>";
        tree[path] = value;
    }
    return tree;
}
} // namespace

DiscReadBack::Tree DiscReadBack::read(Tool tool, const QString &image, qint32 startBlock) {
    if (tool == Tool::Isoinfo)
        return isoinfoTree(image, startBlock);
    QTemporaryDir work;
    const QString out = work.filePath(QStringLiteral("out"));
    QDir().mkpath(out);
    if (tool == Tool::Bsdtar && startBlock != 0)
        return failed("bsdtar reads the first session only");
    QByteArray said;
    const bool ok = tool == Tool::Xorriso
                        ? run("xorriso",
                              {"-abort_on", "FAILURE", "-osirrox", "on", "-indev", image, "-load",
                               "sbsector", QString::number(startBlock), "-extract", "/", out},
                              said)
                        : run("bsdtar", {"-x", "-f", image, "-C", out}, said);
    return ok ? collect(out) : failed(said);
}

QString DiscReadBack::name(Tool tool) {
    return QStringList{"xorriso", "isoinfo", "bsdtar"}.value(int(tool));
}

DiscReadBack::Tree DiscReadBack::treeOf(const QStringList &entries) {
    Tree tree;
    for (const QString &entry : entries) {
        if (entry.endsWith(u'/'))
            tree[entry.chopped(1)] = "<dir>";
        else
            tree[entry.section(u'=', 0, 0)] = entry.section(u'=', 1).toUtf8();
    }
    return tree;
}

void DiscReadBack::expectEverywhere(const QString &image, const Tree &expected,
                                    const Tree &isoinfoSees) {
    for (Tool tool : {Tool::Xorriso, Tool::Isoinfo, Tool::Bsdtar}) {
        const Tree got = read(tool, image);
        const Tree &want = tool == Tool::Isoinfo && !isoinfoSees.isEmpty() ? isoinfoSees : expected;
        QVERIFY2(got == want,
                 qPrintable(name(tool) + " read " + QStringList(got.keys()).join(", ")));
    }
}
