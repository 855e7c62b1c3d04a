#include "CDWriterPro.h"

#include "CDWriterProPrivate.h"
#include "iso/IsoImageTree.h"
#include "jobs/EngineJob.h"
#include "recorders/DriveScanner.h"

#include "base/App.h"
#include "engine/system/SystemCalls.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>

CDWriterProPrivate::CDWriterProPrivate(CDWriterPro *owner)
    : q(owner)
    , tree(std::make_unique<IsoImageTree>()) {
    tree->setNoticeSink([this](const QString &source, const QString &notice) {
        emit q->SourceFileNotice(source, notice);
    });
}

CDWriterProPrivate::~CDWriterProPrivate() {
    // A job still running is stopped and waited for: a worker is never left behind.
    if (job) {
        job->cancel();
        job->wait();
        job.reset();
    }
}

Recorder *CDWriterProPrivate::drive(qint32 index) const {
    if (index < 0 || size_t(index) >= drives.size())
        return nullptr;
    return drives[size_t(index)].get();
}

MediumState CDWriterProPrivate::medium() const {
    Recorder *r = currentDrive();
    return r ? r->medium() : MediumState{};
}

bool CDWriterProPrivate::jobRunning() const {
    return job != nullptr;
}

CDWriterPro::CDWriterPro(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<CDWriterProPrivate>(this)) {}

CDWriterPro::~CDWriterPro() {
    SystemCalls::forgetDiscAccessors(this);
}

// --- Write settings -------------------------------------------------------------------------

bool CDWriterPro::TestWrite() const {
    return d->testWrite;
}
void CDWriterPro::setTestWrite(bool value) {
    d->testWrite = value;
}
bool CDWriterPro::CacheImage() const {
    return d->cacheImage;
}
void CDWriterPro::setCacheImage(bool value) {
    d->cacheImage = value;
}
bool CDWriterPro::FinalizeDisc() const {
    return d->finalizeDisc;
}
void CDWriterPro::setFinalizeDisc(bool value) {
    d->finalizeDisc = value;
}
bool CDWriterPro::CloseSession() const {
    return d->closeSession;
}
void CDWriterPro::setCloseSession(bool value) {
    d->closeSession = value;
}
qint32 CDWriterPro::TrackMode() const {
    return d->trackMode;
}
void CDWriterPro::setTrackMode(qint32 value) {
    if (value >= 0 && value <= 2)
        d->trackMode = value;
}
void CDWriterPro::EnableBurnProof(bool enable) {
    d->burnProof = enable;
}
void CDWriterPro::SetWriteSpeed(qint32 speed) {
    d->writeSpeed = std::max(0, speed);
}
void CDWriterPro::SetLogging(bool enable, const QString &path) {
    d->logging = enable;
    d->logPath = path;
}

// --- Drives and media -----------------------------------------------------------------------

bool CDWriterPro::InitializeDrives(bool) {
    if (d->drives.empty()) {
        // Once per run: what a crashed write left in the cache goes.
        EngineJob::removeStaleCaches(App::pathOf(QStringLiteral("/Cache")));
        d->drives = DriveScanner::scan();
        for (qint32 i = 0; i < DriveCount(); ++i)
            SystemCalls::setDiscAccessor(DriveLetter(i), this, [this, i] { return discAccess(i); });
    }
    return !d->drives.empty();
}

qint32 CDWriterPro::DriveCount() const {
    return qint32(d->drives.size());
}

QString CDWriterPro::DriveLetter(qint32 index) const {
    const Recorder *r = d->drive(index);
    return r ? r->letter() : QString();
}

QString CDWriterPro::DriveVendor(qint32 index) const {
    const Recorder *r = d->drive(index);
    return r ? r->vendor() : QString();
}

QString CDWriterPro::DriveProduct(qint32 index) const {
    const Recorder *r = d->drive(index);
    return r ? r->product() : QString();
}

QString CDWriterPro::DriveRevision(qint32 index) const {
    const Recorder *r = d->drive(index);
    return r ? r->revision() : QString();
}

