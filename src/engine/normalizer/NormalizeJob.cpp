#include "NormalizeJob.h"
#include "SndFileHandle.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr sf_count_t BlockFrames = 32768;

// Bits of the integer formats that libsndfile hands over as 32-bit samples; 0 for the rest,
// which go through doubles.
int integerBits(int format) {
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
        return 8;
    case SF_FORMAT_PCM_16:
        return 16;
    case SF_FORMAT_PCM_24:
        return 24;
    case SF_FORMAT_PCM_32:
        return 32;
    default:
        return 0;
    }
}

// Reports whole steps only, so that a long file does not flood the window with events.
class Meter {
public:
    Meter(const NormalizeJob::Progress &progress, sf_count_t frames)
        : m_progress(progress)
        , m_frames(frames) {}
    void report(double from, double span, sf_count_t done) {
        if (m_frames <= 0 || !m_progress)
            return;
        const double value = from + span * double(done) / double(m_frames);
        if (std::floor(value) != m_last) {
            m_last = std::floor(value);
            m_progress(std::min(value, 99.0));
        }
    }

private:
    const NormalizeJob::Progress &m_progress;
    sf_count_t m_frames;
    double m_last = -1;
};

// Writes the destination through a temporary file in its folder; nothing is replaced until
// commit(), and the temporary file goes with the object otherwise.
class Target {
public:
    explicit Target(const QString &path)
        : m_file(path) {}
    QString open() {
        // A file the user made read-only stays as it is, even for an owner who could replace it.
        const QFileInfo existing(m_file.fileName());
        if (existing.exists() &&
            !(existing.permissions() &
              (QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther)))
            return QStringLiteral("The file %1 is read-only.").arg(m_file.fileName());
        if (!m_file.open(QIODevice::WriteOnly))
            return QStringLiteral("Could not write %1: %2")
                .arg(m_file.fileName(), m_file.errorString());
        return {};
    }
    QSaveFile &file() { return m_file; }
    QString commit() {
        if (m_file.commit())
            return {};
        return QStringLiteral("Could not write %1: %2")
            .arg(m_file.fileName(), m_file.errorString());
    }

private:
    QSaveFile m_file;
};

} // namespace

NormalizeJob::NormalizeJob(QString source, QString destination, qint32 percent)
    : m_source(std::move(source))
    , m_destination(std::move(destination))
    , m_percent(percent) {}

