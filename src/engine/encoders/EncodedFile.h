#pragma once

#include <QString>

#include <cstdio>
#include <memory>

// The file an encoder writes: made on open, closed once, removed again when the file is dropped
// or could not be finished, so a failed encode never leaves a file behind. One thread at a time.
class EncodedFile {
public:
    ~EncodedFile() { remove(); }
    bool open(const QString &path);
    bool write(const void *data, size_t bytes);
    // Writes at the start of the file (a tag known only at the end), then returns to the end.
    bool writeAt(long offset, const void *data, size_t bytes);
    bool close();
    void remove();
    bool isOpen() const { return bool(m_file); }
    const QString &path() const { return m_path; }
    // The system's reason for the last failure.
    const QString &errorText() const { return m_error; }

private:
    bool fail(const char *what);
    struct Closer {
        void operator()(std::FILE *f) const { std::fclose(f); }
    };
    std::unique_ptr<std::FILE, Closer> m_file;
    QString m_path;
    QString m_error;
};
