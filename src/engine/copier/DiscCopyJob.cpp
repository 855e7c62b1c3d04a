#include "DiscCopyJob.h"

#include "DiscReader.h"
#include "FileRegionTrack.h"

#include "engine/writer/jobs/FileSink.h"

#include <QFile>

DiscCopyJob::DiscCopyJob(CD2CD *owner, Setup setup)
    : CopierJob(owner)
    , m_setup(setup) {}

JobOutcome DiscCopyJob::run() {
    Recorder &source = *m_setup.source;
    const MediumState st = source.medium();
    if (!st.present())
        return JobOutcome::failed(4,
                                  QStringLiteral("There is no disc in %1.").arg(source.product()));
    const bool audio = st.lastSessionMode == 0;
    if (st.lastSessionStart < 0)
        return JobOutcome::failed(4,
                                  QStringLiteral("The disc in %1 is blank.").arg(source.product()));
    if (!audio && st.writtenSessions() > 1)
        return JobOutcome::failed(4, QStringLiteral("The disc in %1 holds several sessions: only "
                                                    "a disc of one session can be copied.")
                                         .arg(source.product()));
    const QString image = cacheFile(audio ? "copy-audio" : "copy-data");
    struct Remover {
        QString path;
        ~Remover() { QFile::remove(path); }
    } remover{image};
    FileSink sink;
    if (!sink.open(image, false))
        return JobOutcome::failed(
            2, QStringLiteral("The temporary image can't be made: %1").arg(sink.errorString()));
    // Reading takes half the bar, writing the other half.
    setShare(0, 50);
    DiscReader reader(*this, source);
    QList<qint64> lengths;
    JobOutcome read;
    if (audio) {
        read = reader.readAudio(sink, &lengths);
    } else {
        qint32 blocks = 0;
        for (const auto &[start, count] : st.sessionExtents)
            if (start == st.lastSessionStart)
                blocks = count;
        lengths.append(blocks);
        read = blocks > 0 ? reader.readData(st.lastSessionStart, blocks, sink)
                          : JobOutcome::failed(4, QStringLiteral("The size of the disc's data "
                                                                 "can't be learnt."));
    }
    if (read.kind != JobOutcome::Completed)
        return read;
    if (!sink.commit())
        return JobOutcome::failed(
            2,
            QStringLiteral("The temporary image can't be completed: %1").arg(sink.errorString()));
    if (m_setup.source == m_setup.destination) {
        if (JobOutcome waited = awaitBlankDisc(*m_setup.destination, m_setup.destinationAddress);
            waited.kind != JobOutcome::Completed)
            return waited;
    }
    std::vector<std::unique_ptr<FileRegionTrack>> owned;
    std::vector<TrackSource *> tracks;
    qint64 offset = 0;
    for (qint64 length : lengths) {
        owned.push_back(std::make_unique<FileRegionTrack>(image, offset, length, audio));
        if (!owned.back()->open())
            return JobOutcome::failed(2, QStringLiteral("The temporary image can't be read back."));
        tracks.push_back(owned.back().get());
        offset += length * (audio ? 2352 : 2048);
    }
    setShare(50, 100);
    return burn(*m_setup.destination, tracks, m_setup.test, m_setup.speedCode);
}
