#include "OutsideTools.h"
#include "ReadBack.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <limits>

namespace OutsideTools {

bool soxMake(const QString &path, const QStringList &format, const QStringList &effects) {
    int code = 0;
    ReadBack::run(QStringLiteral("sox"),
                  QStringList{QStringLiteral("-n"), QStringLiteral("-D")} + format +
                      QStringList{path} + effects,
                  &code);
    return code == 0;
}

double soxStat(const QString &path, const QString &name) {
    QProcess process;
    process.start(QStringLiteral("sox"), {path, QStringLiteral("-n"), QStringLiteral("stats")});
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
    return QString::fromUtf8(ReadBack::run(QStringLiteral("soxi"),
                                           {QStringLiteral("-") + QChar::fromLatin1(letter), path}))
        .trimmed();
}

QByteArray fileBytes(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString ffprobeStream(const QString &path, const QString &entry) {
    return QString::fromUtf8(
               ReadBack::run(QStringLiteral("ffprobe"),
                             {QStringLiteral("-v"), QStringLiteral("error"),
                              QStringLiteral("-select_streams"), QStringLiteral("a:0"),
                              QStringLiteral("-show_entries"), QStringLiteral("stream=") + entry,
                              QStringLiteral("-of"), QStringLiteral("default=nw=1:nk=1"), path}))
        .trimmed();
}

} // namespace OutsideTools
