#include "modCDPlay.h"
#include "WaveChunks.h"
#include "WaveOutput.h"
#include "base/Conversions.h"
#include "diagnostics/ErrorTrap.h"
#include "widgets/MessageBoxService.h"

#include <QFile>
#include <QPointer>
#include <array>
#include <memory>
#include <vector>

namespace {

constexpr int NumBuffers = 2;
// A format whose tenth of a second would need more than this is not a sound anyone plays.
constexpr qint64 LargestBuffer = 16 * 1024 * 1024;

struct Header {
    char *lpData = nullptr;
    qint64 dwBufferLength = 0;
};

struct Player {
    bool isPlaying = false;
    bool IsFileOpen = false;
    QPointer<QObject> hwnd;
    std::unique_ptr<QFile> hmmioIn;
    WaveChunks wave;
    qint64 startPos = 0;
    std::array<std::vector<char>, NumBuffers> pmem;
    std::array<Header, NumBuffers> wavhdr;
    qint64 bufferSize = 0;
    std::unique_ptr<WaveOutput> hWaveOut;
    // Counts the devices opened: a message of a device already replaced is dropped.
    quint64 generation = 0;
};

Player &state() {
    static Player player;
    return player;
}

qint64 filePos() {
    return state().hmmioIn ? state().hmmioIn->pos() : 0;
}

void message(const QString &text) {
    MsgBox(text);
}

// The handler of a finished buffer of the device of one generation.
WaveOutput::Done doneHandler(quint64 generation) {
    return [generation](int buffer) {
        if (generation == state().generation)
            ErrorTrap::run("WindowProc", "modCDPlay", [buffer] { modCDPlay::WindowProc(buffer); });
    };
}

void postDone(int buffer) {
    Player &p = state();
    if (!p.hwnd)
        return;
    QMetaObject::invokeMethod(
        p.hwnd.data(), [buffer, done = doneHandler(p.generation)] { done(buffer); },
        Qt::QueuedConnection);
}

void closeDevice() {
    state().hWaveOut.reset();
}

} // namespace

namespace modCDPlay {

void Initialize(QObject *hwnd) {
    Player &p = state();
    p.hwnd = hwnd;
    p.isPlaying = false;
    p.IsFileOpen = false;
    p.startPos = 0;
}

void CloseFile() {
    Player &p = state();
    // The device reads from the file's buffers: it goes with the file.
    p.isPlaying = false;
    closeDevice();
    p.hmmioIn.reset();
    p.IsFileOpen = false;
}

void OpenFile(const QString &soundfile) {
    CloseFile();
    if (soundfile.isEmpty())
        return;
    Player &p = state();
    auto file = std::make_unique<QFile>(soundfile);
    if (!file->open(QIODevice::ReadOnly)) {
        message(QStringLiteral("Error opening input file, rc = ") +
                QString::number(int(file->error())));
        return;
    }
    const WaveChunks::Result walked = p.wave.walk(file.get());
    static const char *const texts[] = {nullptr, "This is not a wave file",
                                        "Couldn't get the format chunk",
                                        "Error reading the wave format", "Couldn't get data chunk"};
    qint64 size = 0;
    if (walked == WaveChunks::Result::Ok) {
        const WaveChunks::Format &f = p.wave.format;
        // The channels count twice, as they did in the player this one follows.
        const double tenth = double(f.nSamplesPerSec) * f.nBlockAlign * f.nChannels * 0.1;
        if (tenth <= double(LargestBuffer)) {
            size = CLng(tenth);
            size -= size % f.nBlockAlign;
        }
    }
    if (walked != WaveChunks::Result::Ok || size <= 0 || size > LargestBuffer) {
        const int at = walked == WaveChunks::Result::Ok ? 3 : int(walked);
        message(QLatin1String(texts[at]));
        return;
    }
    if (!file->seek(p.wave.dataOffset)) {
        message(QLatin1String(texts[3]));
        return;
    }
    p.hmmioIn = std::move(file);
    p.bufferSize = size;
    for (std::vector<char> &buffer : p.pmem)
        buffer.assign(size_t(size), 0);
    p.IsFileOpen = true;
}

bool Play() {
    Player &p = state();
    if (p.isPlaying)
        return true;
    if (!p.IsFileOpen)
        return false;
    QString error;
    ++p.generation;
    auto device = WaveOutput::make(p.hwnd, doneHandler(p.generation));
    if (!device->open(p.wave, &error)) {
        message(error);
        return false;
    }
    p.hWaveOut = std::move(device);
    for (int i = 0; i < NumBuffers; ++i)
        p.wavhdr[i] = {p.pmem[i].data(), p.bufferSize};
    p.isPlaying = true;
    p.startPos = filePos() - p.wave.dataOffset;
    // The first reads happen where all later ones do: in the handler of a finished buffer.
    for (int i = 0; i < NumBuffers; ++i)
        postDone(i);
    return true;
}

void WindowProc(int buffer) {
    Player &p = state();
    if (buffer < 0 || buffer >= NumBuffers)
        return;
    if (!p.isPlaying) {
        // A buffer still playing closes the device when it comes back.
        if (p.hWaveOut && !p.hWaveOut->busy())
            closeDevice();
        return;
    }
    if (!p.hWaveOut || !p.hmmioIn)
        return;
    Header &h = p.wavhdr[buffer];
    const qint64 dataRemaining = p.wave.dataOffset + p.wave.dataLength - filePos();
    qint64 wanted = p.bufferSize;
    if (p.bufferSize >= dataRemaining) {
        wanted = qMax<qint64>(0, dataRemaining);
        p.isPlaying = false;
    }
    qint64 rc = p.hmmioIn->read(h.lpData, wanted);
    if (rc < 0)
        rc = 0;
    // A file cut short while it plays ends the loop as its end does.
    if (rc < wanted)
        p.isPlaying = false;
    h.dwBufferLength = rc;
    p.hWaveOut->write(buffer, h.lpData, rc);
}

void PausePlay() {
    Player &p = state();
    p.isPlaying = false;
    FileSeek(Position());
    if (p.hWaveOut)
        p.hWaveOut->reset();
}

void StopPlay() {
    Player &p = state();
    p.isPlaying = false;
    FileSeek(0);
    if (p.hWaveOut)
        p.hWaveOut->reset();
}

qint32 Length() {
    const Player &p = state();
    if (p.wave.format.nBlockAlign == 0)
        return 0;
    return qint32(p.wave.dataLength / p.wave.format.nBlockAlign);
}

bool FileSeek(qint32 dwValue) {
    Player &p = state();
    const qint64 offset = qint64(dwValue) * p.wave.format.nBlockAlign;
    if (!p.IsFileOpen || offset < 0 || offset >= p.wave.dataLength)
        return false;
    const bool moved = p.hmmioIn->seek(offset + p.wave.dataOffset);
    p.startPos = offset;
    return moved;
}

qint32 Position() {
    const Player &p = state();
    if (p.wave.format.nBlockAlign == 0)
        return 0;
    qint64 played = 0;
    if (p.hWaveOut && p.hWaveOut->position(&played))
        return qint32((p.startPos + played) / p.wave.format.nBlockAlign);
    return qint32((filePos() - p.wave.dataOffset + 2 * p.bufferSize) / p.wave.format.nBlockAlign);
}

bool Playing() {
    qint64 played = 0;
    return state().hWaveOut && state().hWaveOut->position(&played);
}

bool isPlaying() {
    return state().isPlaying;
}

bool IsFileOpen() {
    return state().IsFileOpen;
}

qint32 bufferSize() {
    return qint32(state().bufferSize);
}

} // namespace modCDPlay
