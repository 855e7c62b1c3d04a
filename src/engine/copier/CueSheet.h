#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// A cue sheet read into the tracks a recorder can write: each track's bytes as a stretch of one
// file. Only AUDIO (2352-byte frames) and MODE1/2048 (2048-byte blocks) tracks of BINARY files
// are taken, and all of one kind; anything else is refused with a sentence for the user. Plain
// data, any thread.
class CueSheet {
public:
    struct Track {
        qint32 number = 0;
        bool audio = true;
        QString file;       // absolute path of the data file
        qint64 offset = 0;  // bytes into the file where the track's sectors begin
        qint64 sectors = 0; // sectors of the track (its gap before the next track left out)
    };

    // Reads the sheet's text; file names are taken relative to `folder`. `fileSize` tells the
    // size of a named file, -1 when it does not exist (tests and fuzzing pass their own).
    using FileSize = qint64 (*)(const QString &path);
    static CueSheet parse(const QByteArray &text, const QString &folder, FileSize fileSize);
    // Reads the sheet at `path` and the files it names.
    static CueSheet load(const QString &path);

    bool ok() const { return m_error.isEmpty(); }
    QString error() const { return m_error; }
    const QList<Track> &tracks() const { return m_tracks; }
    bool audio() const { return !m_tracks.isEmpty() && m_tracks.first().audio; }
    qint64 totalSectors() const;
    // A cue sheet for one data track of `sectors` 2048-byte blocks in `binName`.
    static QByteArray dataSheet(const QString &binName);

private:
    QList<Track> m_tracks;
    QString m_error;
};
