#pragma once

#include <QString>
#include <QtGlobal>

class QObject;

// The audio window's wave player: one open file, one open device, two buffers refilled each
// time the device posts that one has finished. Driven by posted messages on the UI thread; no
// worker. The sound device is made through WaveOutput's factory.
namespace modCDPlay {

// Remembers the window the device's messages go to.
void Initialize(QObject *hwnd);
// Closes the present file, then opens a wave file and prepares the buffers; a failure shows
// its message and leaves no file open.
void OpenFile(const QString &soundfile);
void CloseFile();
// Starts or goes on from the read position; false when the device refused.
bool Play();
void PausePlay();
void StopPlay();
// Sample frames of the open file.
qint32 Length();
bool FileSeek(qint32 dwValue);
// The sample frame being heard.
qint32 Position();
// Whether the device is still open.
bool Playing();
// What the window does with a finished buffer.
void WindowProc(int buffer);

// The state, for the window and for tests.
bool isPlaying();
bool IsFileOpen();
qint32 bufferSize();

} // namespace modCDPlay