std::optional<SystemCalls::DiscAccess> CDWriterPro::discAccess(qint32 index) {
    Recorder *r = d->drive(index);
    // The worker owns the drive while a job runs.
    if (!r || d->jobRunning())
        return std::nullopt;
    const MediumState st = r->medium();
    if (!st.present())
        return std::nullopt;
    SystemCalls::DiscAccess access;
    access.lastSessionStart = st.lastSessionStart;
    access.lastSessionMode = st.lastSessionMode;
    // What the sessions take: up to the next session's start while the disc takes more, else to
    // the end of its last data, else (a closed audio disc) all of it.
    if (st.nextWritableAddress >= 0) {
        access.usedBlocks = st.nextWritableAddress;
    } else if (!st.sessionExtents.isEmpty()) {
        for (const auto &[start, blocks] : st.sessionExtents)
            access.usedBlocks = std::max(access.usedBlocks, start + blocks);
    } else {
        access.usedBlocks = st.capacityBlocks - st.freeBlocks;
    }
    access.read = [r](qint32 lba, qint32 count, char *buffer) {
        return r->readBlocks(lba, count, buffer);
    };
    return access;
}

bool CDWriterPro::DriveIsRecorder(qint32 index) const {
    const Recorder *r = d->drive(index);
    return r && r->isRecorder();
}

bool CDWriterPro::SelectDrive(qint32 index) {
    // The drive stays as it is while a job uses it.
    if (!d->drive(index) || d->jobRunning())
        return false;
    d->current = index;
    return true;
}

bool CDWriterPro::DriveCapability(qint32 code, qint32 index) const {
    const Recorder *r = d->drive(index);
    return r && r->capability(code);
}

bool CDWriterPro::CurrentDriveCapability(qint32 code) const {
    return DriveCapability(code, d->current);
}

void CDWriterPro::MoveTray(bool close) {
    if (Recorder *r = d->currentDrive(); r && !d->jobRunning() && !r->claimed()) {
        r->moveTray(close);
        emit trayMoved();
    }
}

QString CDWriterPro::mediumIdentity(qint32 index) const {
    const Recorder *r = d->drive(index);
    return r ? r->mediumIdentity() : QString();
}

Recorder *CDWriterPro::recorder(qint32 index) const {
    return d->drive(index);
}

bool CDWriterPro::isVirtualDrive(qint32 index) const {
    const Recorder *r = d->drive(index);
    return r && r->isVirtual();
}

qint32 CDWriterPro::MediaType() const {
    return d->medium().mediaType;
}
qint32 CDWriterPro::DiscStatus() const {
    return d->medium().discStatus;
}
qint32 CDWriterPro::LastSessionStatus() const {
    return d->medium().lastSessionStatus;
}
qint32 CDWriterPro::DiscType() const {
    return d->medium().discType;
}
qint32 CDWriterPro::SessionCount() const {
    return d->medium().sessionCount;
}
qint32 CDWriterPro::FreeBlocks() const {
    return d->medium().freeBlocks;
}
qint32 CDWriterPro::MaxWriteSpeed() const {
    return d->medium().maxWriteSpeed;
}

QString CDWriterPro::Version() const {
    return QStringLiteral("Tessaly disc engine %1").arg(App::versionText());
}

// --- Sizes ----------------------------------------------------------------------------------

double CDWriterPro::BlocksToBytes(qint32 blocks, qint32 mode) const {
    // Mode 0 counts audio frames of 2352 bytes; every other mode data blocks of 2048.
    return double(blocks) * (mode == 0 ? 2352.0 : 2048.0);
}

QString CDWriterPro::BlocksToTime(qint32 blocks) const {
    // 75 blocks make a second of a CD: minutes, seconds and frames.
    const qint64 b = std::max<qint64>(0, blocks);
    return QStringLiteral("%1:%2:%3")
        .arg(b / 4500, 2, 10, QLatin1Char('0'))
        .arg(b / 75 % 60, 2, 10, QLatin1Char('0'))
        .arg(b % 75, 2, 10, QLatin1Char('0'));
}

// --- Image ----------------------------------------------------------------------------------

namespace {
using Id = IsoImageTree::Identifier;
}

