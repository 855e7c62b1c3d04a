#include "WMAEncoderX.h"

#include <QFile>
#include <QHash>

#include <mutex>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace {
constexpr qint32 Rates[WMAEncoderX::SampleRateCount] = {8000,  11025, 16000, 22050,
                                                        32000, 44100, 48000};

QString avText(int code) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof text);
    return QString::fromLocal8Bit(text);
}

// The encoder's refusals are answered in our own words; libav's console lines would only
// repeat them where nobody looks.
void quietLibav() {
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_level(AV_LOG_QUIET); });
}

struct CodecContextFree {
    void operator()(AVCodecContext *c) const { avcodec_free_context(&c); }
};
using CodecContext = std::unique_ptr<AVCodecContext, CodecContextFree>;

// A wmav2 encoder set up for these settings, opened; null when libavcodec refuses them.
CodecContext openedCodec(qint32 hz, qint32 kbps, bool stereo, bool globalHeader, int *error) {
    quietLibav();
    const AVCodec *codec = avcodec_find_encoder(AV_CODEC_ID_WMAV2);
    CodecContext cc(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!cc) {
        *error = AVERROR_ENCODER_NOT_FOUND;
        return nullptr;
    }
    cc->sample_fmt = codec->sample_fmts ? codec->sample_fmts[0] : AV_SAMPLE_FMT_FLTP;
    cc->sample_rate = hz;
    av_channel_layout_default(&cc->ch_layout, stereo ? 2 : 1);
    cc->bit_rate = qint64(kbps) * 1000;
    cc->time_base = AVRational{1, hz};
    if (globalHeader)
        cc->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    *error = avcodec_open2(cc.get(), codec, nullptr);
    return *error < 0 ? nullptr : std::move(cc);
}
} // namespace

struct WMAEncoderX::State {
    AVFormatContext *format = nullptr;
    AVStream *stream = nullptr;
    CodecContext codec;
    SwrContext *resampler = nullptr;
    AVAudioFifo *fifo = nullptr;
    AVFrame *frame = av_frame_alloc();
    AVPacket *packet = av_packet_alloc();
    qint64 pts = 0;
    bool made = false; // the file exists on disc
    QString path;
    ~State() {
        av_packet_free(&packet);
        av_frame_free(&frame);
        if (fifo)
            av_audio_fifo_free(fifo);
        swr_free(&resampler);
        codec.reset();
        if (format) {
            if (format->pb)
                avio_closep(&format->pb);
            avformat_free_context(format);
        }
    }
};

qint32 WMAEncoderX::sampleRateHz(qint32 index) {
    return index >= 0 && index < SampleRateCount ? Rates[index] : 0;
}

WMAEncoderX::WMAEncoderX() = default;

WMAEncoderX::~WMAEncoderX() {
    abort();
}

std::unique_ptr<AudioEncoder> WMAEncoderX::clone() const {
    auto copy = std::make_unique<WMAEncoderX>();
    copy->m_sampleRate = qint32(m_sampleRate);
    copy->m_bitrate = qint32(m_bitrate);
    copy->m_stereo = bool(m_stereo);
    copy->m_drm = bool(m_drm);
    return copy;
}

bool WMAEncoderX::SampleRateSupported(qint32 index, qint32 bitrate, bool stereo) {
    const qint32 hz = sampleRateHz(index);
    if (hz == 0 || bitrate <= 0 || bitrate > 100000)
        return false;
    static std::mutex mutex;
    static QHash<quint64, bool> known;
    const quint64 key = (quint64(quint32(bitrate)) << 8) | (quint64(index) << 1) | quint64(stereo);
    std::lock_guard lock(mutex);
    auto found = known.constFind(key);
    if (found != known.constEnd())
        return *found;
    int error = 0;
    const bool ok = bool(openedCodec(hz, bitrate, stereo, false, &error));
    known.insert(key, ok);
    return ok;
}

bool WMAEncoderX::StereoSupported(qint32 bitrate) {
    for (qint32 i = 0; i < SampleRateCount; ++i)
        if (SampleRateSupported(i, bitrate, true))
            return true;
    return false;
}

bool WMAEncoderX::MonoSupported(qint32 bitrate) {
    for (qint32 i = 0; i < SampleRateCount; ++i)
        if (SampleRateSupported(i, bitrate, false))
            return true;
    return false;
}

bool WMAEncoderX::fail(const QString &why) {
    m_error = why;
    abort();
    return false;
}

