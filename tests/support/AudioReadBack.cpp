#include "AudioReadBack.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>

namespace AudioReadBack {

namespace {
constexpr int Frame = 2352;
constexpr int Gap = 150;

QByteArray run(const QString &program, const QStringList &args, int *status) {
    QProcess p;
    p.start(program, args);
    const bool ran = p.waitForFinished(120000);
    *status = ran && p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    return p.readAllStandardOutput();
}
} // namespace

QList<int> trackStarts(const QString &cue) {
    int status = -1;
    const QString info = QString::fromUtf8(run(
        "cd-info", {"--no-header", "--no-device-info", "--no-cddb", "--cue-file", cue}, &status));
    QList<int> starts;
    static const QRegularExpression row(R"(^\s*(\d+): \d\d:\d\d:\d\d\s+(\d+) (audio|leadout))",
                                        QRegularExpression::MultilineOption);
    for (auto m = row.globalMatch(info); m.hasNext();)
        starts.append(m.next().captured(2).toInt());
    return starts;
}

QByteArray ripTrack(const QString &cue, int track, const QString &folder) {
    const QString out = QDir(folder).filePath(QStringLiteral("rip%1.raw").arg(track));
    int status = -1;
    run("cd-paranoia", {"-d", cue, "-c", "-r", QString::number(track), out}, &status);
    QFile f(out);
    return status == 0 && f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("failed");
}

QByteArray expectedRip(const QByteArray &pcm, bool last) {
    QByteArray b = pcm;
    const qsizetype frames = (b.size() + Frame - 1) / Frame;
    b.append(QByteArray(frames * Frame - b.size(), '\0'));
    if (!last)
        b.append(QByteArray(Gap * Frame, '\0'));
    return b;
}

} // namespace AudioReadBack
