#include "DiscReader.h"

#include "CopierJob.h"

#include "engine/ripper/CdioHandles.h"
#include "engine/writer/jobs/FileSink.h"
#include "engine/writer/recorders/image/ImageMedium.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <vector>

namespace {
constexpr qint32 Block = 2048;
constexpr qint32 Frame = 2352;
constexpr qint32 ChunkBlocks = 32;
constexpr qint32 Gap = 150; // the 2 seconds before every later track

JobOutcome unreadable(qint32 sector) {
    return JobOutcome::driveFailure(1011,
                                    QStringLiteral("Sector %1 could not be read after %2 tries.")
                                        .arg(sector)
                                        .arg(DiscReader::Tries),
                                    QStringLiteral("3/11/00 UNRECOVERED READ ERROR"));
}

JobOutcome sinkFailure(const FileSink &sink) {
    return JobOutcome::failed(
        2, QStringLiteral("Writing %1 failed: %2").arg(sink.path(), sink.errorString()));
}
} // namespace

JobOutcome DiscReader::readData(qint32 start, qint32 count, FileSink &sink) {
    std::vector<char> buffer(size_t(ChunkBlocks) * Block);
    for (qint32 done = 0; done < count;) {
        if (m_job.cancelRequested())
            return JobOutcome::cancelled();
        const qint32 n = std::min(ChunkBlocks, count - done);
        const qint32 lba = start + done;
        if (!m_recorder.readBlocks(lba, n, buffer.data())) {
            // Sector by sector, each tried again, to find the one that fails.
            for (qint32 i = 0; i < n; ++i) {
                bool read = false;
                for (int t = 0; t < Tries && !read; ++t)
                    read = m_recorder.readBlocks(lba + i, 1, buffer.data() + qint64(i) * Block);
                if (!read)
                    return unreadable(lba + i);
            }
        }
        if (!sink.write(buffer.data(), qint64(n) * Block))
            return sinkFailure(sink);
        done += n;
        m_job.setSectors(1, done, count);
        m_job.progress(done, count);
    }
    return JobOutcome::completed();
}

QString DiscReader::audioSource(bool *image, QString *why) const {
    *image = false;
    if (auto *img = dynamic_cast<ImageRecorder *>(&m_recorder)) {
        *image = true;
        const QString file = img->mediumFile();
        QFile f(file);
        const auto medium = f.size() < (1 << 20) && f.open(QIODevice::ReadOnly)
                                ? ImageMedium::parse(f.readAll())
                                : std::nullopt;
        if (!medium || !medium->isAudio()) {
            *why = QStringLiteral("The disc in %1 is no audio disc.").arg(m_recorder.product());
            return {};
        }
        const QFileInfo data(QFileInfo(file).dir().filePath(medium->dataFile));
        return data.dir().filePath(data.completeBaseName() + QStringLiteral(".cue"));
    }
    const QString address =
        m_recorder.letter() == u"FILE" ? QString() : QStringLiteral("/dev/") + m_recorder.letter();
    if (address.isEmpty())
        *why = QStringLiteral("A file drive holds no audio disc: libburn writes and reads only "
                              "data on it.");
    return address;
}

JobOutcome DiscReader::readAudio(FileSink &sink, QList<qint64> *tracks) {
    bool image = false;
    QString why;
    const QString source = audioSource(&image, &why);
    if (source.isEmpty())
        return JobOutcome::failed(4, why);
    const QByteArray name = QFile::encodeName(source);
    CdioPtr cdio(image ? cdio_open_cue(name.constData())
                       : cdio_open(name.constData(), DRIVER_DEVICE));
    if (!cdio)
        return JobOutcome::failed(
            4, QStringLiteral("The audio disc in %1 can't be opened.").arg(m_recorder.product()));
    const track_t first = cdio_get_first_track_num(cdio.get());
    const track_t count = cdio_get_num_tracks(cdio.get());
    if (first == CDIO_INVALID_TRACK || count == CDIO_INVALID_TRACK || count == 0)
        return JobOutcome::failed(4, QStringLiteral("The disc's table of contents can't be read."));
    // Each track up to the gap of the next; the last one to the lead-out.
    QList<QPair<lsn_t, lsn_t>> spans;
    qint64 total = 0;
    for (track_t t = first; t < first + count; ++t) {
        if (cdio_get_track_format(cdio.get(), t) != TRACK_FORMAT_AUDIO)
            return JobOutcome::failed(4,
                                      QStringLiteral("Track %1 holds data: only discs of one kind "
                                                     "can be copied.")
                                          .arg(t));
        const lsn_t begin = cdio_get_track_lsn(cdio.get(), t);
        lsn_t end = cdio_get_track_last_lsn(cdio.get(), t) + 1;
        if (t + 1 < first + count)
            end = std::max(begin + 1, cdio_get_track_lsn(cdio.get(), track_t(t + 1)) - Gap);
        spans.append({begin, end});
        total += end - begin;
    }
    char *message = nullptr;
    CddaPtr cdda(cdio_cddap_identify_cdio(cdio.get(), CDDA_MESSAGE_FORGETIT, &message));
    free(message);
    if (!cdda || cdio_cddap_open(cdda.get()) != 0)
        return JobOutcome::failed(4, QStringLiteral("The audio of the disc can't be read."));
    // An image holds little-endian samples; paranoia would guess the order from the audio.
    if (image)
        cdda->bigendianp = 0;
    ParanoiaPtr paranoia(cdio_paranoia_init(cdda.get()));
    if (!paranoia)
        return JobOutcome::failed(4, QStringLiteral("The audio of the disc can't be read."));
    paranoia_modeset(paranoia.get(), PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
    qint64 done = 0;
    for (int i = 0; i < spans.size(); ++i) {
        const auto [begin, end] = spans[i];
        paranoia_set_range(paranoia.get(), begin, end - 1);
        paranoia_seek(paranoia.get(), begin, SEEK_SET);
        for (lsn_t f = begin; f < end; ++f) {
            if (m_job.cancelRequested())
                return JobOutcome::cancelled();
            const int16_t *samples = paranoia_read_limited(paranoia.get(), nullptr, Tries);
            if (!samples)
                return unreadable(f);
            if (!sink.write(reinterpret_cast<const char *>(samples), Frame))
                return sinkFailure(sink);
            ++done;
            m_job.setSectors(i + 1, qint32(done), qint32(total));
            m_job.progress(done, total);
        }
        tracks->append(end - begin);
    }
    return JobOutcome::completed();
}
