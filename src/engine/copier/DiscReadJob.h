#pragma once

#include "CopierJob.h"

// A data disc read into a file: flag 0 an ISO of the last session's track, flag 1 the same
// sectors as a BIN with a cue sheet beside it that the image burner writes back (zeros after
// the sectors, so that libcdio's tools count them right). Nothing is left behind unless the
// whole file was read.
class DiscReadJob : public CopierJob {
public:
    DiscReadJob(CD2CD *owner, Recorder &recorder, const QString &path, qint32 flag);
    // The BIN's cue sheet beside it (same name, ".cue").
    static QString cuePathOf(const QString &binPath);

protected:
    JobOutcome run() override;

private:
    Recorder &m_recorder;
    QString m_path;
    qint32 m_flag;
};
