#include "SystemCalls.h"

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
