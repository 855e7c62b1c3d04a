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
} // namespace EngineFixtures
