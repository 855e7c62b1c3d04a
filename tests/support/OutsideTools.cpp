#include "OutsideTools.h"
#include "EncodedReadBack.h"
#include "ReadBack.h"

#include <QtCore>

#include <cmath>
#include <limits>

namespace {
QString ffprobe(const QString &path, const QStringList &show) {
    return QString::fromUtf8(
               ReadBack::run("ffprobe", QStringList{"-v", "error"} + show +
                                            QStringList{"-of", "default=nw=1:nk=1", path}))
        .trimmed();
}
} // namespace

namespace OutsideTools {

bool soxMake(const QString &path, const QStringList &format, const QStringList &effects) {
    int code = 0;
    ReadBack::run("sox", QStringList{"-n", "-D"} + format + QStringList{path} + effects, &code);
    return code == 0;
}

double soxStat(const QString &path, const QString &name) {
    QProcess process;
    process.start("sox", {path, "-n", "stats"});
    process.waitForFinished(-1);
    const QString text = QString::fromUtf8(process.readAllStandardError());
    const QRegularExpression line(
        QStringLiteral("^%1\\s+(\\S+)").arg(QRegularExpression::escape(name)),
        QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = line.match(text);
    bool ok = false;
    const double value = match.hasMatch() ? match.captured(1).toDouble(&ok) : 0;
    return ok ? value : std::numeric_limits<double>::quiet_NaN();
}

QString soxi(const QString &path, char letter) {
    return QString::fromUtf8(
               ReadBack::run("soxi", {QString("-") + QChar::fromLatin1(letter), path}))
        .trimmed();
}

QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString ffprobeStream(const QString &path, const QString &entry) {
    return ffprobe(path, {"-select_streams", "a:0", "-show_entries", "stream=" + entry});
}

} // namespace OutsideTools

namespace EncodedReadBack {

QByteArray decodedCd(const QString &path) {
    return ReadBack::run("ffmpeg", {"-v", "error", "-i", path, "-f", "s16le", "-acodec",
                                    "pcm_s16le", "-ar", "44100", "-ac", "2", "-"});
}

QString ffprobeFormat(const QString &path, const QString &entry) {
    return ffprobe(path, {"-show_entries", "format=" + entry});
}

QList<int> mp3FrameKbps(const QString &path) {
    const QByteArray sizes =
        ReadBack::run("ffprobe", {"-v", "error", "-select_streams", "a:0", "-show_entries",
                                  "packet=size", "-of", "csv=p=0", path});
    QList<int> kbps;
    // A layer III frame of 1,152 samples at 44,100 Hz holds 144 * rate / 44.1 bytes.
    // A packet with side data (the encoder's delay) ends its line with a comma and a blank line.
    for (const QByteArray &line : sizes.split('\n'))
        if (const QByteArray size = line.split(',').first().trimmed(); !size.isEmpty())
            kbps << int(std::lround(size.toInt() * 44.1 / 144.0));
    return kbps;
}

QString ogginfo(const QString &path) {
    return QString::fromUtf8(ReadBack::run("ogginfo", {path}));
}

double correlation(const QByteArray &reference, const QByteArray &decoded, int maxLag) {
    auto left = [](const QByteArray &pcm, qsizetype i) {
        return double(qFromLittleEndian<qint16>(pcm.constData() + 4 * i)) +
               qFromLittleEndian<qint16>(pcm.constData() + 4 * i + 2);
    };
    const qsizetype n = reference.size() / 4, m = decoded.size() / 4;
    double best = -1;
    for (int lag = 0; lag <= maxLag; ++lag) {
        double sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
        const qsizetype count = qMin(n, m - lag);
        // Every 16th sample: thousands of points, enough to tell a sound from another.
        constexpr qsizetype step = 16;
        for (qsizetype i = 0; i < count; i += step) {
            const double x = left(reference, i), y = left(decoded, i + lag);
            sx += x, sy += y, sxx += x * x, syy += y * y, sxy += x * y;
        }
        const double k = double((count + step - 1) / step);
        const double r = (sxy - sx * sy / k) / std::sqrt((sxx - sx * sx / k) * (syy - sy * sy / k));
        best = qMax(best, r);
    }
    return best;
}

} // namespace EncodedReadBack
