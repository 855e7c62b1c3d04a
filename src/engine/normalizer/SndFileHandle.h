#pragma once

#include <QString>

#include <sndfile.h>

// Owns one open libsndfile handle; closes it when it goes, on every path. Lives on the thread
// that opened it.
class SndFileHandle {
public:
    SndFileHandle() = default;
    ~SndFileHandle();
    SndFileHandle(const SndFileHandle &) = delete;
    SndFileHandle &operator=(const SndFileHandle &) = delete;

    // Opens a file by name for reading; `info` receives its format.
    bool openRead(const QString &path, SF_INFO &info);
    // Opens an already open descriptor for writing in the format of `info`; the descriptor
    // stays its owner's.
    bool openWrite(int fd, SF_INFO &info);
    // Closes now and tells whether everything written reached the file.
    bool close();

    SNDFILE *get() const { return m_file; }
    explicit operator bool() const { return m_file != nullptr; }
    // libsndfile's text of the last failure of this handle (or of the last open).
    QString errorText() const;

private:
    SNDFILE *m_file = nullptr;
};