QString CDWriterPro::VolumeIdentifier() const {
    return d->tree->identifier(Id::Volume);
}
void CDWriterPro::setVolumeIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::Volume, v);
}
QString CDWriterPro::SystemIdentifier() const {
    return d->tree->identifier(Id::System);
}
void CDWriterPro::setSystemIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::System, v);
}
QString CDWriterPro::VolumeSetIdentifier() const {
    return d->tree->identifier(Id::VolumeSet);
}
void CDWriterPro::setVolumeSetIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::VolumeSet, v);
}
QString CDWriterPro::PublisherIdentifier() const {
    return d->tree->identifier(Id::Publisher);
}
void CDWriterPro::setPublisherIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::Publisher, v);
}
QString CDWriterPro::DataPreparerIdentifier() const {
    return d->tree->identifier(Id::DataPreparer);
}
void CDWriterPro::setDataPreparerIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::DataPreparer, v);
}
QString CDWriterPro::ApplicationIdentifier() const {
    return d->tree->identifier(Id::Application);
}
void CDWriterPro::setApplicationIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::Application, v);
}
QString CDWriterPro::CopyrightFileIdentifier() const {
    return d->tree->identifier(Id::CopyrightFile);
}
void CDWriterPro::setCopyrightFileIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::CopyrightFile, v);
}
QString CDWriterPro::AbstractFileIdentifier() const {
    return d->tree->identifier(Id::AbstractFile);
}
void CDWriterPro::setAbstractFileIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::AbstractFile, v);
}
QString CDWriterPro::BiblioFileIdentifier() const {
    return d->tree->identifier(Id::BiblioFile);
}
void CDWriterPro::setBiblioFileIdentifier(const QString &v) {
    d->tree->setIdentifier(Id::BiblioFile, v);
}

bool CDWriterPro::UseFileModifiedDate() const {
    return d->useModifiedDate;
}
void CDWriterPro::setUseFileModifiedDate(bool value) {
    d->useModifiedDate = value;
}
qint32 CDWriterPro::ISOFileSystem() const {
    return d->fileSystem;
}
void CDWriterPro::setISOFileSystem(qint32 value) {
    if (value == 0 || value == 1)
        d->fileSystem = value;
}
qint32 CDWriterPro::ISOLevel() const {
    return IsoImageTree::Level;
}

qint32 CDWriterPro::ISOImageBlocks() const {
    // A media event during a write asks for the size while the job's threads own the image.
    const bool held = d->job && (d->job->kind() == EngineJob::Kind::WriteImage ||
                                 d->job->kind() == EngineJob::Kind::CreateIsoFile);
    return qint32(std::min<qint64>(d->tree->imageBlocks(d->streamOptions(), held), INT32_MAX));
}
qint32 CDWriterPro::ISOFileCount() const {
    return d->tree->fileCount();
}
qint32 CDWriterPro::ISODirectoryCount() const {
    return d->tree->directoryCount();
}

IsoImageTree::StreamOptions CDWriterProPrivate::streamOptions() const {
    IsoImageTree::StreamOptions options;
    options.joliet = fileSystem == 1;
    // An image that refers to an imported session is laid out for the place it will go.
    if (tree->hasImport())
        options.startBlock = std::max(0, medium().nextWritableAddress);
    return options;
}

bool CDWriterProPrivate::announce(const PendingItems &items, bool enumerate) {
    const QPointer<CDWriterPro> alive(q);
    const quint64 since = tree->epoch();
    for (size_t n = 0; n < items.size(); ++n) {
        IsoImageTree::Item i;
        if (!tree->current(items.at(n), since, &i))
            continue; // taken out (or replaced) by a handler of an earlier event
        if (enumerate)
            emit q->EnumISOItems(i.parentPath, i.destPath, i.name, i.sourcePath, i.isDirectory,
                                 i.date, i.size);
        else
            emit q->ISOItemAdded(i.parentPath, i.destPath, i.name, i.sourcePath, i.isDirectory,
                                 i.date, i.size);
        if (!alive)
            return false;
    }
    return true;
}

IsoImageTree::ReplaceQuestion CDWriterProPrivate::replaceQuestion() {
    return [this](const QString &dest, const QString &source, const QString &name) {
        bool replace = false;
        emit q->ReplaceImportedISOFile(dest, source, name, replace);
        return replace;
    };
}

void CDWriterPro::ClearISOImage() {
    if (d->jobRunning() || d->tree->changing())
        return;
    // The identifiers belong to the engine, not to the image: they survive a reset.
    QString ids[IsoImageTree::IdentifierCount];
    for (int i = 0; i < IsoImageTree::IdentifierCount; ++i)
        ids[i] = d->tree->identifier(Id(i));
    d->tree->clear();
    for (int i = 0; i < IsoImageTree::IdentifierCount; ++i)
        d->tree->setIdentifier(Id(i), ids[i]);
    emit ISOImageReset();
}

