#include "ImageRecorder.h"

#include "ImageFaults.h"

#include "base/App.h"
#include "base/IniFile.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QThread>

#include <vector>

namespace {
const QString DescriptorSuffix = QStringLiteral(".tdisc");
constexpr qint64 Block = 2048;
constexpr qint64 ChunkBlocks = 32; // 64 KiB per write call

QString setting(const QString &file, const QString &key, const QString &defaultValue) {
    return IniFile::read(file, QStringLiteral("Image Recorder"), key, defaultValue);
}

// Moves a file into a folder, choosing a free name there.
JobOutcome noMedium() {
    return JobOutcome::driveFailure(1033, QStringLiteral("No medium in the Image Recorder"),
                                    QStringLiteral("2/3A/00 MEDIUM NOT PRESENT"));
}

QString cuePath(const QString &dataPath) {
    const QFileInfo info(dataPath);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral(".cue"));
}

QString moveInto(const QString &path, const QString &folder) {
    const QFileInfo info(path);
    QString target = folder + u'/' + info.fileName();
    for (int i = 2; QFileInfo::exists(target); ++i)
        target = folder + u'/' + info.completeBaseName() + QStringLiteral(" (%1).").arg(i) +
                 info.suffix();
    return QFile::rename(path, target) ? target : QString();
}
} // namespace

ImageRecorder::ImageRecorder(qint32 unit)
    : m_unit(unit)
    , m_folder(unit == 0 ? folder() : folder() + QStringLiteral(" %1").arg(unit + 1))
    , m_tray(m_folder + QStringLiteral("/Tray"))
    , m_ejected(m_folder + QStringLiteral("/Ejected"))
    , m_settings(m_folder + QStringLiteral("/Settings.ini")) {
    // On the very first start the recorder has no folder yet. A new user then finds a blank
    // disc waiting, as in a drive on the desk, rather than "insert a disc" at the first write.
    const bool firstStart = !QFileInfo::exists(m_folder);
    QDir().mkpath(m_tray);
    QDir().mkpath(m_ejected);
    if (!QFileInfo::exists(m_settings)) {
        // The settings explain themselves to whoever opens the file.
        QFile f(m_settings);
        if (f.open(QIODevice::WriteOnly | QIODevice::Text))
            f.write("; Settings of the Tessaly Image Recorder.\n"
                    "; BlankMedium: the disc loaded when the empty tray closes: CD-R 74, CD-R 80,\n"
                    ";   CD-RW 74, CD-RW 80, DVD-R, DVD+R, DVD-RW, DVD+RW or DVD-RAM.\n"
                    "; EmulateSpeed: 1 holds writing back to the chosen speed, 0 writes as fast\n"
                    ";   as the machine can.\n"
                    "; Failures on purpose, each for the next operation only (see the notes):\n"
                    ";   FailAtBlock, FailDriveCode, FailSense, UnreadableSourceAtBlock,\n"
                    ";   RemoveMediumAtBlock, FailErase, FailClose, UnreadableSector.\n"
                    "; WithholdCapability: capability codes (comma separated) the recorder\n"
                    ";   answers as missing.\n"
                    "; SecondDrive: 1 lists a second Image Recorder (first drive's settings).\n"
                    "[Image Recorder]\n"
                    "BlankMedium=CD-R 80\n"
                    "EmulateSpeed=0\n");
    }
    if (firstStart)
        moveTray(true);
}

QString ImageRecorder::folder() {
    return App::pathOf(QStringLiteral("/Image Recorder"));
}
QString ImageRecorder::trayFolder() {
    return folder() + QStringLiteral("/Tray");
}
QString ImageRecorder::ejectedFolder() {
    return folder() + QStringLiteral("/Ejected");
}
QString ImageRecorder::settingsFile() {
    return folder() + QStringLiteral("/Settings.ini");
}

QString ImageRecorder::lastEjected() {
    const QDir ejected(ejectedFolder());
    const QStringList discs =
        ejected.entryList({QStringLiteral("*") + DescriptorSuffix}, QDir::Files, QDir::Time);
    return discs.isEmpty() ? QString() : ejected.filePath(discs.first());
}

