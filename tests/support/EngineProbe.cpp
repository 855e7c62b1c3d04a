#include "EngineProbe.h"

#include "Waits.h"
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
    for (const QString &e : events)
        if (e == u"WriteComplete" || e == u"WriteCancelled" || e == u"WriteError")
            return e;
    return QString();
}

bool EngineProbe::waitForEnd(int timeoutMs) {
    return Waits::until([this] { return !endingEvent().isEmpty(); }, timeoutMs);
}

bool EngineProbe::waitFor(const QStringList &endings, int timeoutMs) {
    auto came = [&] {
        for (const QString &e : endings)
            if (events.contains(e))
                return true;
        return false;
    };
    return Waits::until(came, timeoutMs);
}

QStringList squeezed(const QStringList &events) {
    QStringList out;
    for (const QString &e : events)
        if (out.isEmpty() || out.last() != e || !e.endsWith(u"Status"))
            out.append(e);
    return out;
}
