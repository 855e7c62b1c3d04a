#pragma once

#include <QStringList>

// Writes the waves as an audio disc, disc at once, onto a blank disc in the Image Recorder's tray
// (whatever lay there is ejected). `ms` gets the time from WriteDisc to WriteComplete. UI thread.
bool writeAudioDisc(const QStringList &waves, double *ms = nullptr);

// A wave of CD audio: a tone with noise, as music is neither silent nor periodic.
bool writeWave(const QString &path, qint64 samples, quint32 seed);

// An audio disc of `minutes` in `tracks` tracks of such waves in the Image Recorder's tray, at
// full speed; the waves are made in `folder` and removed again.
bool makeAudioDisc(const QString &folder, int minutes, int tracks);