bool ImageRecorder::putBack(const QString &descriptor) {
    const QDir tray(trayFolder());
    if (!tray.isEmpty(QDir::Files) || !QFileInfo::exists(descriptor))
        return false;
    QFile f(descriptor);
    if (f.size() > 1 << 20 || !f.open(QIODevice::ReadOnly))
        return false;
    const auto medium = ImageMedium::parse(f.readAll());
    f.close();
    if (!medium)
        return false;
    const QDir from = QFileInfo(descriptor).dir();
    const QString data = from.filePath(medium->dataFile);
    // The data first and the descriptor last: the descriptor is what makes a disc in the tray.
    if (!QFile::rename(data, tray.filePath(medium->dataFile)))
        return false;
    const QString cue = cuePath(data);
    if (QFileInfo::exists(cue))
        QFile::rename(cue, tray.filePath(QFileInfo(cue).fileName()));
    return QFile::rename(descriptor, tray.filePath(QFileInfo(descriptor).fileName()));
}

bool ImageRecorder::secondDriveEnabled() {
    return setting(settingsFile(), QStringLiteral("SecondDrive"), QStringLiteral("0")) == u"1";
}

QString ImageRecorder::letter() const {
    return m_unit == 0 ? QStringLiteral("IMG") : QStringLiteral("IMG%1").arg(m_unit + 1);
}

QString ImageRecorder::product() const {
    return m_unit == 0 ? QStringLiteral("Image Recorder")
                       : QStringLiteral("Image Recorder %1").arg(m_unit + 1);
}

bool ImageRecorder::lockTray(bool lock) {
    m_locked.store(lock);
    return true;
}

bool ImageRecorder::capability(qint32 code) const {
    // A recorder of lesser make, on purpose: the codes listed are answered as missing.
    const QString withheld = IniFile::read(m_settings, QStringLiteral("Image Recorder"),
                                           QStringLiteral("WithholdCapability"), QString());
    for (const QString &item : withheld.split(u',', Qt::SkipEmptyParts)) {
        if (item.trimmed() == QString::number(code))
            return false;
    }
    switch (code) {
    case 0:
    case 1:
    case 3:
    case 4:
    case 5: // reads CD-R, CD-RW, DVD-ROM, DVD-R, DVD-RAM
    case 6:
    case 7:
    case 9:
    case 10: // writes CD-R, CD-RW, DVD-R, DVD-RAM
    case 36: // buffer underrun protection
    case 37:
    case 38:
    case 39: // writes DVD-RW, DVD+R, DVD+RW
    case 41:
    case 42: // disc at once, track at once
        return true;
    default: // 40 raw writing and unknown codes
        return false;
    }
}

QList<qint32> ImageRecorder::writeSpeeds() const {
    const auto loaded = load();
    QList<qint32> speeds;
    if (!loaded)
        return speeds;
    const MediumKind *kind = ImageMedium::kindByName(loaded->medium.kindName);
    if (!kind || kind->maxSpeed <= 0)
        return speeds;
    for (qint32 s = kind->maxSpeed; s >= kind->speedStep; s -= kind->speedStep)
        speeds.append(s);
    return speeds;
}

QString ImageRecorder::mediumFile() const {
    const QDir tray(m_tray);
    const QStringList descriptors =
        tray.entryList({QStringLiteral("*") + DescriptorSuffix}, QDir::Files, QDir::Name);
    if (!descriptors.isEmpty())
        return tray.filePath(descriptors.first());
    const QStringList images = tray.entryList({QStringLiteral("*.iso")}, QDir::Files, QDir::Name);
    return images.isEmpty() ? QString() : tray.filePath(images.first());
}

std::optional<ImageRecorder::Loaded> ImageRecorder::load() const {
    const QString file = mediumFile();
    if (file.isEmpty())
        return std::nullopt;
    Loaded loaded;
    if (file.endsWith(DescriptorSuffix)) {
        QFile f(file);
        if (f.size() > 1 << 20 || !f.open(QIODevice::ReadOnly))
            return std::nullopt;
        auto medium = ImageMedium::parse(f.readAll());
        if (!medium)
            return std::nullopt;
        loaded.medium = *medium;
        loaded.descriptorPath = file;
        loaded.dataPath = QFileInfo(file).dir().filePath(medium->dataFile);
    } else {
        loaded.medium = ImageMedium::pressed(QFileInfo(file).size(), QFileInfo(file).fileName());
        loaded.dataPath = file;
    }
    return loaded;
}

