#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Encoded sound files read back by ffmpeg, ffprobe and ogginfo (made in OutsideTools.cpp).
namespace EncodedReadBack {

// The file decoded by ffmpeg to 44,100 Hz stereo 16-bit little-endian samples.
QByteArray decodedCd(const QString &path);
// One entry of the container as ffprobe shows it ("format_name").
QString ffprobeFormat(const QString &path, const QString &entry);
// The bit rate of every MP3 frame, in kbit/s, from the sizes of ffprobe's packets.
QList<int> mp3FrameKbps(const QString &path);
// What `ogginfo` says of the file.
QString ogginfo(const QString &path);
// The best Pearson correlation of the two sounds' mid (left plus right), so that a mono encode
// compares as well, within `maxLag` samples of
// delay of the decoded one, over the reference's length.
double correlation(const QByteArray &reference, const QByteArray &decoded, int maxLag);

} // namespace EncodedReadBack
