#include "EngineProbe.h"

#include <QDir>
#include <QFileInfo>

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QtEndian>

#include "base/Conversions.h"

EngineProbe::EngineProbe(CDWriterPro *engine)
    : m_engine(engine) {
    auto on = [this](const char *name) { events.append(QString::fromLatin1(name)); };
    connect(engine, &CDWriterPro::ISOItemAdded, this,
            [this](const QString &, const QString &dest, const QString &, const QString &, bool,
                   VbDate, qint64) { added.append(dest); });
    connect(engine, &CDWriterPro::PreparingToWrite, this, [=, this] { on("PreparingToWrite"); });
    connect(engine, &CDWriterPro::CachingStatus, this, [=, this](qint16 p) {
        on("CachingStatus");
        caching.append(p);
    });
    connect(engine, &CDWriterPro::ReadingTrackFile, this,
            [=, this](const QString &, qint32, qint32) { on("ReadingTrackFile"); });
    connect(engine, &CDWriterPro::ReadingTrackFileError, this,
            [=, this](qint32 error, const QString &file, qint32) {
                on("ReadingTrackFileError");
                fileError = error;
                failedFile = file;
            });
    connect(engine, &CDWriterPro::CreatingDirectories, this,
            [=, this] { on("CreatingDirectories"); });
    connect(engine, &CDWriterPro::TrackWriteStatus, this,
            [=, this](qint32, qint32 written, qint32 toWrite) {
                on("TrackWriteStatus");
                const qint32 percent = qint32(RoundHalfEven(double(written) / toWrite * 100.0));
                trackPercents.append(percent);
                if (cancelAtOnePercent && percent == 1)
                    m_engine->CancelWrite();
            });
    connect(engine, &CDWriterPro::ClosingTrack, this, [=, this](qint32) { on("ClosingTrack"); });
    connect(engine, &CDWriterPro::ClosingSession, this, [=, this] { on("ClosingSession"); });
    connect(engine, &CDWriterPro::ClosingDisc, this, [=, this] { on("ClosingDisc"); });
    connect(engine, &CDWriterPro::WriteComplete, this, [=, this] { on("WriteComplete"); });
    connect(engine, &CDWriterPro::EraseDiscStart, this, [=, this] { on("EraseDiscStart"); });
    connect(engine, &CDWriterPro::EraseDiscComplete, this, [=, this] { on("EraseDiscComplete"); });
    connect(engine, &CDWriterPro::WriteCancelled, this, [=, this] { on("WriteCancelled"); });
    connect(engine, &CDWriterPro::WriteError, this,
            [=, this](qint32 we, qint32 de, const QString &info, const QString &) {
                on("WriteError");
                writeError = we;
                driveError = de;
                errorInfo = info;
            });
    connect(engine, &CDWriterPro::ReplaceImportedISOFile, this,
            [this](const QString &dest, const QString &, const QString &, bool &replace) {
                replaceAsked.append(dest);
                replace = replaceAnswer;
            });
}

QString EngineProbe::endingEvent() const {
    for (const QString &e : events) {
        if (e == u"WriteComplete" || e == u"WriteCancelled" || e == u"WriteError")
            return e;
    }
    return QString();
}

bool EngineProbe::waitForEnd(int timeoutMs) {
    QDeadlineTimer deadline(timeoutMs);
    while (endingEvent().isEmpty() && !deadline.hasExpired())
        QTest::qWait(5);
    // Anything posted after the ending event would show up now.
    QTest::qWait(20);
    return !endingEvent().isEmpty();
}

QByteArray EngineProbe::run(const QString &program, const QStringList &args, int *status) {
    QProcess p;
    p.start(program, args);
    p.waitForFinished(120000);
    if (status)
        *status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    return p.readAllStandardOutput();
}

QByteArray EngineProbe::sha256(const QString &path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    QCryptographicHash h(QCryptographicHash::Sha256);
    h.addData(&f);
    return h.result().toHex();
}

namespace EngineFixtures {
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
    QByteArray b(2, '\0');
    qToLittleEndian(v, b.data());
    return b;
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
} // namespace EngineFixtures
