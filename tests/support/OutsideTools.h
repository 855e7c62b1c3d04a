#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The outside programs tests prove audio results with (sox, soxi, ffprobe), run to their end.
namespace OutsideTools {

// Runs a program and returns its standard output; `exitCode` gets -1 when it did not start.
QByteArray run(const QString &program, const QStringList &arguments, int *exitCode = nullptr);
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
