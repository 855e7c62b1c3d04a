#pragma once

#include <QString>

#include <vector>

// One track of an audio disc: a wave file of CD audio as it was when it was added.
struct AudioTrack {
    QString fileName;
    qint64 pcmBytes = 0; // bytes of audio in its data chunk (4 per frame of two samples)
    qint32 blocks = 0;   // 2352-byte frames on the disc
};

// The ordered track list of an audio disc. Tracks are numbered from 1. Lives on the UI thread
// with the engine; a write job takes a copy.
class AudioTrackList {
public:
    static constexpr qint32 FrameBytes = 2352;
    // The silence before every track: 2 seconds, the first track's ahead of block 0.
    static constexpr qint32 GapBlocks = 150;
    // A track is at least 4 seconds long; a shorter wave is followed by silence up to that.
    static constexpr qint32 MinimumBlocks = 300;
    static constexpr int MaxTracks = 99;

    // Adds a wave file of CD audio before the track at `position` (from 1; any later position
    // appends). False, with the list unchanged, for anything that is not such a file.
    bool add(const QString &fileName, qint32 position);
    // Removes the track at `index` (from 1); false when there is none.
    bool remove(qint32 index);
    void clear() { m_tracks.clear(); }

    qint32 count() const { return qint32(m_tracks.size()); }
    const std::vector<AudioTrack> &tracks() const { return m_tracks; }
    // Blocks of the whole disc: every track with the gap before it.
    qint64 imageBlocks() const;
    // Whole frames for so many bytes of audio, the last completed with silence.
    static qint32 blocksFor(qint64 pcmBytes);

private:
    std::vector<AudioTrack> m_tracks;
};
