#include "CueBurnJob.h"

#include "FileRegionTrack.h"

CueBurnJob::CueBurnJob(CD2CD *owner, Recorder &recorder, CueSheet sheet, bool test,
                       qint32 speedCode)
    : CopierJob(owner)
    , m_recorder(recorder)
    , m_sheet(std::move(sheet))
    , m_test(test)
    , m_speedCode(speedCode) {}

JobOutcome CueBurnJob::run() {
    std::vector<std::unique_ptr<FileRegionTrack>> owned;
    std::vector<TrackSource *> tracks;
    for (const CueSheet::Track &t : m_sheet.tracks()) {
        owned.push_back(std::make_unique<FileRegionTrack>(t.file, t.offset, t.sectors, t.audio));
        if (!owned.back()->open())
            return JobOutcome::failed(1, QStringLiteral("%1 can't be read.").arg(t.file));
        tracks.push_back(owned.back().get());
    }
    setShare(0, 100);
    return burn(m_recorder, tracks, m_test, m_speedCode);
}
