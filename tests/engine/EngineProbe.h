#pragma once

#include "engine/writer/CDWriterPro.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>

// Records every event of an engine in order, as a window would see them, and helps the engine
// tests reach outside tools.
class EngineProbe : public QObject {
    Q_OBJECT
public:
    explicit EngineProbe(CDWriterPro *engine);

    QStringList events;          // names in order, "TrackWriteStatus" once per event
    QStringList added;           // sItemDestPath of each ISOItemAdded
    QList<qint32> trackPercents; // rounded percentages of TrackWriteStatus
    QList<qint16> caching;
    qint32 writeError = 0, driveError = 0;
    QString errorInfo;
    qint32 fileError = -1;
    QString failedFile;
    bool cancelAtOnePercent = false;
    bool replaceAnswer = false;
    QStringList replaceAsked;

    // Waits (running the event loop) for one of the three ending events.
    bool waitForEnd(int timeoutMs = 60000);
    int count(const QString &event) const { return int(events.count(event)); }
    QString endingEvent() const;

    // Runs a program and gives its standard output; exit code in *status.
    static QByteArray run(const QString &program, const QStringList &args, int *status = nullptr);
    static QByteArray sha256(const QString &path);

private:
    CDWriterPro *m_engine;
};

// Fixtures the engine tests make for themselves.
namespace EngineFixtures {
void writeFile(const QString &path, const QByteArray &bytes);
// Bytes that differ from file to file and compress badly, so a mix-up shows.
QByteArray pseudoRandom(int size, int seed);

// Wave files built chunk by chunk, so that tests can lay them out right or wrong.
QByteArray le16(quint16 v);
QByteArray le32(quint32 v);
QByteArray chunk(const char *id, const QByteArray &body); // padded to an even length
QByteArray fmtChunk(quint16 tag, quint16 channels, quint32 rate, quint16 bits);
QByteArray riff(const QByteArray &chunks);
// Recognisable samples: frame i holds i and -i.
QByteArray rampPcm(int frames);
// A wave of CD audio (44.1 kHz, 16 bits, stereo) holding `pcm`.
QByteArray cdWave(const QByteArray &pcm);
} // namespace EngineFixtures
