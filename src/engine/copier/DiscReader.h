#pragma once

#include "engine/writer/recorders/Recorder.h"

#include <QList>
#include <QString>

class CopierJob;
class FileSink;

// Reads a disc into a file for a job of the copier: data as 2048-byte sectors through the
// drive object, audio through paranoia. Reports progress and obeys cancel through the job. Runs
// on the job's worker thread.
class DiscReader {
public:
    DiscReader(CopierJob &job, Recorder &recorder)
        : m_job(job)
        , m_recorder(recorder) {}

    // Tries a sector this many times before the job fails on it.
    static constexpr int Tries = 3;

    // Sectors [start, start + count) into `sink`. An unreadable sector is tried again, then
    // named in the failure.
    JobOutcome readData(qint32 start, qint32 count, FileSink &sink);

    // The audio disc into `sink` as 2352-byte frames; `tracks` receives each track's length in
    // frames (its gap before the next track left out, as the writer puts a silent one there).
    JobOutcome readAudio(FileSink &sink, QList<qint64> *tracks);

    // The cue sheet libcdio reads the Image Recorder's audio disc by, or the device to open;
    // empty with the reason in *why when the drive holds no audio it can read.
    QString audioSource(bool *image, QString *why) const;

private:
    CopierJob &m_job;
    Recorder &m_recorder;
};
