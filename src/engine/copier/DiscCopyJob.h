#pragma once

#include "CopierJob.h"

// A disc copied: the source read into a temporary image (data as 2048-byte sectors, audio
// through paranoia), then written to the destination's blank disc. With one drive for both,
// the source is ejected after reading and the job waits for a blank disc.
class DiscCopyJob : public CopierJob {
public:
    struct Setup {
        Recorder *source = nullptr;
        Recorder *destination = nullptr;
        qint32 destinationAddress = 0;
        bool test = true;
        qint32 speedCode = 255;
    };
    DiscCopyJob(CD2CD *owner, Setup setup);

protected:
    JobOutcome run() override;

private:
    Setup m_setup;
};
