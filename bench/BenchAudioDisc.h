#pragma once

#include <QStringList>

// Writes the waves as an audio disc, disc at once, onto a blank disc in the Image Recorder's tray
// (whatever lay there is ejected). `ms` gets the time from WriteDisc to WriteComplete. UI thread.
bool writeAudioDisc(const QStringList &waves, double *ms = nullptr);
