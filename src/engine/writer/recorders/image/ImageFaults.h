#pragma once

#include <QString>

// The failures the Image Recorder's settings ask for, read when an operation starts. Each one
// fires once: when it fires, its key is emptied in the settings, so the operation after it runs
// clean. Used on the engine's worker thread by one operation at a time.
class ImageFaults {
public:
    // Reads the [Image Recorder] keys of the settings file (see README.md beside this file).
    static ImageFaults fromSettings(const QString &settingsFile);

    // Blocks of a write after which the failure happens; -1 when none is asked for.
    qint64 writeErrorAt = -1;
    qint64 unreadableSourceAt = -1;
    qint64 mediumRemovedAt = -1;
    qint32 writeErrorCode = 1005; // a drive code 1000 to 1055
    QString writeErrorSense;
    qint32 eraseErrorCode = 0; // 0: the next erase works
    qint32 closeErrorCode = 0; // 0: the next close works

    // The first block at or after `sent` where a write fault waits; -1 when none.
    qint64 nextWriteFault(qint64 sent) const;
    // Empties the key of a fault that fired.
    void consume(const char *key) const;

    static constexpr const char *WriteErrorKey = "FailAtBlock";
    static constexpr const char *UnreadableKey = "UnreadableSourceAtBlock";
    static constexpr const char *RemovedKey = "RemoveMediumAtBlock";
    static constexpr const char *EraseKey = "FailErase";
    static constexpr const char *CloseKey = "FailClose";

private:
    QString m_file;
};
