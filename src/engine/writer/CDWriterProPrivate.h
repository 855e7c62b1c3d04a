#pragma once

#include "CDWriterPro.h"
#include "audio/AudioTrackList.h"
#include "iso/IsoImageTree.h"
#include "iso/PendingItems.h"
#include "jobs/EngineJob.h"
#include "recorders/Recorder.h"

#include <memory>
#include <vector>

// The engine's state behind CDWriterPro. Lives on the UI thread with its owner.
class CDWriterProPrivate {
public:
    explicit CDWriterProPrivate(CDWriterPro *owner);
    ~CDWriterProPrivate();

    Recorder *drive(qint32 index) const;
    Recorder *currentDrive() const { return drive(current); }
    MediumState medium() const;
    bool jobRunning() const;
    IsoImageTree::StreamOptions streamOptions() const;
    IsoImageTree::ReplaceQuestion replaceQuestion();
    // Emits ISOItemAdded (or EnumISOItems) for each collected item still in the image. False
    // when a handler destroyed the engine: the caller then returns at once.
    bool announce(const PendingItems &items, bool enumerate);
    // Why a data write can't go onto the current medium, found before anything is laid out;
    // Completed when it can.
    JobOutcome refusal(const Recorder &r, const MediumState &st) const;
    // Fires PreparingToWrite and starts the job with the write settings; its end fires the
    // one ending event.
    // Looks at every source file of the image before anything is laid out; false when one
    // fails the write (the job then ends with that failure before its first block).
    bool checkSources(EngineJob::Setup &setup);
    using ImageMaker = std::function<IsoLibrary::BurnSourcePtr()>;
    bool startJob(EngineJob::Setup setup, const ImageMaker &makeImage);

    CDWriterPro *q;
    std::vector<std::unique_ptr<Recorder>> drives;
    qint32 current = -1;

    bool testWrite = false;
    bool cacheImage = false;
    bool finalizeDisc = false;
    bool closeSession = true;
    bool burnProof = false;
    qint32 trackMode = 1;
    qint32 writeSpeed = 0;
    bool logging = false;
    QString logPath;
    bool useModifiedDate = true;
    qint32 fileSystem = 1; // Joliet by default: long mixed-case names for other systems

    std::unique_ptr<IsoImageTree> tree;
    // The drive and medium the image's imported session came from: its files lie there.
    const Recorder *importRecorder = nullptr;
    QString importMedium;
    AudioTrackList audio;
    std::unique_ptr<EngineJob> job;
};
