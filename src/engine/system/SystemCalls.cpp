#include "SystemCalls.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFileInfo>
#include <QStorageInfo>

#include <pwd.h>
#include <unistd.h>

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
    return 0.0;
}
