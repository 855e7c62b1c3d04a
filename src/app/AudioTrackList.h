#pragma once

#include <QString>

// What the frame needs of the audio window, which lives in a library above the frame's: rows
// for the engine's tracks, the list rebuilt, the window enabled. The open audio window
// registers itself here while it exists. UI thread.
class AudioTrackList {
public:
    virtual ~AudioTrackList();

    // The open audio window, or null.
    static AudioTrackList *current();

    // One row: the label ("Track 01"), the wave's path, its type and its playing time.
    virtual void addTrackRow(const QString &label, const QString &fileName, const QString &type,
                             const QString &time) = 0;
    virtual void LoadTrackList() = 0;
    virtual void EnableForm(bool blnEnable) = 0;

protected:
    AudioTrackList();
};