bool WMAEncoderX::open(const QString &path) {
    abort();
    m_error.clear();
    const qint32 hz = sampleRateHz(m_sampleRate);
    const bool stereo = m_stereo;
    const qint32 kbps = m_bitrate;
    const int channels = stereo ? 2 : 1;
    auto state = std::make_unique<State>();
    state->path = path;
    m_state = std::move(state);
    State &s = *m_state;
    const QByteArray name = QFile::encodeName(path);
    int error = avformat_alloc_output_context2(&s.format, nullptr, "asf", name.constData());
    if (error < 0 || !s.frame || !s.packet)
        return fail(QStringLiteral("The ASF writer could not be started: %1").arg(avText(error)));
    s.codec =
        hz ? openedCodec(hz, kbps, stereo, s.format->oformat->flags & AVFMT_GLOBALHEADER, &error)
           : nullptr;
    if (!s.codec)
        return fail(QStringLiteral("The Windows Media encoder refuses %1kb/s %2 at %3 Hz: %4")
                        .arg(kbps)
                        .arg(stereo ? QStringLiteral("stereo") : QStringLiteral("mono"))
                        .arg(hz)
                        .arg(hz ? avText(error) : QStringLiteral("no such sample rate")));
    s.stream = avformat_new_stream(s.format, nullptr);
    if (!s.stream || avcodec_parameters_from_context(s.stream->codecpar, s.codec.get()) < 0)
        return fail(QStringLiteral("The ASF writer could not be started."));
    s.stream->time_base = s.codec->time_base;
    error = avio_open(&s.format->pb, name.constData(), AVIO_FLAG_WRITE);
    if (error < 0)
        return fail(QStringLiteral("Cannot create %1: %2").arg(path, avText(error)));
    s.made = true;
    error = avformat_write_header(s.format, nullptr);
    if (error < 0)
        return fail(QStringLiteral("Cannot write %1: %2").arg(path, avText(error)));
    AVChannelLayout in = AV_CHANNEL_LAYOUT_STEREO;
    error = swr_alloc_set_opts2(&s.resampler, &s.codec->ch_layout, s.codec->sample_fmt, hz, &in,
                                AV_SAMPLE_FMT_S16, 44100, 0, nullptr);
    if (error >= 0)
        error = swr_init(s.resampler);
    s.fifo = av_audio_fifo_alloc(s.codec->sample_fmt, channels, qMax(1, s.codec->frame_size) * 4);
    if (error < 0 || !s.fifo)
        return fail(QStringLiteral("The resampler could not be started: %1").arg(avText(error)));
    return true;
}

bool WMAEncoderX::encodeFrames(bool flush) {
    State &s = *m_state;
    const int size = s.codec->frame_size > 0 ? s.codec->frame_size : 2048;
    auto drainPackets = [&]() {
        for (;;) {
            int got = avcodec_receive_packet(s.codec.get(), s.packet);
            if (got == AVERROR(EAGAIN) || got == AVERROR_EOF)
                return true;
            if (got < 0)
                return fail(
                    QStringLiteral("The Windows Media encoder failed: %1").arg(avText(got)));
            av_packet_rescale_ts(s.packet, s.codec->time_base, s.stream->time_base);
            s.packet->stream_index = s.stream->index;
            got = av_interleaved_write_frame(s.format, s.packet);
            if (got < 0)
                return fail(QStringLiteral("Cannot write %1: %2").arg(s.path, avText(got)));
        }
    };
    while (av_audio_fifo_size(s.fifo) >= size || (flush && av_audio_fifo_size(s.fifo) > 0)) {
        av_frame_unref(s.frame);
        s.frame->nb_samples = size;
        s.frame->format = s.codec->sample_fmt;
        s.frame->sample_rate = s.codec->sample_rate;
        av_channel_layout_copy(&s.frame->ch_layout, &s.codec->ch_layout);
        if (av_frame_get_buffer(s.frame, 0) < 0)
            return fail(QStringLiteral("Out of memory."));
        // The last frame is filled out with silence: the encoder takes whole frames only.
        av_samples_set_silence(s.frame->data, 0, size, s.codec->ch_layout.nb_channels,
                               s.codec->sample_fmt);
        av_audio_fifo_read(s.fifo, reinterpret_cast<void **>(s.frame->data), size);
        s.frame->pts = s.pts;
        s.pts += size;
        const int sent = avcodec_send_frame(s.codec.get(), s.frame);
        if (sent < 0)
            return fail(QStringLiteral("The Windows Media encoder failed: %1").arg(avText(sent)));
        if (!drainPackets())
            return false;
    }
    if (flush) {
        avcodec_send_frame(s.codec.get(), nullptr);
        return drainPackets();
    }
    return true;
}

bool WMAEncoderX::write(const char *pcm, qint64 bytes) {
    if (!m_state)
        return false;
    State &s = *m_state;
    const int frames = int(bytes / 4);
    const int room = swr_get_out_samples(s.resampler, frames);
    uint8_t **converted = nullptr;
    if (av_samples_alloc_array_and_samples(&converted, nullptr, s.codec->ch_layout.nb_channels,
                                           qMax(1, room), s.codec->sample_fmt, 0) < 0)
        return fail(QStringLiteral("Out of memory."));
    auto in = reinterpret_cast<const uint8_t *>(pcm);
    const int got = swr_convert(s.resampler, converted, room, frames ? &in : nullptr, frames);
    const bool stored =
        got >= 0 && av_audio_fifo_write(s.fifo, reinterpret_cast<void **>(converted), got) == got;
    av_freep(&converted[0]);
    av_freep(&converted);
    if (!stored)
        return fail(QStringLiteral("The resampler failed."));
    return encodeFrames(false);
}

bool WMAEncoderX::close() {
    if (!m_state)
        return false;
    // What the resampler still holds, then the encoder's last frames.
    if (!write(nullptr, 0) || !encodeFrames(true))
        return false;
    State &s = *m_state;
    const int error = av_write_trailer(s.format);
    if (error < 0)
        return fail(QStringLiteral("Cannot write %1: %2").arg(s.path, avText(error)));
    if (avio_closep(&s.format->pb) < 0)
        return fail(QStringLiteral("Cannot close %1").arg(s.path));
    m_state.reset();
    return true;
}

void WMAEncoderX::abort() {
    if (!m_state)
        return;
    const QString path = m_state->path;
    const bool made = m_state->made;
    m_state.reset();
    if (made)
        QFile::remove(path);
}
