#include "SndFileHandle.h"

SndFileHandle::~SndFileHandle() {
    close();
}

bool SndFileHandle::openRead(const QString &path, SF_INFO &info) {
    close();
    info = SF_INFO{};
    m_file = sf_open(path.toLocal8Bit().constData(), SFM_READ, &info);
    return m_file != nullptr;
}

bool SndFileHandle::openWrite(int fd, SF_INFO &info) {
    close();
    m_file = sf_open_fd(fd, SFM_WRITE, &info, SF_FALSE);
    return m_file != nullptr;
}

bool SndFileHandle::close() {
    if (!m_file)
        return true;
    SNDFILE *file = m_file;
    m_file = nullptr;
    return sf_close(file) == 0;
}

QString SndFileHandle::errorText() const {
    return QString::fromLocal8Bit(sf_strerror(m_file));
}