void CDWriterPro::AddISOFile(const QString &destPath, const QString &source) {
    if (d->jobRunning())
        return;
    PendingItems added;
    if (d->tree->addFile(destPath, source, d->useModifiedDate, added.sink(), d->replaceQuestion()))
        d->announce(added, false);
}

void CDWriterPro::AddISODirectory(const QString &destPath, const QString &sourcePattern) {
    if (d->jobRunning())
        return;
    // The pattern is the folder followed by "\*.*" (or "/*.*"); a bare folder is taken too.
    QString folder = sourcePattern;
    for (const QString &tail : {QStringLiteral("\\*.*"), QStringLiteral("/*.*")}) {
        if (folder.endsWith(tail)) {
            folder.chop(tail.size());
            break;
        }
    }
    if (folder.isEmpty() && sourcePattern.startsWith(u'/'))
        folder = QStringLiteral("/");
    // The whole folder goes in first; its items are announced after, so that their handlers
    // can change the image without pulling nodes from under the walk.
    PendingItems added;
    if (d->tree->addDirectory(destPath, folder, d->useModifiedDate, added.sink(),
                              d->replaceQuestion()))
        d->announce(added, false);
}

bool CDWriterPro::RemoveISOItem(const QString &destPath) {
    IsoImageTree::Item removed;
    if (d->jobRunning() || !d->tree->remove(destPath, &removed))
        return false;
    emit ISOItemRemoved(removed.destPath, removed.name, removed.isDirectory);
    return true;
}

bool CDWriterPro::RenameISOFile(const QString &destPath, const QString &newName) {
    return !d->jobRunning() && d->tree->rename(destPath, newName, false, nullptr);
}

bool CDWriterPro::RenameISODirectory(const QString &destPath, const QString &newName) {
    QString newPath;
    if (d->jobRunning() || !d->tree->rename(destPath, newName, true, &newPath))
        return false;
    QString oldPath = destPath;
    oldPath.replace(u'/', u'\\');
    emit ISODestPathChanged(oldPath, newPath, true);
    return true;
}

void CDWriterPro::ListISOItems(const QString &destPath) {
    PendingItems listed;
    d->tree->list(destPath, listed.sink());
    d->announce(listed, true);
}

bool CDWriterPro::ImportLastSession(bool) {
    Recorder *r = d->currentDrive();
    if (!r || d->jobRunning())
        return false;
    const MediumState st = r->medium();
    // Only a data session in Mode 1 holds an ISO 9660 tree this engine can take over.
    if (!st.present() || st.lastSessionStart < 0 || st.lastSessionMode != 1)
        return false;
    PendingItems added;
    QStringList leftOut;
    if (!d->tree->importSession(*r, st.lastSessionStart, st.sessionExtents, added.sink(),
                                d->replaceQuestion(), &leftOut))
        return false;
    d->importRecorder = r;
    d->importMedium = r->mediumIdentity();
    const QPointer<CDWriterPro> alive(this);
    if (!leftOut.isEmpty())
        emit importedFilesMissing(leftOut);
    if (alive)
        d->announce(added, false);
    return true;
}

// --- Audio tracks ---------------------------------------------------------------------------

void CDWriterPro::ClearAudioTracks() {
    if (!d->jobRunning())
        d->audio.clear();
}

bool CDWriterPro::AddAudioTrack(const QString &fileName, qint32 position) {
    return !d->jobRunning() && d->audio.add(fileName, position);
}

void CDWriterPro::RemoveAudioTrack(qint32 index) {
    if (!d->jobRunning())
        d->audio.remove(index);
}

void CDWriterPro::ListAudioTracks() {
    const std::vector<AudioTrack> tracks = d->audio.tracks(); // a handler may change the list
    for (size_t i = 0; i < tracks.size(); ++i) {
        const AudioTrack &t = tracks[i];
        emit EnumAudioTrack(t.fileName, t.blocks, qint32(std::min<qint64>(t.pcmBytes, INT32_MAX)),
                            qint32(i + 1));
    }
}

