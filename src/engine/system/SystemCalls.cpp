#include "SystemCalls.h"
#include "DiscVolume.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStorageInfo>

#include <blkid/blkid.h>
#include <pwd.h>
#include <unistd.h>

#include <memory>
#include <vector>

bool SystemCalls::FileExists(const QString &path) {
    const QFileInfo info(path);
    return info.exists() && info.isFile();
}

QString SystemCalls::UserName() {
    // The password database first: $USER may be unset or stale in a service or a sandbox.
    const uid_t uid = geteuid();
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? size_t(size) : 16384);
    passwd entry{};
    passwd *result = nullptr;
    if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &result) == 0 && result &&
        result->pw_name)
        return QString::fromLocal8Bit(result->pw_name);
    return QString();
}

QString SystemCalls::ComputerName() {
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0)
        return QString();
    return QString::fromLocal8Bit(name);
}

namespace {
SystemCalls::PowerOffHandler &powerOffSlot() {
    static SystemCalls::PowerOffHandler handler;
    return handler;
}
} // namespace

void SystemCalls::setPowerOffHandler(PowerOffHandler handler) {
    powerOffSlot() = std::move(handler);
}

bool SystemCalls::WindowsExit() {
    if (powerOffSlot())
        return powerOffSlot()();
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PowerOff"));
    call << true; // interactive: let polkit ask for a password where needed
    const QDBusMessage reply = QDBusConnection::systemBus().call(call, QDBus::Block, 30000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

namespace {
std::optional<SystemCalls::DiscAccess> discAccessOf(const QString &letter);
} // namespace

double SystemCalls::DiskSizeKB(const QString &rootPath) {
    QString root = rootPath;
    if (root.endsWith(QStringLiteral(":\\")))
        root.chop(2);
    if (root.endsWith(u':'))
        root.chop(1);
    auto usedKB = [](const QStorageInfo &v) {
        return double(v.bytesTotal() - v.bytesFree()) / 1024.0;
    };
    if (root.startsWith(u'/')) {
        const QStorageInfo volume(root);
        return volume.isValid() && volume.isReady() ? usedKB(volume) : 0.0;
    }
    // A drive's device name: the disc counts only when the system mounted it.
    const QByteArray device = QByteArrayLiteral("/dev/") + root.toLocal8Bit();
    for (const QStorageInfo &v : QStorageInfo::mountedVolumes()) {
        if (!root.isEmpty() && v.device() == device && v.isReady())
            return usedKB(v);
    }
    // Unmounted (or virtual): the drive itself tells what the disc's sessions take.
    const auto access = discAccessOf(root);
    return access ? access->usedBlocks * 2.0 : 0.0;
}

// --- The volume of a disc ---------------------------------------------------------------------

namespace {

struct Accessor {
    const void *owner = nullptr;
    SystemCalls::DiscAccessor read;
};

QHash<QString, Accessor> &accessors() {
    static QHash<QString, Accessor> table;
    return table;
}

QString letterOfRoot(QString root) {
    if (root.endsWith(u'\\'))
        root.chop(1);
    if (root.endsWith(u':'))
        root.chop(1);
    return root;
}

struct ProbeDeleter {
    void operator()(blkid_struct_probe *probe) const { blkid_free_probe(probe); }
};

// A disc the system mounted is asked through libblkid, which reads it as the kernel sees it.
std::optional<DiscVolume> mountedVolume(const QString &letter) {
    const QByteArray device = QByteArrayLiteral("/dev/") + letter.toLocal8Bit();
    bool mounted = false;
    for (const QStorageInfo &v : QStorageInfo::mountedVolumes())
        mounted = mounted || (!letter.isEmpty() && v.device() == device);
    if (!mounted)
        return std::nullopt;
    std::unique_ptr<blkid_struct_probe, ProbeDeleter> probe(
        blkid_new_probe_from_filename(device.constData()));
    if (!probe)
        return std::nullopt;
    blkid_probe_enable_superblocks(probe.get(), 1);
    blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_LABEL | BLKID_SUBLKS_TYPE);
    if (blkid_do_safeprobe(probe.get()) != 0)
        return std::nullopt;
    DiscVolume v;
    const char *value = nullptr;
    if (blkid_probe_lookup_value(probe.get(), "LABEL", &value, nullptr) == 0 && value)
        v.label = QString::fromUtf8(value);
    if (blkid_probe_lookup_value(probe.get(), "TYPE", &value, nullptr) == 0 && value) {
        const QString type = QString::fromLatin1(value);
        v.fileSystem =
            type == QLatin1String("iso9660") ? QStringLiteral("ISO 9660") : type.toUpper();
    }
    // The serial is the primary descriptor's, which libblkid does not sum.
    QFile disc(QString::fromLocal8Bit(device));
    if (disc.open(QIODevice::ReadOnly) && disc.seek(16 * 2048)) {
        const QByteArray pvd = disc.read(2048);
        if (pvd.size() == 2048 && pvd.mid(1, 5) == "CD001")
            v.serial = DiscVolume::serialOf(pvd);
    }
    return v;
}

DiscVolume volumeOf(const QString &rootPath) {
    const QString letter = letterOfRoot(rootPath);
    if (auto mounted = mountedVolume(letter))
        return *mounted;
    const auto access = discAccessOf(letter);
    if (!access || access->lastSessionStart < 0)
        return {};
    if (access->lastSessionMode == 0)
        return DiscVolume::audioDisc();
    // The set begins at block 16 of the session; a handful of blocks hold every descriptor.
    constexpr int Blocks = 16;
    QByteArray blocks(Blocks * 2048, '\0');
    if (!access->read || !access->read(access->lastSessionStart + 16, Blocks, blocks.data())) {
        // A disc shorter than the whole handful still has its first descriptors.
        blocks.resize(2 * 2048);
        if (!access->read || !access->read(access->lastSessionStart + 16, 2, blocks.data()))
            return {};
    }
    return DiscVolume::fromDescriptors(blocks);
}

std::optional<SystemCalls::DiscAccess> discAccessOf(const QString &letter) {
    const auto it = accessors().constFind(letter);
    return it != accessors().constEnd() && it->read ? it->read() : std::nullopt;
}

} // namespace

QString SystemCalls::GetVolumeName(const QString &rootPath) {
    return volumeOf(rootPath).label;
}

QString SystemCalls::GetFileSystem(const QString &rootPath) {
    return volumeOf(rootPath).fileSystem;
}

qint32 SystemCalls::VolumeSerialNumber(const QString &rootPath) {
    return volumeOf(rootPath).serial;
}

void SystemCalls::setDiscAccessor(const QString &letter, const void *owner, DiscAccessor accessor) {
    accessors().insert(letter, {owner, std::move(accessor)});
}

void SystemCalls::forgetDiscAccessors(const void *owner) {
    for (auto it = accessors().begin(); it != accessors().end();)
        it = it->owner == owner ? accessors().erase(it) : std::next(it);
}