bool ImageRecorder::save(const Loaded &loaded) const {
    QSaveFile f(loaded.descriptorPath);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(loaded.medium.serialize());
    if (!f.commit())
        return false;
    if (!loaded.medium.isAudio())
        return true;
    // libcdio opens the data named after the cue sheet, whatever its FILE line says.
    QSaveFile cue(cuePath(loaded.dataPath));
    if (!cue.open(QIODevice::WriteOnly))
        return false;
    cue.write(loaded.medium.cueSheet(QFileInfo(loaded.dataPath).fileName()));
    return cue.commit();
}

void ImageRecorder::ejectLoaded(const Loaded &loaded) const {
    if (loaded.descriptorPath.isEmpty()) {
        moveInto(loaded.dataPath, m_ejected);
        return;
    }
    QFile::remove(cuePath(loaded.dataPath));
    // The data file first: the descriptor is what makes a disc, so it goes last.
    const QString data = moveInto(loaded.dataPath, m_ejected);
    Loaded moved = loaded;
    if (!data.isEmpty()) {
        moved.medium.dataFile = QFileInfo(data).fileName();
        moved.dataPath = data;
    }
    save(moved);
    moveInto(loaded.descriptorPath, m_ejected);
}

std::optional<ImageRecorder::Loaded> ImageRecorder::lockedLoad() const {
    QMutexLocker lock(&m_mutex);
    return load();
}

void ImageRecorder::takeTime(const MediumKind &kind, qint64 blocks, JobMonitor &monitor) const {
    if (kind.maxSpeed <= 0 ||
        setting(m_settings, QStringLiteral("EmulateSpeed"), QStringLiteral("0")) != u"1")
        return;
    // A second of a CD is 75 sectors of 2352 bytes at 1x (176 kB/s) whatever they hold; a DVD's
    // speed counts 2048-byte blocks.
    const qint64 rawBytes = kind.cd ? ImageMedium::AudioFrameBytes : Block;
    QElapsedTimer clock;
    clock.start();
    const qint64 dueMs = blocks * rawBytes / kind.maxSpeed;
    while (clock.elapsed() < dueMs && !monitor.cancelRequested())
        QThread::msleep(ulong(std::min<qint64>(100, dueMs - clock.elapsed())));
}

MediumState ImageRecorder::medium() const {
    QMutexLocker lock(&m_mutex);
    const auto loaded = load();
    return loaded ? loaded->medium.state() : MediumState{};
}

void ImageRecorder::moveTray(bool close) {
    QMutexLocker lock(&m_mutex);
    QDir().mkpath(m_tray);
    QDir().mkpath(m_ejected);
    const QString file = mediumFile();
    if (!close) {
        if (m_locked.load())
            return; // a locked tray stays shut, as a drive's does
        if (const auto loaded = load())
            ejectLoaded(*loaded);
        else if (!file.isEmpty())
            moveInto(file, m_ejected); // a broken descriptor goes out all the same
        return;
    }
    if (!file.isEmpty())
        return;
    const MediumKind *kind = ImageMedium::kindByName(
        setting(m_settings, QStringLiteral("BlankMedium"), QStringLiteral("CD-R 80")));
    if (!kind || !kind->writable)
        kind = ImageMedium::kindByName(QStringLiteral("CD-R 80"));
    // Two discs made within one millisecond must not share a name: the second would look like
    // the first to the media watcher, and its eject would overwrite the first in Ejected.
    const QString stamp =
        QStringLiteral("Disc ") + QDateTime::currentDateTime().toString(u"yyyyMMdd-hhmmss-zzz");
    const auto taken = [this](const QString &name) {
        const QStringList pattern{name + QStringLiteral(".*")};
        return !QDir(m_tray).entryList(pattern, QDir::Files).isEmpty() ||
               !QDir(m_ejected).entryList(pattern, QDir::Files).isEmpty();
    };
    QString base = stamp;
    for (int n = 2; taken(base); ++n)
        base = stamp + u'-' + QString::number(n);
    Loaded loaded;
    loaded.medium = ImageMedium::blank(*kind, base + QStringLiteral(".iso"));
    loaded.descriptorPath = QDir(m_tray).filePath(base + DescriptorSuffix);
    loaded.dataPath = QDir(m_tray).filePath(loaded.medium.dataFile);
    QFile data(loaded.dataPath);
    if (data.open(QIODevice::WriteOnly))
        save(loaded);
}

