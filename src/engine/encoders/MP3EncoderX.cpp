#include "MP3EncoderX.h"

#include <QtEndian>

#include <lame/lame.h>

void MP3EncoderX::LameCloser::operator()(lame_global_struct *l) const {
    lame_close(l);
}

MP3EncoderX::MP3EncoderX() = default;
MP3EncoderX::~MP3EncoderX() = default;

std::unique_ptr<AudioEncoder> MP3EncoderX::clone() const {
    auto copy = std::make_unique<MP3EncoderX>();
    copy->m_qualityMode = qint32(m_qualityMode);
    copy->m_bitrate = qint32(m_bitrate);
    copy->m_vbrQuality = qint32(m_vbrQuality);
    copy->m_vbrMin = qint32(m_vbrMin);
    copy->m_vbrMax = qint32(m_vbrMax);
    copy->m_channelMode = qint32(m_channelMode);
    copy->m_vbrMode = qint32(m_vbrMode);
    return copy;
}

MP3EncoderX::Lame MP3EncoderX::configured(QString *why) const {
    Lame lame(lame_init());
    if (!lame) {
        if (why)
            *why = QStringLiteral("The MP3 encoder could not be started.");
        return nullptr;
    }
    lame_global_flags *l = lame.get();
    lame_set_num_channels(l, 2);
    lame_set_in_samplerate(l, 44100);
    lame_set_out_samplerate(l, 44100);
    lame_set_bWriteVbrTag(l, 1);
    static const MPEG_mode modes[] = {STEREO, JOINT_STEREO, MONO, DUAL_CHANNEL};
    const qint32 mode = m_channelMode;
    bool ok = mode >= 0 && mode <= 3;
    if (ok)
        lame_set_mode(l, modes[mode]);
    // Normal leaves lame's own default, as the lame program does; studio is its -h.
    if (m_qualityMode == 0)
        lame_set_quality(l, 2);
    if (m_vbrMode == 0) {
        lame_set_VBR(l, vbr_off);
        ok = ok && lame_set_brate(l, m_bitrate) == 0;
    } else {
        lame_set_VBR(l, vbr_default);
        ok = ok && m_vbrQuality >= 0 && m_vbrQuality <= 9 && m_vbrMin < m_vbrMax;
        lame_set_VBR_q(l, m_vbrQuality);
        lame_set_VBR_min_bitrate_kbps(l, m_vbrMin);
        lame_set_VBR_max_bitrate_kbps(l, m_vbrMax);
        // Without it lame lets silence fall below the minimum.
        lame_set_VBR_hard_min(l, 1);
    }
    if (!ok || lame_init_params(l) < 0) {
        if (why) {
            *why = m_vbrMode == 0
                       ? QStringLiteral("The MP3 encoder refuses a constant rate of %1kb/s "
                                        "in channel mode %2.")
                             .arg(qint32(m_bitrate))
                             .arg(mode)
                       : QStringLiteral("The MP3 encoder refuses a variable rate of quality %1 "
                                        "from %2kb/s to %3kb/s in channel mode %4.")
                             .arg(qint32(m_vbrQuality))
                             .arg(qint32(m_vbrMin))
                             .arg(qint32(m_vbrMax))
                             .arg(mode);
        }
        return nullptr;
    }
    return lame;
}

bool MP3EncoderX::settingsAccepted(QString *why) const {
    return bool(configured(why));
}

bool MP3EncoderX::fail(const QString &why) {
    m_error = why;
    m_lame.reset();
    m_file.remove();
    return false;
}

bool MP3EncoderX::open(const QString &path) {
    abort();
    m_error.clear();
    m_lame = configured(&m_error);
    if (!m_lame)
        return false;
    if (!m_file.open(path))
        return fail(m_file.errorText());
    return true;
}

bool MP3EncoderX::write(const char *pcm, qint64 bytes) {
    if (!m_lame)
        return false;
    const int frames = int(bytes / 4);
    m_samples.resize(size_t(frames) * 2);
    for (size_t i = 0; i < m_samples.size(); ++i)
        m_samples[i] = qFromLittleEndian<qint16>(pcm + 2 * i);
    // lame's own bound of what one call can give.
    m_out.resize(size_t(frames) * 5 / 4 + 7200);
    const int got = lame_encode_buffer_interleaved(m_lame.get(), m_samples.data(), frames,
                                                   m_out.data(), int(m_out.size()));
    if (got < 0)
        return fail(QStringLiteral("The MP3 encoder failed (%1).").arg(got));
    if (!m_file.write(m_out.data(), size_t(got)))
        return fail(m_file.errorText());
    return true;
}

bool MP3EncoderX::close() {
    if (!m_lame)
        return false;
    m_out.resize(7200);
    const int got = lame_encode_flush(m_lame.get(), m_out.data(), int(m_out.size()));
    if (got < 0 || !m_file.write(m_out.data(), size_t(got)))
        return fail(m_file.errorText());
    // The Xing/LAME frame at the head tells players the length, the delay and the padding.
    unsigned char tag[2880];
    const size_t tagBytes = lame_get_lametag_frame(m_lame.get(), tag, sizeof tag);
    if (tagBytes > 0 && tagBytes <= sizeof tag && !m_file.writeAt(0, tag, tagBytes))
        return fail(m_file.errorText());
    m_lame.reset();
    if (!m_file.close())
        return fail(m_file.errorText());
    return true;
}

void MP3EncoderX::abort() {
    m_lame.reset();
    m_file.remove();
}
