#include "WaveEncoder.h"

#include <QFile>
#include <QtEndian>

#include <vector>

bool WaveEncoder::open(const QString &path) {
    abort();
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    m_file.reset(sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info));
    if (m_file)
        m_path = path;
    return bool(m_file);
}

bool WaveEncoder::write(const char *pcm, qint64 bytes) {
    if (!m_file)
        return false;
    // The samples arrive little-endian; libsndfile takes them in the machine's order.
    std::vector<short> samples(size_t(bytes / 2));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = qFromLittleEndian<qint16>(pcm + 2 * i);
    return sf_write_short(m_file.get(), samples.data(), sf_count_t(samples.size())) ==
           sf_count_t(samples.size());
}

bool WaveEncoder::close() {
    if (!m_file)
        return false;
    const bool ok = sf_close(m_file.release()) == 0;
    m_path.clear();
    return ok;
}

void WaveEncoder::abort() {
    if (!m_file)
        return;
    m_file.reset();
    QFile::remove(m_path);
    m_path.clear();
}