bool ImageRecorder::readBlocks(qint32 lba, qint32 count, char *buffer) {
    QMutexLocker lock(&m_mutex);
    const auto loaded = load();
    // An audio disc has no 2048-byte blocks to read.
    if (!loaded || loaded->medium.isAudio() || lba < 0 || count < 0)
        return false;
    // A scratch the settings ask for: that block never reads, however often it is tried.
    bool scratched = false;
    const qint64 scratch =
        setting(m_settings, QStringLiteral("UnreadableSector"), QStringLiteral("-1"))
            .toLongLong(&scratched);
    if (scratched && scratch >= lba && scratch < qint64(lba) + count)
        return false;
    QFile f(loaded->dataPath);
    if (!f.open(QIODevice::ReadOnly) || !f.seek(qint64(lba) * Block))
        return false;
    const qint64 want = qint64(count) * Block;
    return f.read(buffer, want) == want;
}

JobOutcome ImageRecorder::check(const WritePlan &plan, const std::optional<Loaded> &loaded) const {
    if (!loaded)
        return noMedium();
    const MediumKind *kind = ImageMedium::kindByName(loaded->medium.kindName);
    const MediumState st = loaded->medium.state();
    if (!kind || !kind->writable || loaded->descriptorPath.isEmpty() || st.nextWritableAddress < 0)
        return JobOutcome::driveFailure(1032, QStringLiteral("The medium takes no more data"),
                                        QStringLiteral("5/21/02 INVALID ADDRESS FOR WRITE"));
    const JobOutcome wrongMode =
        JobOutcome::driveFailure(1040, QStringLiteral("The track mode does not suit this medium"),
                                 QStringLiteral("5/64/00 ILLEGAL MODE FOR THIS TRACK"));
    if (plan.tracks.empty() || int(plan.tracks.size()) > ImageMedium::MaxTracks)
        return wrongMode;
    // Audio goes disc at once on a blank CD, and nothing follows it but the closing.
    const bool audio = plan.tracks.front()->mode() == 0;
    if (audio && (!kind->cd || !loaded->medium.sessions.isEmpty()))
        return wrongMode;
    if (!audio && loaded->medium.isAudio())
        return wrongMode;
    qint64 total = 0;
    for (const TrackSource *t : plan.tracks) {
        if ((t->mode() == 0) != audio || (t->mode() == 2 && !kind->cd))
            return wrongMode;
        total += t->blockCount() + (audio ? ImageMedium::AudioGap : 0);
    }
    if (plan.startAddress != st.nextWritableAddress)
        return JobOutcome::driveFailure(
            1038,
            QStringLiteral("The track was laid out for block %1, the medium continues at %2")
                .arg(plan.startAddress)
                .arg(st.nextWritableAddress),
            QStringLiteral("5/21/02 INVALID ADDRESS FOR WRITE"));
    if (total > st.freeBlocks)
        return JobOutcome::driveFailure(
            1021,
            QStringLiteral("The track needs %1 blocks, the medium has %2 free")
                .arg(total)
                .arg(st.freeBlocks),
            QStringLiteral("5/21/00 LOGICAL BLOCK ADDRESS OUT OF RANGE"));
    return JobOutcome::completed();
}

JobOutcome ImageRecorder::precheck(const WritePlan &plan) const {
    QMutexLocker lock(&m_mutex);
    return check(plan, load());
}

JobOutcome ImageRecorder::write(const WritePlan &plan, JobMonitor &monitor) {
    std::optional<Loaded> loaded;
    {
        QMutexLocker lock(&m_mutex);
        loaded = load();
        if (JobOutcome refused = check(plan, loaded); refused.kind != JobOutcome::Completed)
            return refused;
        // An audio disc keeps its frames in a .bin, which the cue sheet beside it describes.
        const QFileInfo data(loaded->dataPath);
        if (plan.tracks.front()->mode() == 0 && !plan.testWrite && data.suffix() != u"bin") {
            const QString bin =
                data.dir().filePath(data.completeBaseName() + QStringLiteral(".bin"));
            if (QFileInfo::exists(bin) || !QFile::rename(loaded->dataPath, bin))
                return JobOutcome::driveFailure(1002,
                                                QStringLiteral("The medium file can't be renamed"),
                                                QStringLiteral("2/04/00 LOGICAL UNIT NOT READY"));
            loaded->dataPath = bin;
            loaded->medium.dataFile = QFileInfo(bin).fileName();
            save(*loaded);
        }
    }
    qint64 total = 0;
    for (const TrackSource *t : plan.tracks)
        total += t->blockCount();
    monitor.log(QStringLiteral("Image Recorder: %1 at block %2, %3 blocks in %4 track(s)%5")
                    .arg(loaded->medium.kindName)
                    .arg(plan.startAddress)
                    .arg(total)
                    .arg(plan.tracks.size())
                    .arg(plan.testWrite ? QStringLiteral(", simulation") : QString()));
    return writeTracks(plan, *loaded, monitor);
}