qint32 CDWriterPro::AudioTrackCount() const {
    return d->audio.count();
}

qint32 CDWriterPro::AudioImageBlocks() const {
    return qint32(std::min<qint64>(d->audio.imageBlocks(), INT32_MAX));
}

// --- Erasing and closing --------------------------------------------------------------------

bool CDWriterPro::EraseDisc(bool quick) {
    Recorder *r = d->currentDrive();
    if (!r || d->jobRunning())
        return false;
    // Only rewritable media are blanked; a write-once disc is refused before anything starts.
    switch (r->medium().mediaType) {
    case MediaCDRW:
    case MediaDVDRW:
    case MediaDVDPlusRW:
    case MediaDVDRAM:
        break;
    default:
        return false;
    }
    EngineJob::Setup setup;
    setup.kind = EngineJob::Kind::Erase;
    setup.recorder = r;
    setup.quick = quick;
    return d->startJob(std::move(setup), {});
}

bool CDWriterPro::FinishDisc(bool closeDisc) {
    Recorder *r = d->currentDrive();
    if (!r || d->jobRunning())
        return false;
    // Only an open disc has a session or a disc left to close.
    if (r->medium().discStatus != DiscOpen)
        return false;
    EngineJob::Setup setup;
    setup.kind = EngineJob::Kind::Finish;
    setup.recorder = r;
    setup.closeDisc = closeDisc;
    return d->startJob(std::move(setup), {});
}

// --- Jobs -----------------------------------------------------------------------------------

bool CDWriterProPrivate::checkSources(EngineJob::Setup &setup) {
    IsoImageTree::SourceCheck check = tree->checkSources();
    setup.sourceError = check.fileError;
    setup.sourceErrorPath = check.failedPath;
    setup.sourceNotices = std::move(check.notices);
    return check.fileError < 0;
}

bool CDWriterProPrivate::startJob(EngineJob::Setup setup, const ImageMaker &makeImage) {
    setup.plan.testWrite = testWrite;
    setup.plan.closeSession = closeSession;
    setup.plan.finalize = finalizeDisc;
    setup.plan.burnProof = burnProof;
    setup.plan.speed = writeSpeed;
    setup.trackMode = trackMode;
    setup.cacheImage = cacheImage;
    setup.cacheFolder = App::pathOf(QStringLiteral("/Cache"));
    setup.logPath = logging ? logPath : QString();
    const bool erase = setup.kind == EngineJob::Kind::Erase;
    const bool write = !erase && setup.kind != EngineJob::Kind::Finish;
    // The copier may hold the drive: one job per drive.
    Recorder *claimed = setup.recorder;
    if (claimed && !claimed->tryClaim())
        return false;
    auto made = std::make_unique<EngineJob>(
        q, std::move(setup), [this, erase, write, claimed](const JobOutcome &o) {
            job->wait();
            job.reset();
            if (claimed)
                claimed->releaseClaim();
            switch (o.kind) {
            case JobOutcome::Completed:
                if (erase)
                    emit q->EraseDiscComplete();
                else
                    emit q->WriteComplete();
                break;
            case JobOutcome::Cancelled:
                // Erasing and closing stop only when the engine goes away, and nobody listens then.
                if (write)
                    emit q->WriteCancelled();
                break;
            case JobOutcome::Failed:
                emit q->WriteError(o.writeError, o.driveError, o.errorInfo, o.senseInfo);
                break;
            }
        });
    if (makeImage) {
        IsoLibrary::BurnSourcePtr image = makeImage();
        if (!image) {
            if (claimed)
                claimed->releaseClaim();
            return false;
        }
        made->setImage(std::move(image));
    }
    job = std::move(made);
    if (write)
        emit q->PreparingToWrite();
    job->start();
    return true;
}

