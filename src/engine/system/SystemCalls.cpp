#include "SystemCalls.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

#include <vector>

bool SystemCalls::FileExists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && info.isFile();
}

QString SystemCalls::UserName()
{
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

QString SystemCalls::ComputerName()
{
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0)
        return QString();
    return QString::fromLocal8Bit(name);
}

namespace {
SystemCalls::PowerOffHandler &powerOffSlot()
{
    static SystemCalls::PowerOffHandler handler;
    return handler;
}
} // namespace

void SystemCalls::setPowerOffHandler(PowerOffHandler handler)
{
    powerOffSlot() = std::move(handler);
}

bool SystemCalls::WindowsExit()
{
    if (powerOffSlot())
        return powerOffSlot()();
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PowerOff"));
    call << true; // interactive: let polkit ask for a password where needed
    const QDBusMessage reply = QDBusConnection::systemBus().call(call, QDBus::Block, 30000);
    return reply.type() == QDBusMessage::ReplyMessage;
}
