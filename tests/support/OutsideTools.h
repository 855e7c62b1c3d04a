#pragma once

#include <QtCore>

// Sound files made and read back by sox, soxi and ffprobe (run through ReadBack::run).
namespace OutsideTools {

// Without dither, so that silence stays silent: `sox -n -D <format...> path <effects...>`.
bool soxMake(const QString &path, const QStringList &format, const QStringList &effects);
// "Pk lev dB", "Flat factor" of `sox path -n stats`; NaN when absent.
double soxStat(const QString &path, const QString &name);
QString soxi(const QString &path, char letter);
// Empty when it can't be read.
QByteArray fileBytes(const QString &path);
// Of the first audio stream ("bit_rate", "channels").
QString ffprobeStream(const QString &path, const QString &entry);

} // namespace OutsideTools
