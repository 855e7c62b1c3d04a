#include "FileRegionTrack.h"

FileRegionTrack::FileRegionTrack(const QString &path, qint64 offset, qint64 sectors, bool audio)
    : m_file(path)
    , m_offset(offset)
    , m_sectors(sectors)
    , m_audio(audio) {}

bool FileRegionTrack::open() {
    return m_file.open(QIODevice::ReadOnly) && m_file.seek(m_offset);
}

bool FileRegionTrack::read(char *buffer, qint64 bytes) {
    if (m_broken || !m_file.isOpen())
        return false;
    const qint64 size = m_sectors * (m_audio ? 2352 : 2048);
    const qint64 want = std::min(bytes, std::max<qint64>(0, size - m_done));
    const qint64 inFile = std::min(want, std::max<qint64>(0, m_file.size() - m_offset - m_done));
    if (inFile > 0 && m_file.read(buffer, inFile) != inFile)
        return false;
    std::fill(buffer + inFile, buffer + bytes, 0);
    m_done += want;
    return true;
}
