#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Sound files made and read back by sox, soxi and ffprobe (run through ReadBack::run).
namespace OutsideTools {

// A sound file made by sox from a synthesis, without dither, so that silence stays silent:
// `sox -n -D <format...> path <effects...>`.
bool soxMake(const QString &path, const QStringList &format, const QStringList &effects);
// One figure of `sox path -n stats` for the whole file ("Pk lev dB", "Flat factor"); NaN when
// absent.
double soxStat(const QString &path, const QString &name);
// `soxi -<letter> path`, trimmed ("16" for -b, "Signed Integer PCM" for -e).
QString soxi(const QString &path, char letter);
// The bytes of a file, empty when it can't be read.
QByteArray fileBytes(const QString &path);
// One entry of the first audio stream as ffprobe shows it ("bit_rate", "channels").
QString ffprobeStream(const QString &path, const QString &entry);

} // namespace OutsideTools