JobOutcome ImageRecorder::writeTracks(const WritePlan &plan, Loaded &loaded, JobMonitor &monitor) {
    const bool emulate =
        setting(m_settings, QStringLiteral("EmulateSpeed"), QStringLiteral("0")) == u"1";
    const ImageFaults faults = ImageFaults::fromSettings(m_settings);
    const MediumKind *kind = ImageMedium::kindByName(loaded.medium.kindName);
    const qint32 speed = plan.speed > 0 ? std::min(plan.speed, kind->maxSpeed) : kind->maxSpeed;
    const qint32 mode = plan.tracks.front()->mode();
    const bool audio = mode == 0;
    const qint64 blockBytes = audio ? ImageMedium::AudioFrameBytes : Block;
    // A second of a CD is 75 sectors whatever they hold; a DVD's speed counts 2048-byte blocks.
    const qint64 rawBlockBytes = kind->cd ? ImageMedium::AudioFrameBytes : Block;
    QFile data(loaded.dataPath);
    if (!plan.testWrite && !data.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        return JobOutcome::driveFailure(1002, QStringLiteral("The medium file can't be opened"),
                                        QStringLiteral("2/04/00 LOGICAL UNIT NOT READY"));
    std::vector<char> buffer(size_t(ChunkBlocks * blockBytes));
    qint64 address = plan.startAddress;
    qint64 written = 0; // blocks that reached the medium
    qint64 sent = 0;    // blocks the write went through, gaps included
    QList<qint32> starts;
    QElapsedTimer clock;
    clock.start();

    // Records the session as the medium now holds it.
    auto keep = [&](bool closed) {
        data.close();
        while (!starts.isEmpty() && starts.last() >= plan.startAddress + written)
            starts.removeLast();
        ImageMedium::Session s{plan.startAddress, qint32(written), mode, closed,
                               audio ? starts : QList<qint32>()};
        loaded.medium.sessions.append(s);
        loaded.medium.finalized = closed && plan.finalize;
        QMutexLocker lock(&m_mutex);
        return save(loaded);
    };
    // What a drive leaves after it stops in the middle: the blocks it burnt, in a session it
    // could not close.
    auto leaveIncomplete = [&]() {
        if (!plan.testWrite && written > 0)
            keep(false);
    };
    // A failure the settings ask for, when the write has reached its block.
    auto fault = [&](TrackSource *track) -> std::optional<JobOutcome> {
        if (sent == faults.unreadableSourceAt) {
            faults.consume(ImageFaults::UnreadableKey);
            if (!track->breakSource())
                monitor.log(QStringLiteral("Image Recorder: this source can't be made unreadable"));
        }
        if (sent == faults.mediumRemovedAt) {
            faults.consume(ImageFaults::RemovedKey);
            leaveIncomplete();
            QMutexLocker lock(&m_mutex);
            if (const auto now = load())
                ejectLoaded(*now);
            return JobOutcome::driveFailure(
                1033, QStringLiteral("The medium was removed during the write"),
                QStringLiteral("2/3A/00 MEDIUM NOT PRESENT"));
        }
        if (sent == faults.writeErrorAt) {
            faults.consume(ImageFaults::WriteErrorKey);
            leaveIncomplete();
            return JobOutcome::driveFailure(
                faults.writeErrorCode,
                QStringLiteral("The drive failed to write block %1").arg(address),
                faults.writeErrorSense);
        }
        return std::nullopt;
    };
    // Puts `blocks` blocks on the medium at `address`: the track's, or silence for a gap.
    auto put = [&](TrackSource *track, qint32 number, qint64 blocks,
                   bool gap) -> std::optional<JobOutcome> {
        if (!plan.testWrite && !data.seek(address * blockBytes)) {
            leaveIncomplete();
            return JobOutcome::driveFailure(1017, QStringLiteral("Seek on the medium file failed"),
                                            QStringLiteral("3/02/00 NO SEEK COMPLETE"));
        }
        for (qint64 done = 0; done < blocks;) {
            if (monitor.cancelRequested()) {
                leaveIncomplete();
                return JobOutcome::cancelled();
            }
            if (auto failed = fault(track))
                return failed;
            // Small steps on a small track, so that its progress passes through 1 %; never
            // past a block where a failure waits.
            qint64 n = std::min(std::clamp<qint64>(blocks / 200, 1, ChunkBlocks), blocks - done);
            if (const qint64 next = faults.nextWriteFault(sent + 1); next > sent)
                n = std::min(n, next - sent);
            const qint64 bytes = n * blockBytes;
            if (gap) {
                std::fill(buffer.begin(), buffer.begin() + bytes, 0);
            } else if (!track->read(buffer.data(), bytes)) {
                leaveIncomplete();
                return JobOutcome::failed(
                    1, QStringLiteral("A source of the track could not be read"));
            }
            if (!plan.testWrite) {
                if (data.write(buffer.data(), bytes) != bytes) {
                    leaveIncomplete();
                    return JobOutcome::driveFailure(
                        1005,
                        QStringLiteral("Writing the medium file failed: %1")
                            .arg(data.errorString()),
                        QStringLiteral("3/0C/00 WRITE ERROR"));
                }
                written += n;
            }
            done += n;
            sent += n;
            address += n;
            if (!gap)
                monitor.trackProgress(number, done, blocks);
            if (emulate && speed > 0) {
                // Hold back to the chosen speed, as a drive would.
                const qint64 ahead = sent * rawBlockBytes / speed - clock.elapsed();
                if (ahead > 0)
                    QThread::msleep(ulong(ahead));
            }
        }
        return std::nullopt;
    };

    for (size_t i = 0; i < plan.tracks.size(); ++i) {
        TrackSource *track = plan.tracks[i];
        const qint32 number = qint32(i + 1);
        if (audio && i > 0) {
            if (auto ended = put(track, number, ImageMedium::AudioGap, true))
                return *ended;
        }
        starts.append(qint32(address));
        monitor.trackStarted(number);
        monitor.trackProgress(number, 0, track->blockCount());
        if (auto ended = put(track, number, track->blockCount(), false))
            return *ended;
        if (auto failed = fault(track)) // a failure asked for at the very end
            return *failed;
        monitor.closingTrack(number);
    }
    if (plan.closeSession || plan.finalize) {
        monitor.closingSession();
        if (emulate)
            takeTime(*kind, ImageMedium::FirstSessionGap, monitor);
        if (faults.closeErrorCode && !plan.testWrite) {
            // The blocks are on the disc; only its table of contents is missing.
            faults.consume(ImageFaults::CloseKey);
            data.flush();
            leaveIncomplete();
            return JobOutcome::driveFailure(faults.closeErrorCode,
                                            plan.finalize
                                                ? QStringLiteral("Closing the disc failed")
                                                : QStringLiteral("Closing the session failed"),
                                            QStringLiteral("5/72/00 SESSION FIXATION ERROR"));
        }
    }
    if (plan.finalize)
        monitor.closingDisc();
    if (plan.testWrite)
        return JobOutcome::completed();
    if (!data.flush()) {
        leaveIncomplete();
        return JobOutcome::driveFailure(1005, QStringLiteral("Writing the medium file failed"),
                                        QStringLiteral("3/0C/00 WRITE ERROR"));
    }
    if (!keep(plan.closeSession || plan.finalize))
        return JobOutcome::driveFailure(
            1049, QStringLiteral("The disc's table of contents could not be written"),
            QStringLiteral("3/73/00 CD CONTROL ERROR"));
    return JobOutcome::completed();
}

JobOutcome ImageRecorder::erase(bool quick, JobMonitor &monitor) {
    const ImageFaults faults = ImageFaults::fromSettings(m_settings);
    std::optional<Loaded> loaded = lockedLoad();
    if (!loaded)
        return noMedium();
    const MediumKind *kind = ImageMedium::kindByName(loaded->medium.kindName);
    if (!kind || !kind->rewritable || loaded->descriptorPath.isEmpty())
        return JobOutcome::driveFailure(1036, QStringLiteral("The medium is not rewritable"),
                                        QStringLiteral("5/30/05 CANNOT WRITE MEDIUM"));
    monitor.log(QStringLiteral("Image Recorder: %1 erase of a %2")
                    .arg(quick ? QStringLiteral("quick") : QStringLiteral("full"), kind->name));
    // A quick erase rewrites the lead-in with its table of contents, a full one every block;
    // a full blanking tells its course, as drives do.
    if (!quick)
        monitor.trackProgress(1, 0, kind->capacity);
    takeTime(*kind, quick ? ImageMedium::FirstSessionGap : kind->capacity, monitor);
    if (!quick)
        monitor.trackProgress(1, kind->capacity, kind->capacity);
    if (monitor.cancelRequested())
        return JobOutcome::cancelled();
    if (faults.eraseErrorCode) {
        faults.consume(ImageFaults::EraseKey);
        return JobOutcome::driveFailure(faults.eraseErrorCode,
                                        QStringLiteral("Erasing the medium failed"),
                                        QStringLiteral("3/51/00 ERASE FAILURE"));
    }
    QMutexLocker lock(&m_mutex);
    if (loaded->medium.isAudio()) {
        QFile::remove(cuePath(loaded->dataPath));
        const QFileInfo data(loaded->dataPath);
        const QString iso = data.dir().filePath(data.completeBaseName() + QStringLiteral(".iso"));
        if (!QFileInfo::exists(iso) && QFile::rename(loaded->dataPath, iso)) {
            loaded->dataPath = iso;
            loaded->medium.dataFile = QFileInfo(iso).fileName();
        }
    }
    // Blank blocks read as zeros: an empty data file holds the whole blank medium.
    if (!quick && !QFile(loaded->dataPath).resize(0))
        return JobOutcome::driveFailure(1036, QStringLiteral("Erasing the medium file failed"),
                                        QStringLiteral("3/51/00 ERASE FAILURE"));
    loaded->medium.sessions.clear();
    loaded->medium.finalized = false;
    if (!save(*loaded))
        return JobOutcome::driveFailure(
            1037, QStringLiteral("The table of contents could not be written"),
            QStringLiteral("3/51/00 ERASE FAILURE"));
    return JobOutcome::completed();
}

JobOutcome ImageRecorder::finish(bool closeDisc, JobMonitor &monitor) {
    const ImageFaults faults = ImageFaults::fromSettings(m_settings);
    std::optional<Loaded> loaded = lockedLoad();
    if (!loaded)
        return noMedium();
    const MediumKind *kind = ImageMedium::kindByName(loaded->medium.kindName);
    ImageMedium &medium = loaded->medium;
    if (!kind || !kind->writable || loaded->descriptorPath.isEmpty() || medium.finalized ||
        medium.sessions.isEmpty())
        return JobOutcome::driveFailure(1042, QStringLiteral("Nothing on this disc can be closed"),
                                        QStringLiteral("5/2C/00 COMMAND SEQUENCE ERROR"));
    monitor.log(QStringLiteral("Image Recorder: closing the %1")
                    .arg(closeDisc ? QStringLiteral("disc") : QStringLiteral("session")));
    monitor.closingSession();
    // The lead-out, and the lead-in with the table of contents, are written now.
    takeTime(*kind, ImageMedium::FirstSessionGap, monitor);
    if (faults.closeErrorCode) {
        faults.consume(ImageFaults::CloseKey);
        return JobOutcome::driveFailure(faults.closeErrorCode,
                                        closeDisc ? QStringLiteral("Closing the disc failed")
                                                  : QStringLiteral("Closing the session failed"),
                                        QStringLiteral("5/72/00 SESSION FIXATION ERROR"));
    }
    medium.sessions.last().closed = true;
    if (closeDisc) {
        monitor.closingDisc();
        medium.finalized = true;
    }
    QMutexLocker lock(&m_mutex);
    if (!save(*loaded))
        return JobOutcome::driveFailure(
            1049, QStringLiteral("The disc's table of contents could not be written"),
            QStringLiteral("3/73/00 CD CONTROL ERROR"));
    return JobOutcome::completed();
}
