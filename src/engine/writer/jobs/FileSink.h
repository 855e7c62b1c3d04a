#pragma once

#include <QString>

// A file written by plain system calls, every byte checked: a full disk or a size limit is an
// error, never a short file reported as done. With `atomic`, the bytes go to a hidden file
// beside the target that takes its name only at commit(); discard() (or destruction without
// commit) removes it. Used on one thread at a time.
class FileSink {
public:
    FileSink() = default;
    ~FileSink();
    FileSink(const FileSink &) = delete;
    FileSink &operator=(const FileSink &) = delete;

    bool open(const QString &path, bool atomic);
    bool write(const char *data, qint64 size);
    bool commit();
    void discard();
    QString errorString() const { return m_error; }
    QString path() const { return m_target; }

private:
    bool fail(const QString &what);

    int m_fd = -1;
    QString m_target;
    QString m_written; // the file the bytes go to
    QString m_error;
};
