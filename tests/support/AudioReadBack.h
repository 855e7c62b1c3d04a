#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Audio discs read back by tools nobody here wrote: cd-info for the table of contents and
// cd-paranoia for the samples, both on the BIN/CUE an ejected disc leaves.
namespace AudioReadBack {

// The start of every track and of the lead-out, in sectors, as cd-info lists them.
QList<int> trackStarts(const QString &cue);
// One track ripped by cd-paranoia into `folder`; "failed" when the rip did not work.
QByteArray ripTrack(const QString &cue, int track, const QString &folder);
// What a track of these samples reads back as: the samples, silence to the end of the last
// frame, and the two-second gap before the next track, which the table counts to this one.
QByteArray expectedRip(const QByteArray &pcm, bool last);

} // namespace AudioReadBack
