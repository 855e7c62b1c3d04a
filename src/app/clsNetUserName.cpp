#include "clsNetUserName.h"
#include "engine/system/SystemCalls.h"

clsNetUserName::clsNetUserName()
    : msNetworkUserName(DoGetUserName())
    , msComputerName(DoGetComputerName()) {}

QString clsNetUserName::DoGetUserName() {
    const QString name = SystemCalls::UserName();
    return name.isEmpty() ? QStringLiteral("Unknown") : name;
}

QString clsNetUserName::DoGetComputerName() {
    const QString name = SystemCalls::ComputerName();
    return name.isEmpty() ? QStringLiteral("Unknown") : name;
}