NormalizeJob::Result NormalizeJob::run(const Progress &progress, const std::atomic<bool> &cancel) {
    Result result;
    auto fail = [&result](const QString &text) {
        result.ok = false;
        result.error = text;
        return result;
    };
    const QString cancelled = QStringLiteral("Normalizing was cancelled.");

    SF_INFO info{};
    SndFileHandle source;
    if (!source.openRead(m_source, info))
        return fail(QStringLiteral("Could not read the wave file %1: %2")
                        .arg(m_source, source.errorText()));
    const int bits = integerBits(info.format);
    const sf_count_t channels = info.channels;
    Meter meter(progress, info.frames);

    // First pass: the peak, in the scale of the samples as read.
    std::vector<int> ints(bits ? size_t(BlockFrames * channels) : 0);
    std::vector<double> doubles(bits ? 0 : size_t(BlockFrames * channels));
    double peak = 0;
    sf_count_t done = 0;
    for (;;) {
        if (cancel.load())
            return fail(cancelled);
        sf_count_t got = 0;
        if (bits) {
            got = sf_readf_int(source.get(), ints.data(), BlockFrames);
            for (sf_count_t i = 0; i < got * channels; ++i)
                peak = std::max(peak, std::fabs(double(ints[size_t(i)])));
        } else {
            got = sf_readf_double(source.get(), doubles.data(), BlockFrames);
            for (sf_count_t i = 0; i < got * channels; ++i)
                peak = std::max(peak, std::fabs(doubles[size_t(i)]));
        }
        if (got <= 0)
            break;
        done += got;
        meter.report(0, 50, done);
    }
    if (sf_error(source.get()) != SF_ERR_NO_ERROR)
        return fail(QStringLiteral("Could not read the wave file %1: %2")
                        .arg(m_source, source.errorText()));

    Target target(m_destination);
    if (const QString error = target.open(); !error.isEmpty())
        return fail(error);

    if (peak == 0) {
        // Silence has no level to raise: the file is copied byte for byte.
        source.close();
        QFile in(m_source);
        if (!in.open(QIODevice::ReadOnly))
            return fail(QStringLiteral("Could not read the wave file %1: %2")
                            .arg(m_source, in.errorString()));
        while (!in.atEnd()) {
            if (cancel.load())
                return fail(cancelled);
            const QByteArray chunk = in.read(1 << 20);
            if (chunk.isEmpty() || target.file().write(chunk) != chunk.size())
                return fail(QStringLiteral("Could not write %1: %2")
                                .arg(m_destination, target.file().errorString()));
        }
        if (const QString error = target.commit(); !error.isEmpty())
            return fail(error);
        result.ok = true;
        result.silent = true;
        return result;
    }

    if (sf_seek(source.get(), 0, SEEK_SET) != 0)
        return fail(QStringLiteral("Could not read the wave file %1: %2")
                        .arg(m_source, source.errorText()));
    SF_INFO outInfo{};
    outInfo.samplerate = info.samplerate;
    outInfo.channels = info.channels;
    outInfo.format = info.format;
    SndFileHandle out;
    if (!out.openWrite(target.file().handle(), outInfo))
        return fail(QStringLiteral("Could not write %1 in the format of its source: %2")
                        .arg(m_destination, out.errorText()));
    for (int kind = SF_STR_FIRST; kind <= SF_STR_LAST; ++kind) {
        if (const char *text = sf_get_string(source.get(), kind))
            sf_set_string(out.get(), kind, text);
    }
    sf_command(out.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);

    const double wanted = double(m_percent) / 100.0;
    // Integer samples arrive scaled to 32 bits; rounding happens at the file's own depth so
    // that libsndfile's shift back down loses nothing, and the range ends clip, never wrap.
    const double step = bits ? std::ldexp(1.0, 32 - bits) : 1.0;
    const double gain = bits ? wanted * std::ldexp(1.0, 31) / peak / step : wanted / peak;
    const double top = bits ? std::ldexp(1.0, bits - 1) - 1 : 0;
    const double bottom = bits ? -std::ldexp(1.0, bits - 1) : 0;
    done = 0;
    for (;;) {
        if (cancel.load())
            return fail(cancelled);
        sf_count_t got = 0;
        sf_count_t written = 0;
        if (bits) {
            got = sf_readf_int(source.get(), ints.data(), BlockFrames);
            for (sf_count_t i = 0; i < got * channels; ++i) {
                const double scaled = std::nearbyint(double(ints[size_t(i)]) * gain);
                ints[size_t(i)] = int(std::clamp(scaled, bottom, top) * step);
            }
            if (got > 0)
                written = sf_writef_int(out.get(), ints.data(), got);
        } else {
            got = sf_readf_double(source.get(), doubles.data(), BlockFrames);
            for (sf_count_t i = 0; i < got * channels; ++i)
                doubles[size_t(i)] *= gain;
            if (got > 0)
                written = sf_writef_double(out.get(), doubles.data(), got);
        }
        if (got <= 0)
            break;
        if (written != got)
            return fail(
                QStringLiteral("Could not write %1: %2").arg(m_destination, out.errorText()));
        done += got;
        meter.report(50, 49, done);
    }
    if (sf_error(source.get()) != SF_ERR_NO_ERROR)
        return fail(QStringLiteral("Could not read the wave file %1: %2")
                        .arg(m_source, source.errorText()));
    if (!out.close())
        return fail(QStringLiteral("Could not finish %1.").arg(m_destination));
    if (const QString error = target.commit(); !error.isEmpty())
        return fail(error);
    result.ok = true;
    return result;
}
