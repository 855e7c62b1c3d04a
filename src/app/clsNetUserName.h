#pragma once

#include <QString>

// The user's and the computer's names, read once when the object is made; "Unknown" when the
// system can't tell. Lives on the UI thread.
class clsNetUserName {
public:
    clsNetUserName();

    QString NetworkUserName() const { return msNetworkUserName; }
    QString ComputerName() const { return msComputerName; }

private:
    QString DoGetUserName();
    QString DoGetComputerName();

    QString msNetworkUserName;
    QString msComputerName;
};
