#include "FileSink.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

FileSink::~FileSink() {
    discard();
}

bool FileSink::fail(const QString &what) {
    m_error = what + QStringLiteral(": ") + QString::fromLocal8Bit(strerror(errno));
    return false;
}

bool FileSink::open(const QString &path, bool atomic) {
    discard();
    m_target = path;
    if (atomic) {
        const QFileInfo info(path);
        QByteArray pattern = QFile::encodeName(info.absolutePath() + QStringLiteral("/.") +
                                               info.fileName() + QStringLiteral(".XXXXXX"));
        m_fd = mkostemp(pattern.data(), O_CLOEXEC);
        if (m_fd < 0)
            return fail(path);
        m_written = QFile::decodeName(pattern);
        fchmod(m_fd, 0644);
    } else {
        m_written = path;
        m_fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                      0600);
        if (m_fd < 0)
            return fail(path);
    }
    return true;
}

bool FileSink::write(const char *data, qint64 size) {
    while (size > 0) {
        const ssize_t n = ::write(m_fd, data, size_t(size));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = ENOSPC;
            return fail(m_target);
        }
        data += n;
        size -= n;
    }
    return true;
}

bool FileSink::commit() {
    if (m_fd < 0)
        return false;
    const int fd = m_fd;
    m_fd = -1;
    if (fsync(fd) != 0 && errno != EINVAL) {
        fail(m_target);
        ::close(fd);
        return false;
    }
    if (::close(fd) != 0)
        return fail(m_target);
    if (m_written != m_target && ::rename(QFile::encodeName(m_written).constData(),
                                          QFile::encodeName(m_target).constData()) != 0)
        return fail(m_target);
    m_written.clear();
    return true;
}

void FileSink::discard() {
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    if (!m_written.isEmpty()) {
        ::unlink(QFile::encodeName(m_written).constData());
        m_written.clear();
    }
}
