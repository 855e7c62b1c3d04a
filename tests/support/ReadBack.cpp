#include "ReadBack.h"
#include "DiscReadBack.h"

#include <QtCore>

namespace ReadBack {

QByteArray run(const QString &program, const QStringList &args, int *status) {
    QProcess p;
    p.start(program, args);
    p.waitForFinished(120000);
    if (status)
        *status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    return p.readAllStandardOutput();
}

QByteArray sha256(const QString &path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    QCryptographicHash h(QCryptographicHash::Sha256);
    h.addData(&f);
    return h.result().toHex();
}

namespace {
QStringList indev(const QString &image, qint32 session) {
    QStringList args{"-indev", image};
    if (session >= 0)
        args << "-load"
             << "sbsector" << QString::number(session);
    return args;
}
} // namespace

QStringList xorrisoFiles(const QString &image, qint32 session, const QString &type) {
    const QByteArray out = run("xorriso", indev(image, session) << "-find"
                                                                << "/"
                                                                << "-type" << type);
    QStringList files;
    for (const QByteArray &line : out.split('\n'))
        if (!line.isEmpty())
            files << QString::fromUtf8(line).remove(u'\'');
    files.sort();
    return files;
}

QByteArray xorrisoExtract(const QString &image, const QString &path, QTemporaryDir &dir,
                          qint32 session) {
    const QString target = dir.filePath(QStringLiteral("s%1%2").arg(session).arg(path));
    run("xorriso", QStringList{"-osirrox", "on"} + indev(image, session)
                       << "-extract" << path << target);
    return sha256(target);
}

QList<QPair<int, int>> xorrisoToc(const QString &image) {
    const QByteArray out = run("xorriso", {"-indev", image, "-toc"});
    static const QRegularExpression row(
        QStringLiteral(R"(ISO session\s*:\s*\d+\s*,\s*(\d+)\s*,\s*(\d+)s)"));
    QList<QPair<int, int>> toc;
    for (auto it = row.globalMatch(QString::fromUtf8(out)); it.hasNext();) {
        const auto m = it.next();
        toc.append({m.captured(1).toInt(), m.captured(2).toInt()});
    }
    return toc;
}

QMap<QString, QByteArray> fileHashes(Tool tool, const QString &image, qint32 session) {
    QMap<QString, QByteArray> out;
    const DiscReadBack::Tree tree = DiscReadBack::read(tool, image, session);
    for (auto it = tree.begin(); it != tree.end(); ++it) {
        if (it.key() == u"<error>")
            return {};
        if (*it != "<dir>" && !it->startsWith("-> "))
            out.insert(u'/' + it.key(),
                       QCryptographicHash::hash(*it, QCryptographicHash::Sha256).toHex());
    }
    return out;
}

QByteArray cdParanoiaTrack(const QString &cue, int track, QTemporaryDir &dir) {
    const QString out = dir.filePath(QStringLiteral("rip%1.raw").arg(track));
    int status = -1;
    run("cd-paranoia", {"-d", cue, "-c", "-r", QString::number(track), out}, &status);
    QFile f(out);
    return status == 0 && f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("failed");
}

QList<int> cdInfoTrackStarts(const QString &cue) {
    const QString info = QString::fromUtf8(
        run("cd-info", {"--no-header", "--no-device-info", "--no-cddb", "--cue-file", cue}));
    QList<int> starts;
    static const QRegularExpression row(R"(^\s*(\d+): \d\d:\d\d:\d\d\s+(\d+) (audio|data|leadout))",
                                        QRegularExpression::MultilineOption);
    for (auto m = row.globalMatch(info); m.hasNext();)
        starts.append(m.next().captured(2).toInt());
    return starts;
}

QByteArray ripOfTrack(const QByteArray &pcm, bool last) {
    constexpr int Frame = 2352;
    constexpr int Gap = 150;
    QByteArray b = pcm;
    b.append(QByteArray((b.size() + Frame - 1) / Frame * Frame - b.size(), '\0'));
    if (!last)
        b.append(QByteArray(Gap * Frame, '\0'));
    return b;
}

QString pdfText(const QString &pdf, int page) {
    QStringList args{"-layout"};
    if (page > 0)
        args << "-f" << QString::number(page) << "-l" << QString::number(page);
    QStringList lines;
    for (const QString &line : QString::fromUtf8(run("pdftotext", args << pdf << "-")).split(u'\n'))
        if (!line.simplified().isEmpty())
            lines.append(line.simplified());
    return lines.join(u'\n');
}

QString pdfInfo(const QString &pdf, const QString &field) {
    const QRegularExpression line("^" + field + ":\\s*(.*)$", QRegularExpression::MultilineOption);
    return line.match(QString::fromUtf8(run("pdfinfo", {pdf}))).captured(1).trimmed();
}

double pdfWordLeft(const QString &pdf, const QString &word, int page) {
    const QString html =
        QString::fromUtf8(run("pdftotext", {"-bbox", "-f", QString::number(page), "-l",
                                            QString::number(page), pdf, "-"}));
    const QRegularExpression at(QStringLiteral("<word xMin=\"([0-9.]+)\"[^>]*>%1</word>")
                                    .arg(QRegularExpression::escape(word)));
    const QRegularExpressionMatch found = at.match(html);
    return found.hasMatch() ? found.captured(1).toDouble() : -1;
}

} // namespace ReadBack
