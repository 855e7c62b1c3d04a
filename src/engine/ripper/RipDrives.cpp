#include "RipDrives.h"

#include "engine/writer/recorders/image/ImageMedium.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cdio/mmc.h>
#include <cdio/mmc_ll_cmds.h>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {
constexpr qint32 DataBlockBytes = 2048;

// The Image Recorder's disc as its descriptor tells it; a plain ISO is a pressed data disc.
std::optional<ImageMedium> imageMedium(QString *dataPath) {
    const QString file = ImageRecorder().mediumFile();
    if (file.isEmpty())
        return std::nullopt;
    const QFileInfo info(file);
    if (info.suffix().compare(u"iso", Qt::CaseInsensitive) == 0) {
        *dataPath = file;
        return ImageMedium::pressed(info.size(), info.fileName());
    }
    QFile descriptor(file);
    if (!descriptor.open(QIODevice::ReadOnly))
        return std::nullopt;
    auto medium = ImageMedium::parse(descriptor.readAll());
    if (medium)
        *dataPath = info.dir().filePath(medium->dataFile);
    return medium;
}

CdioPtr openSource(const RipDrive &drive) {
    if (!drive.image())
        return CdioPtr(cdio_open(drive.device.toLocal8Bit().constData(), DRIVER_DEVICE));
    const QString cue = RipDrives::imageCueSheet();
    return cue.isEmpty() ? CdioPtr() : CdioPtr(cdio_open_cue(cue.toLocal8Bit().constData()));
}
} // namespace

QList<RipDrive> RipDrives::scan(QStringList *refused) {
    QList<RipDrive> drives;
    char **devices = cdio_get_devices(DRIVER_DEVICE);
    for (char **d = devices; d && *d; ++d) {
        const QString path = QString::fromLocal8Bit(*d);
        if (::access(*d, R_OK) != 0) {
            if (refused)
                refused->append(path + QStringLiteral(": ") +
                                QString::fromLocal8Bit(strerror(errno)));
            continue;
        }
        RipDrive drive;
        drive.device = path;
        drive.letter = QFileInfo(path).fileName();
        CdioPtr cdio(cdio_open(*d, DRIVER_DEVICE));
        cdio_hwinfo_t hw{};
        if (cdio && cdio_get_hwinfo(cdio.get(), &hw)) {
            drive.vendor = QString::fromLatin1(hw.psz_vendor).trimmed();
            drive.product = QString::fromLatin1(hw.psz_model).trimmed();
        }
        drives.append(drive);
    }
    cdio_free_device_list(devices);
    drives.append({QStringLiteral("IMG"), QStringLiteral("Tessaly"),
                   QStringLiteral("Image Recorder"), QString()});
    return drives;
}

QString RipDrives::imageCueSheet() {
    QString data;
    const auto medium = imageMedium(&data);
    if (!medium || !medium->isAudio())
        return {};
    const QFileInfo info(data);
    const QString cue = info.dir().filePath(info.completeBaseName() + QStringLiteral(".cue"));
    return QFileInfo::exists(cue) ? cue : QString();
}

bool RipDrives::discPresent(const RipDrive &drive) {
    if (drive.image())
        return !ImageRecorder().mediumFile().isEmpty();
    CdioPtr cdio(cdio_open(drive.device.toLocal8Bit().constData(), DRIVER_DEVICE));
    return cdio && cdio_get_discmode(cdio.get()) != CDIO_DISC_MODE_NO_INFO &&
           cdio_get_num_tracks(cdio.get()) != CDIO_INVALID_TRACK;
}

std::optional<RipToc> RipDrives::readToc(const RipDrive &drive) {
    RipToc toc;
    if (drive.image()) {
        QString data;
        const auto medium = imageMedium(&data);
        if (!medium || medium->sessions.isEmpty())
            return std::nullopt;
        if (!medium->isAudio()) {
            // Data sessions count in 2048-byte blocks, one frame each.
            for (const ImageMedium::Session &s : medium->sessions)
                toc.tracks.append({s.start, s.blocks, false, true});
            toc.totalFrames = toc.tracks.last().start + toc.tracks.last().length;
            return toc;
        }
    }
    CdioPtr cdio = openSource(drive);
    if (!cdio)
        return std::nullopt;
    const track_t first = cdio_get_first_track_num(cdio.get());
    const track_t count = cdio_get_num_tracks(cdio.get());
    if (first == CDIO_INVALID_TRACK || count == CDIO_INVALID_TRACK || count == 0)
        return std::nullopt;
    for (track_t t = first; t < first + count; ++t) {
        RipTrack track;
        track.start = cdio_get_track_lsn(cdio.get(), t);
        track.length = cdio_get_track_last_lsn(cdio.get(), t) - track.start + 1;
        track.audio = cdio_get_track_format(cdio.get(), t) == TRACK_FORMAT_AUDIO;
        track.copyPermitted = cdio_get_track_copy_permit(cdio.get(), t) == CDIO_TRACK_FLAG_TRUE;
        toc.tracks.append(track);
    }
    toc.totalFrames = cdio_get_disc_last_lsn(cdio.get());
    return toc;
}

std::unique_ptr<OpenedDisc> RipDrives::openAudio(const RipDrive &drive) {
    auto disc = std::make_unique<OpenedDisc>();
    disc->cdio = openSource(drive);
    if (!disc->cdio)
        return nullptr;
    char *message = nullptr;
    disc->cdda.reset(cdio_cddap_identify_cdio(disc->cdio.get(), CDDA_MESSAGE_FORGETIT, &message));
    free(message);
    if (!disc->cdda || cdio_cddap_open(disc->cdda.get()) != 0)
        return nullptr;
    // An image holds little-endian samples; paranoia would guess the order from the audio.
    if (drive.image())
        disc->cdda->bigendianp = 0;
    return disc;
}

qint16 RipDrives::maxReadSpeed(const RipDrive &drive) {
    if (drive.image())
        return 52;
    CdioPtr cdio(cdio_open(drive.device.toLocal8Bit().constData(), DRIVER_DEVICE));
    unsigned char page[64] = {};
    if (!cdio || mmc_mode_sense_10(cdio.get(), page, sizeof page, CDIO_MMC_CAPABILITIES_PAGE) != 0)
        return 0;
    // Mode parameter header (8 bytes), then the capabilities page: max read speed in kB/s.
    const int kbps = (page[8 + 8] << 8) | page[8 + 9];
    return qint16(kbps / 176);
}
