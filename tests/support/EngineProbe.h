#pragma once

#include "engine/writer/CDWriterPro.h"

#include <QtTest>

// Records every event of an engine in order, as a window would see them.
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
    // For one of the three ending events.
    bool waitForEnd(int timeoutMs = 60000);
    bool waitFor(const QStringList &endings, int timeoutMs = 60000);
    int count(const QString &event) const { return int(events.count(event)); }
    QString endingEvent() const;

private:
    CDWriterPro *m_engine;
};

// The events with every run of one progress event ("...Status") shown once.
QStringList squeezed(const QStringList &events);
