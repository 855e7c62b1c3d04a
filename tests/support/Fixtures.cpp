#include "Fixtures.h"

#include <QtTest>

namespace Fixtures {
void writeFile(const QString &path, const QByteArray &bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    QCOMPARE(f.write(bytes), bytes.size());
}

QByteArray pseudoRandom(int size, int seed) {
    QByteArray b(size, Qt::Uninitialized);
    quint32 x = quint32(seed) * 2654435761u + 1;
    for (int i = 0; i < size; ++i) {
        x = x * 1103515245u + 12345u;
        b[i] = char(x >> 24);
    }
    return b;
}

QByteArray le16(quint16 v) {
    return le32(v).left(2);
}

QByteArray le32(quint32 v) {
    QByteArray b(4, '\0');
    qToLittleEndian(v, b.data());
    return b;
}

QByteArray chunk(const char *id, const QByteArray &body) {
    QByteArray c = QByteArray(id, 4) + le32(quint32(body.size())) + body;
    if (body.size() & 1)
        c.append('\0');
    return c;
}

QByteArray fmtChunk(quint16 tag, quint16 channels, quint32 rate, quint16 bits) {
    const quint16 align = quint16(channels * bits / 8);
    return chunk("fmt ", le16(tag) + le16(channels) + le32(rate) + le32(rate * align) +
                             le16(align) + le16(bits));
}

QByteArray riff(const QByteArray &chunks) {
    return "RIFF" + le32(quint32(chunks.size() + 4)) + "WAVE" + chunks;
}

QByteArray rampPcm(int frames) {
    QByteArray b;
    b.reserve(frames * 4);
    for (int i = 0; i < frames; ++i)
        b += le16(quint16(i)) + le16(quint16(-i));
    return b;
}

QByteArray cdWave(const QByteArray &pcm) {
    return riff(fmtChunk(1, 2, 44100, 16) + chunk("data", pcm));
}
} // namespace Fixtures
