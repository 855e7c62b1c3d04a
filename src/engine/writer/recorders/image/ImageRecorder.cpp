#include "ImageRecorder.h"

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

QString setting(const QString &key, const QString &defaultValue) {
    return IniFile::read(ImageRecorder::settingsFile(), QStringLiteral("Image Recorder"), key,
                         defaultValue);
}

// Moves a file into a folder, choosing a free name there.
QString moveInto(const QString &path, const QString &folder) {
    const QFileInfo info(path);
    QString target = folder + u'/' + info.fileName();
    for (int i = 2; QFileInfo::exists(target); ++i)
        target = folder + u'/' + info.completeBaseName() + QStringLiteral(" (%1).").arg(i) +
                 info.suffix();
    return QFile::rename(path, target) ? target : QString();
}
} // namespace

ImageRecorder::ImageRecorder() {
    QDir().mkpath(trayFolder());
    QDir().mkpath(ejectedFolder());
    if (!QFileInfo::exists(settingsFile())) {
        // The settings explain themselves to whoever opens the file.
        QFile f(settingsFile());
        if (f.open(QIODevice::WriteOnly | QIODevice::Text))
            f.write("; Settings of the Tessaly Image Recorder.\n"
                    "; BlankMedium: the disc loaded when the empty tray closes: CD-R 74, CD-R 80,\n"
                    ";   CD-RW 74, CD-RW 80, DVD-R, DVD+R, DVD-RW, DVD+RW or DVD-RAM.\n"
                    "; EmulateSpeed: 1 holds writing back to the chosen speed, 0 writes as fast\n"
                    ";   as the machine can.\n"
                    "[Image Recorder]\n"
                    "BlankMedium=CD-R 80\n"
                    "EmulateSpeed=0\n");
    }
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

bool ImageRecorder::capability(qint32 code) const {
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
    const QDir tray(trayFolder());
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
    return f.commit();
}

MediumState ImageRecorder::medium() const {
    QMutexLocker lock(&m_mutex);
    const auto loaded = load();
    return loaded ? loaded->medium.state() : MediumState{};
}

void ImageRecorder::moveTray(bool close) {
    QMutexLocker lock(&m_mutex);
    QDir().mkpath(trayFolder());
    QDir().mkpath(ejectedFolder());
    const QString file = mediumFile();
    if (!close) {
        if (file.isEmpty())
            return;
        const auto loaded = load();
        if (loaded && !loaded->descriptorPath.isEmpty()) {
            // The data file first: the descriptor is what makes a disc, so it goes last.
            const QString data = moveInto(loaded->dataPath, ejectedFolder());
            if (!data.isEmpty() && QFileInfo(data).fileName() != loaded->medium.dataFile) {
                Loaded moved = *loaded;
                moved.medium.dataFile = QFileInfo(data).fileName();
                save(moved);
            }
        }
        moveInto(file, ejectedFolder());
        return;
    }
    if (!file.isEmpty())
        return;
    const MediumKind *kind =
        ImageMedium::kindByName(setting(QStringLiteral("BlankMedium"), QStringLiteral("CD-R 80")));
    if (!kind || !kind->writable)
        kind = ImageMedium::kindByName(QStringLiteral("CD-R 80"));
    const QString base =
        QStringLiteral("Disc ") + QDateTime::currentDateTime().toString(u"yyyyMMdd-hhmmss-zzz");
    Loaded loaded;
    loaded.medium = ImageMedium::blank(*kind, base + QStringLiteral(".iso"));
    loaded.descriptorPath = QDir(trayFolder()).filePath(base + DescriptorSuffix);
    loaded.dataPath = QDir(trayFolder()).filePath(loaded.medium.dataFile);
    QFile data(loaded.dataPath);
    if (data.open(QIODevice::WriteOnly))
        save(loaded);
}

bool ImageRecorder::readBlocks(qint32 lba, qint32 count, char *buffer) {
    QMutexLocker lock(&m_mutex);
    const auto loaded = load();
    if (!loaded || lba < 0 || count < 0)
        return false;
    QFile f(loaded->dataPath);
    if (!f.open(QIODevice::ReadOnly) || !f.seek(qint64(lba) * Block))
        return false;
    const qint64 want = qint64(count) * Block;
    return f.read(buffer, want) == want;
}

JobOutcome ImageRecorder::check(const WritePlan &plan, const std::optional<Loaded> &loaded) const {
    if (!loaded)
        return JobOutcome::driveFailure(1033, QStringLiteral("No medium in the Image Recorder"),
                                        QStringLiteral("2/3A/00 MEDIUM NOT PRESENT"));
    const MediumKind *kind = ImageMedium::kindByName(loaded->medium.kindName);
    const MediumState st = loaded->medium.state();
    if (!kind || !kind->writable || loaded->descriptorPath.isEmpty() || st.nextWritableAddress < 0)
        return JobOutcome::driveFailure(1032, QStringLiteral("The medium takes no more data"),
                                        QStringLiteral("5/21/02 INVALID ADDRESS FOR WRITE"));
    qint64 total = 0;
    for (const TrackSource *t : plan.tracks) {
        if (t->mode() == 0 || (t->mode() == 2 && !kind->cd))
            return JobOutcome::driveFailure(
                1040, QStringLiteral("The track mode does not suit this medium"),
                QStringLiteral("5/64/00 ILLEGAL MODE FOR THIS TRACK"));
        total += t->blockCount();
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
    QMutexLocker lock(&m_mutex);
    auto loaded = load();
    if (JobOutcome refused = check(plan, loaded); refused.kind != JobOutcome::Completed)
        return refused;
    qint64 total = 0;
    for (const TrackSource *t : plan.tracks)
        total += t->blockCount();
    monitor.log(QStringLiteral("Image Recorder: %1 at block %2, %3 blocks%4")
                    .arg(loaded->medium.kindName)
                    .arg(plan.startAddress)
                    .arg(total)
                    .arg(plan.testWrite ? QStringLiteral(", simulation") : QString()));
    return writeTracks(plan, *loaded, monitor);
}

JobOutcome ImageRecorder::writeTracks(const WritePlan &plan, Loaded &loaded, JobMonitor &monitor) {
    const bool emulate = setting(QStringLiteral("EmulateSpeed"), QStringLiteral("0")) == u"1";
    const MediumKind *kind = ImageMedium::kindByName(loaded.medium.kindName);
    const qint32 speed = plan.speed > 0 ? std::min(plan.speed, kind->maxSpeed) : kind->maxSpeed;
    QFile data(loaded.dataPath);
    if (!plan.testWrite && !data.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        return JobOutcome::driveFailure(1002, QStringLiteral("The medium file can't be opened"),
                                        QStringLiteral("2/04/00 LOGICAL UNIT NOT READY"));
    std::vector<char> buffer(ChunkBlocks * Block);
    qint64 address = plan.startAddress;
    qint64 written = 0; // blocks that reached the medium
    QElapsedTimer clock;
    clock.start();
    qint64 sent = 0;

    // What a drive leaves after it stops in the middle: the blocks it burnt, in a session it
    // could not close.
    auto leaveIncomplete = [&]() {
        if (plan.testWrite || written == 0)
            return;
        data.close();
        ImageMedium::Session s{plan.startAddress, qint32(written), plan.tracks.front()->mode(),
                               false};
        loaded.medium.sessions.append(s);
        save(loaded);
    };

    for (size_t i = 0; i < plan.tracks.size(); ++i) {
        TrackSource *track = plan.tracks[i];
        const qint32 number = qint32(i + 1);
        const qint64 blocks = track->blockCount();
        monitor.trackStarted(number);
        monitor.trackProgress(number, 0, blocks);
        if (!plan.testWrite && !data.seek(address * Block)) {
            leaveIncomplete();
            return JobOutcome::driveFailure(1017, QStringLiteral("Seek on the medium file failed"),
                                            QStringLiteral("3/02/00 NO SEEK COMPLETE"));
        }
        for (qint64 done = 0; done < blocks;) {
            if (monitor.cancelRequested()) {
                leaveIncomplete();
                return JobOutcome::cancelled();
            }
            // Small steps on a small track, so that its progress passes through 1 %.
            const qint64 step = std::clamp<qint64>(blocks / 200, 1, ChunkBlocks);
            const qint64 n = std::min(step, blocks - done);
            if (!track->read(buffer.data(), n * Block)) {
                leaveIncomplete();
                return JobOutcome::failed(
                    1, QStringLiteral("A source of the track could not be read"));
            }
            if (!plan.testWrite) {
                if (data.write(buffer.data(), n * Block) != n * Block) {
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
            monitor.trackProgress(number, done, blocks);
            if (emulate && speed > 0) {
                // Hold back to the chosen speed, as a drive would.
                const qint64 dueMs = sent * 2 * 1000 / speed;
                const qint64 ahead = dueMs - clock.elapsed();
                if (ahead > 0)
                    QThread::msleep(ulong(ahead));
            }
        }
        address += blocks;
        monitor.closingTrack(number);
    }
    if (plan.closeSession || plan.finalize)
        monitor.closingSession();
    if (plan.finalize)
        monitor.closingDisc();
    if (plan.testWrite)
        return JobOutcome::completed();
    if (!data.flush()) {
        leaveIncomplete();
        return JobOutcome::driveFailure(1005, QStringLiteral("Writing the medium file failed"),
                                        QStringLiteral("3/0C/00 WRITE ERROR"));
    }
    data.close();
    loaded.medium.sessions.append({plan.startAddress, qint32(written),
                                   plan.tracks.empty() ? 1 : plan.tracks.front()->mode(),
                                   plan.closeSession || plan.finalize});
    loaded.medium.finalized = plan.finalize;
    if (!save(loaded))
        return JobOutcome::driveFailure(
            1049, QStringLiteral("The disc's table of contents could not be written"),
            QStringLiteral("3/73/00 CD CONTROL ERROR"));
    return JobOutcome::completed();
}
