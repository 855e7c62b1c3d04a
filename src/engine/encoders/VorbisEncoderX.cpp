#include "VorbisEncoderX.h"

#include <QtEndian>

#include <vorbis/vorbisenc.h>

#include <random>

namespace {
constexpr int Rate = 44100;
constexpr int Channels = 2;
// oggenc's own choice when no rate is given: quality 3.
constexpr float DefaultQuality = 0.3f;
} // namespace

// Everything libvorbis and libogg hold for one file, cleared in the reverse order of making.
struct VorbisEncoderX::State {
    vorbis_info info{};
    vorbis_comment comment{};
    vorbis_dsp_state dsp{};
    vorbis_block block{};
    ogg_stream_state stream{};
    bool hasDsp = false, hasBlock = false, hasStream = false;
    State() {
        vorbis_info_init(&info);
        vorbis_comment_init(&comment);
    }
    ~State() {
        if (hasStream)
            ogg_stream_clear(&stream);
        if (hasBlock)
            vorbis_block_clear(&block);
        if (hasDsp)
            vorbis_dsp_clear(&dsp);
        vorbis_comment_clear(&comment);
        vorbis_info_clear(&info);
    }
    // The rates in kbit/s, 0 for none; libvorbisenc's answer. A nominal rate alone is an
    // average the encoder aims at, as oggenc -b does; with a limit the bit rate management
    // engine holds every stretch of the file within it, which costs several times the time.
    int setup(qint32 nominal, qint32 min, qint32 max) {
        if (nominal == 0 && min == 0 && max == 0)
            return vorbis_encode_init_vbr(&info, Channels, Rate, DefaultQuality);
        auto bits = [](qint32 kbps) { return kbps > 0 ? long(kbps) * 1000 : -1L; };
        if (min == 0 && max == 0) {
            int result = vorbis_encode_setup_managed(&info, Channels, Rate, -1, bits(nominal), -1);
            if (result == 0)
                result = vorbis_encode_ctl(&info, OV_ECTL_RATEMANAGE2_SET, nullptr);
            return result == 0 ? vorbis_encode_setup_init(&info) : result;
        }
        return vorbis_encode_init(&info, Channels, Rate, bits(max), bits(nominal), bits(min));
    }
};

VorbisEncoderX::VorbisEncoderX() = default;
VorbisEncoderX::~VorbisEncoderX() = default;

std::unique_ptr<AudioEncoder> VorbisEncoderX::clone() const {
    auto copy = std::make_unique<VorbisEncoderX>();
    copy->m_nominal = qint32(m_nominal);
    copy->m_min = qint32(m_min);
    copy->m_max = qint32(m_max);
    return copy;
}

bool VorbisEncoderX::settingsAccepted(QString *why) const {
    State probe;
    if (probe.setup(m_nominal, m_min, m_max) == 0)
        return true;
    if (why)
        *why = QStringLiteral("The Vorbis encoder refuses a nominal rate of %1kb/s with a "
                              "minimum of %2kb/s and a maximum of %3kb/s for 44,100 Hz stereo "
                              "(0 is the encoder's choice).")
                   .arg(qint32(m_nominal))
                   .arg(qint32(m_min))
                   .arg(qint32(m_max));
    return false;
}

bool VorbisEncoderX::fail(const QString &why) {
    m_error = why;
    m_state.reset();
    m_file.remove();
    return false;
}

bool VorbisEncoderX::open(const QString &path) {
    abort();
    m_error.clear();
    if (!settingsAccepted(&m_error))
        return false;
    auto state = std::make_unique<State>();
    state->setup(m_nominal, m_min, m_max);
    vorbis_comment_add_tag(&state->comment, "ENCODER", "Tessaly");
    state->hasDsp = vorbis_analysis_init(&state->dsp, &state->info) == 0;
    state->hasBlock = state->hasDsp && vorbis_block_init(&state->dsp, &state->block) == 0;
    static thread_local std::mt19937 serials{std::random_device{}()};
    state->hasStream = state->hasBlock && ogg_stream_init(&state->stream, int(serials())) == 0;
    if (!state->hasStream)
        return fail(QStringLiteral("The Vorbis encoder could not be started."));
    m_state = std::move(state);
    if (!m_file.open(path))
        return fail(m_file.errorText());
    ogg_packet header, comments, codebooks;
    vorbis_analysis_headerout(&m_state->dsp, &m_state->comment, &header, &comments, &codebooks);
    ogg_stream_packetin(&m_state->stream, &header);
    ogg_stream_packetin(&m_state->stream, &comments);
    ogg_stream_packetin(&m_state->stream, &codebooks);
    // The headers stand on pages of their own, before any audio.
    ogg_page page;
    while (ogg_stream_flush(&m_state->stream, &page) != 0) {
        if (!m_file.write(page.header, size_t(page.header_len)) ||
            !m_file.write(page.body, size_t(page.body_len)))
            return fail(m_file.errorText());
    }
    return true;
}

bool VorbisEncoderX::drain() {
    State &s = *m_state;
    ogg_packet packet;
    ogg_page page;
    while (vorbis_analysis_blockout(&s.dsp, &s.block) == 1) {
        vorbis_analysis(&s.block, nullptr);
        vorbis_bitrate_addblock(&s.block);
        while (vorbis_bitrate_flushpacket(&s.dsp, &packet) == 1) {
            ogg_stream_packetin(&s.stream, &packet);
            while (ogg_stream_pageout(&s.stream, &page) != 0) {
                if (!m_file.write(page.header, size_t(page.header_len)) ||
                    !m_file.write(page.body, size_t(page.body_len)))
                    return fail(m_file.errorText());
            }
        }
    }
    return true;
}

bool VorbisEncoderX::write(const char *pcm, qint64 bytes) {
    if (!m_state)
        return false;
    const int frames = int(bytes / 4);
    float **buffer = vorbis_analysis_buffer(&m_state->dsp, frames);
    for (int i = 0; i < frames; ++i) {
        buffer[0][i] = qFromLittleEndian<qint16>(pcm + 4 * i) / 32768.0f;
        buffer[1][i] = qFromLittleEndian<qint16>(pcm + 4 * i + 2) / 32768.0f;
    }
    vorbis_analysis_wrote(&m_state->dsp, frames);
    return drain();
}

bool VorbisEncoderX::close() {
    if (!m_state)
        return false;
    vorbis_analysis_wrote(&m_state->dsp, 0);
    if (!drain())
        return false;
    ogg_page page;
    while (ogg_stream_flush(&m_state->stream, &page) != 0) {
        if (!m_file.write(page.header, size_t(page.header_len)) ||
            !m_file.write(page.body, size_t(page.body_len)))
            return fail(m_file.errorText());
    }
    m_state.reset();
    if (!m_file.close())
        return fail(m_file.errorText());
    return true;
}

void VorbisEncoderX::abort() {
    m_state.reset();
    m_file.remove();
}