bool CDWriterPro::WriteDisc() {
    Recorder *r = d->currentDrive();
    if (!r || d->jobRunning())
        return false;
    if (d->trackMode == 0) {
        // An audio disc goes at once from block 0: every track with its gap, then the closing.
        if (d->audio.count() == 0)
            return false;
        EngineJob::Setup setup;
        setup.kind = EngineJob::Kind::WriteAudio;
        setup.recorder = r;
        setup.audioTracks = d->audio.tracks();
        setup.plan.startAddress = 0;
        return d->startJob(std::move(setup), {});
    }
    if (d->tree->changing())
        return false; // a folder is half added while its replace question is answered
    const MediumState st = r->medium();
    IsoImageTree::StreamOptions options;
    options.joliet = d->fileSystem == 1;
    options.startBlock = std::max(0, st.nextWritableAddress);
    EngineJob::Setup setup;
    setup.kind = EngineJob::Kind::WriteImage;
    setup.recorder = r;
    setup.plan.startAddress = options.startBlock;
    setup.refusal = d->refusal(*r, st);
    if (setup.refusal.kind != JobOutcome::Completed)
        return d->startJob(std::move(setup), {}); // ends with its WriteError, nothing laid out
    if (!d->checkSources(setup))
        return d->startJob(std::move(setup), {});
    return d->startJob(std::move(setup), [&] { return d->tree->makeStream(options, nullptr); });
}

JobOutcome CDWriterProPrivate::refusal(const Recorder &r, const MediumState &st) const {
    // Past 99 sessions no drive or reader finds the disc's contents any more.
    constexpr qint32 MaxSessions = 99;
    if (st.present() && st.writtenSessions() >= MaxSessions)
        return JobOutcome::driveFailure(
            1050,
            QStringLiteral("The disc holds %1 sessions, the most a disc can take").arg(MaxSessions),
            QStringLiteral("5/72/05 NO MORE TRACK RESERVATIONS ALLOWED"));
    // An imported session's files stay where they lie on their disc; on any other medium the
    // new session would point at blocks that hold something else or nothing.
    if (tree->hasImport() && (importRecorder != &r || r.mediumIdentity() != importMedium))
        return JobOutcome::failed(
            5, QStringLiteral("The compilation continues a session imported from another disc. "
                              "Put that disc back, or import the session of this one."));
    return JobOutcome::completed();
}

bool CDWriterPro::WriteISOFile(const QString &path) {
    Recorder *r = d->currentDrive();
    const QFileInfo info(path);
    if (!r || d->jobRunning() || d->trackMode == 0 || !info.isFile() || info.size() == 0)
        return false;
    // A plain image is laid out for block 0: it goes on an empty disc only.
    const MediumState st = r->medium();
    if (st.present() && st.discStatus != 0)
        return false;
    EngineJob::Setup setup;
    setup.kind = EngineJob::Kind::WriteIsoFile;
    setup.recorder = r;
    setup.isoFile = path;
    setup.plan.startAddress = 0;
    const bool cache = d->cacheImage;
    d->cacheImage = false; // the file is local already
    const bool started = d->startJob(std::move(setup), {});
    d->cacheImage = cache;
    return started;
}

bool CDWriterPro::CreateISOFile(const QString &path) {
    if (d->jobRunning() || d->tree->changing() || path.isEmpty())
        return false;
    // An ISO file holds every file's bytes: the imported ones are read from their disc, which
    // must still be in its drive.
    if (d->tree->hasImport() &&
        (!d->importRecorder || d->importRecorder->mediumIdentity() != d->importMedium))
        return false;
    IsoImageTree::StreamOptions options;
    options.joliet = d->fileSystem == 1;
    options.standalone = true;
    EngineJob::Setup setup;
    setup.kind = EngineJob::Kind::CreateIsoFile;
    setup.isoFile = path;
    setup.logPath = d->logging ? d->logPath : QString();
    const bool sourcesGood = d->checkSources(setup);
    bool ok = false;
    QEventLoop loop;
    // A handler served meanwhile may destroy the engine: its job and finisher go with it.
    const QPointer<CDWriterPro> alive(this);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    auto job = std::make_unique<EngineJob>(this, std::move(setup), [&](const JobOutcome &o) {
        d->job->wait();
        d->job.reset();
        ok = o.kind == JobOutcome::Completed;
        loop.quit();
    });
    if (sourcesGood) {
        IsoLibrary::BurnSourcePtr image = d->tree->makeStream(options, nullptr);
        if (!image)
            return false;
        job->setImage(std::move(image));
    }
    d->job = std::move(job);
    d->job->start();
    // The window stays alive meanwhile; CachingStatus arrives through this loop.
    loop.exec();
    return alive && ok;
}

void CDWriterPro::CancelWrite() {
    if (d->job && d->job->cancellable())
        d->job->cancel();
}
