#pragma once

#include <QtCore>

namespace Fixtures {
void writeFile(const QString &path, const QByteArray &bytes);
// Bytes that differ from file to file and compress badly, so a mix-up shows.
QByteArray pseudoRandom(int size, int seed);

// Wave files built chunk by chunk, so that tests can lay them out right or wrong.
QByteArray le16(quint16 v);
QByteArray le32(quint32 v);
QByteArray chunk(const char *id, const QByteArray &body); // padded to an even length
QByteArray fmtChunk(quint16 tag, quint16 channels, quint32 rate, quint16 bits);
QByteArray riff(const QByteArray &chunks);
// Frame i holds i and -i.
QByteArray rampPcm(int frames);
// 44.1 kHz, 16 bits, stereo.
QByteArray cdWave(const QByteArray &pcm);
} // namespace Fixtures
