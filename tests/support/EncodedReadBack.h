#pragma once

#include <QtCore>

// Encoded sound files read back by ffmpeg, ffprobe and ogginfo (made in OutsideTools.cpp).
namespace EncodedReadBack {

// 44,100 Hz stereo 16-bit little-endian samples.
QByteArray decodedCd(const QString &path);
QString ffprobeFormat(const QString &path, const QString &entry);
// In kbit/s, from the sizes of ffprobe's packets.
QList<int> mp3FrameKbps(const QString &path);
QString ogginfo(const QString &path);
// The best Pearson correlation of the mids (left plus right, so that a mono encode compares
// too) within `maxLag` samples of delay of the decoded one.
double correlation(const QByteArray &reference, const QByteArray &decoded, int maxLag);

} // namespace EncodedReadBack
