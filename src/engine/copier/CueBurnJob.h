#pragma once

#include "CopierJob.h"
#include "CueSheet.h"

// A cue sheet's tracks written to a blank disc.
class CueBurnJob : public CopierJob {
public:
    CueBurnJob(CD2CD *owner, Recorder &recorder, CueSheet sheet, bool test, qint32 speedCode);

protected:
    JobOutcome run() override;

private:
    Recorder &m_recorder;
    CueSheet m_sheet;
    bool m_test;
    qint32 m_speedCode;
};
